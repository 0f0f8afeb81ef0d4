#pragma once

#include <QRect>
#include <QSize>

namespace quorvik
{

/**
 * Place and size of a window that explains another one. It keeps its size where that fits beside the other
 * one; else it becomes smaller, to fit the side with the most room; where no side has room for the least
 * size, it takes that one, and hides as little as it can.
 * @param asked the window that is explained, with its frame; all sizes are with frames, in pixels.
 * @param available the part of the screen that windows may take.
 */
QRect PlaceHelp(const QRect &asked, const QSize &wanted, const QSize &least, const QRect &available, int gap);

} // namespace quorvik
