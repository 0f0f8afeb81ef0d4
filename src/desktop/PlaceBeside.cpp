#include "desktop/PlaceBeside.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

/** The window at a corner, moved into the screen; what is larger than the screen shows its upper left part.
 */
QRect Within(const QRect &available, const QPoint &corner, const QSize &size)
{
    const int right = available.right() + 1 - size.width();
    const int bottom = available.bottom() + 1 - size.height();
    return {QPoint(std::max(available.left(), std::min(corner.x(), right)),
                   std::max(available.top(), std::min(corner.y(), bottom))),
            size};
}

} // namespace

QPoint PlaceBeside(const QRect &box, const QSize &size, const QRect &available, int gap)
{
    const QRect sides[] = {
        Within(available, {box.right() + 1 + gap, box.top()}, size),
        Within(available, {box.left() - gap - size.width(), box.top()}, size),
        Within(available, {box.left(), box.bottom() + 1 + gap}, size),
        Within(available, {box.left(), box.top() - gap - size.height()}, size),
    };
    const auto covered = [&](const QRect &side) {
        const QSize common = side.intersected(box).size();
        return std::int64_t(common.width()) * common.height();
    };
    return std::ranges::min_element(sides, {}, covered)->topLeft();
}

void PlaceWindowBeside(const QRect &box, QWidget &window)
{
    const QScreen *screen = QGuiApplication::screenAt(box.center());
    if (!screen)
        return;
    // Its frame is not known before it is shown; the owner's will be much the same.
    const QWidget *parent = window.parentWidget();
    const QWidget *framed = window.isVisible() || !parent ? &window : parent->window();
    const QSize frame = framed->frameGeometry().size() - framed->geometry().size();
    window.move(
        PlaceBeside(box, window.size() + frame, screen->availableGeometry(), window.fontMetrics().height()));
}

} // namespace quorvik
