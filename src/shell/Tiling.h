#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <optional>

namespace quorvik
{

/**
 * Places for count windows that together fill an area without overlapping.
 * @param orientation Qt::Horizontal gives wide windows one above another, Qt::Vertical tall ones side by
 * side; from four windows on they stand in several columns, or rows.
 */
QList<QRect> TileRects(const QRect &area, int count, Qt::Orientation orientation);

/**
 * Where the window of that position, from 0 on, stands in a cascade: each a step right of and below the last
 * one, so that all titles can be read; from the corner again where no room is left.
 */
QPoint CascadePlace(const QRect &area, int position, QSize window, int step);

/** What a new window is to leave in sight, in the area's coordinates. */
struct WindowsInSight {
    /** All that are open, the one under work last. */
    QList<QRect> windows;
    /** Of the one under work: the control that has its focus; empty for none. */
    QRect focus;
};

/**
 * Where a new window stands with room: at the first free place, from the upper left corner on; else where it
 * leaves title and focus of the window under work in sight, then as many other titles as can be, and covers
 * as little as it can.
 * @param title height of a window's title.
 * @return nothing where the window is larger than the area, or title or focus could not be kept in sight.
 */
std::optional<QPoint> PlaceWithRoom(const QRect &area, QSize window, const WindowsInSight &open, int title);

/** Places for minimised windows of one size, in rows from the lower left corner upwards. */
QList<QRect> IconRects(const QRect &area, int count, QSize icon);

} // namespace quorvik
