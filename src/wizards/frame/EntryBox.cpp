#include "wizards/frame/EntryBox.h"

#include <QFocusEvent>
#include <algorithm>

namespace quorvik
{

EntryBox::EntryBox(QWidget *parent, const QString &name, int maxLength)
    : QLineEdit(parent)
{
    setObjectName(name);
    setMaxLength(maxLength);
    // Boxes below each other look alike, and each has room for its longest text.
    constexpr int usualLength = 7;
    const QString longest(std::max(maxLength, usualLength) + 1, u'0');
    const QMargins frame = textMargins() + contentsMargins() + QMargins(6, 0, 6, 0);
    setFixedWidth(fontMetrics().horizontalAdvance(longest) + frame.left() + frame.right());
    setAlignment(Qt::AlignRight);
}

void EntryBox::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    selectAll();
    // The click that brought the focus would take the selection away again.
    selectOnRelease_ = event->reason() == Qt::MouseFocusReason;
    Q_EMIT Entered();
}

void EntryBox::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    Q_EMIT Left();
}

void EntryBox::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (selectOnRelease_ && !hasSelectedText())
        selectAll();
    selectOnRelease_ = false;
}

} // namespace quorvik
