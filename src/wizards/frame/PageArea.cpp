#include "wizards/frame/PageArea.h"

#include <QScreen>

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

QSize PageArea::minimumSizeHint() const
{
    if (!widget())
        return {};
    // Below it the buttons, above it the window's title.
    const int others = 5 * fontMetrics().height();
    const QSize room = screen()->availableSize() - QSize(fontMetrics().height(), others);
    return widget()->minimumSize().boundedTo(room);
}

} // namespace quorvik
