#pragma once

#include <QColor>
#include <QFrame>
#include <QList>
#include <QString>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace quorvik
{

class Strip;
struct StripLine;

/** The line in front of the news, under the menu: what it says, what it offers to do, and how many more stand
 * behind it. Hidden while there is nothing to say. */
class NoticeStrip : public QFrame
{
    Q_OBJECT

public:
    /** @param strip must outlive it. */
    NoticeStrip(Strip &strip, QWidget *parent);

    /** Goes to what the line offers, for the keyboard. */
    void TakeFocus();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void ShowLine();
    void ShowNext();
    void CloseLine();
    void TakeColors();
    const StripLine *Line() const;

    Strip &strip_;
    int position_ = 0; ///< of the line shown, in the strip's order
    QString key_;      ///< of the same
    QString told_;     ///< the sentence that a screen reader has said
    QColor ground_;
    QLabel *message_;
    QHBoxLayout *actions_;
    QList<QPushButton *> buttons_;
    QToolButton *more_;
    QToolButton *close_;
};

} // namespace quorvik
