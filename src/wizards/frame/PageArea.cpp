#include "wizards/frame/PageArea.h"

#include <QScreen>
#include <QStyle>

namespace quorvik
{

PageArea::PageArea(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    // Its controls are what Tab goes to.
    setFocusPolicy(Qt::NoFocus);
}

QSize PageArea::Room() const
{
    // Below it the buttons, above it the window's title.
    const int others = 5 * fontMetrics().height();
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return screen()->availableSize() - QSize(bar + fontMetrics().height() / 2, others);
}

QSize PageArea::minimumSizeHint() const
{
    if (!widget())
        return {};
    const QSize room = Room();
    QSize size = widget()->minimumSize();
    if (size.height() > room.height())
        size.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return size.boundedTo({screen()->availableSize().width() - fontMetrics().height() / 2, room.height()});
}

} // namespace quorvik
