#pragma once

#include <QFrame>
#include <functional>

class QLabel;
class QPushButton;

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
    /** The same, with a button that does something about it. */
    void Tell(const QString &sentence, const QString &caption, std::function<void()> run);
    /** Takes this sentence away, where it still stands there: it holds no longer. */
    void Withdraw(const QString &sentence);
    /** Nothing is left to be saved: a sentence without a button was about that, and goes. */
    void HideWhatIsSaved();

private:
    QLabel *message_;
    QPushButton *command_;
    std::function<void()> run_;
};

} // namespace quorvik
