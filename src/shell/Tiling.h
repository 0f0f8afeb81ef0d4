#pragma once

#include <QList>
#include <QRect>
#include <QSize>

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

/** Places for minimised windows of one size, in rows from the lower left corner upwards. */
QList<QRect> IconRects(const QRect &area, int count, QSize icon);

} // namespace quorvik
