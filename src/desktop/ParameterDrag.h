#pragma once

#include <QObject>
#include <QPoint>
#include <QString>
#include <functional>
#include <optional>

class QWidget;

namespace quorvik
{

/**
 * Lets a parameter be dragged from a control: a press that moves on out of it, and by more than a hand
 * trembles. Any other press stays what it was, a click.
 */
class ParameterDrag : public QObject
{
    Q_OBJECT

public:
    /** @param box owns this. @param param the parameter of this moment; below 0 for none.
     * @param nameOf what other programs are told of it. */
    ParameterDrag(QWidget *box, std::function<int()> param, std::function<QString(int p)> nameOf);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /** Comes back once it is dropped. */
    void Drag();

    QWidget *box_;
    std::function<int()> param_;
    std::function<QString(int)> nameOf_;
    std::optional<QPoint> pressedAt_;
};

} // namespace quorvik
