#pragma once

#include <QFrame>

class QLabel;

namespace quorvik
{

/** A strip under the menu for news that need no answer. It takes the lines that its sentence needs, and stays
 * until it is closed. */
class NoticeStrip : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeStrip(QWidget *parent);

    /** Shows a sentence, in place of one that stands there. */
    void Tell(const QString &sentence);

private:
    QLabel *message_;
};

} // namespace quorvik
