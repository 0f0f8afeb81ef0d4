#pragma once

#include <QObject>
#include <functional>

class QMimeData;
class QWidget;

namespace quorvik
{

class Strip;

/**
 * Takes files of this computer that are dropped on a window, or on anything in it that takes no drops itself.
 * Only one set is open at a time: of several files it is the first, and the strip says so.
 */
class DroppedFiles : public QObject
{
    Q_OBJECT

public:
    /** @param open opens a file, with all questions of File, Open. */
    DroppedFiles(QWidget *window, Strip &strip, std::function<void(const QString &path)> open);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Take(const QMimeData &data);

    Strip &strip_;
    std::function<void(const QString &path)> open_;
};

} // namespace quorvik
