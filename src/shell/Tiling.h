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

/** Places for minimised windows of one size, in rows from the lower left corner upwards. */
QList<QRect> IconRects(const QRect &area, int count, QSize icon);

} // namespace quorvik
