#pragma once

#include <QLineEdit>

namespace quorvik
{

/** A text box that selects its whole text when it gets the focus, so that typing replaces the value. */
class EntryBox : public QLineEdit
{
    Q_OBJECT

public:
    /** @param maxLength greatest length; a text that the program puts in is cut to it as well. */
    EntryBox(QWidget *parent, const QString &name, int maxLength);

Q_SIGNALS:
    void Entered(); ///< got the focus
    void Left();    ///< lost the focus

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool selectOnRelease_ = false;
};

} // namespace quorvik
