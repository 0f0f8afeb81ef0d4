#pragma once

#include <QPoint>

class QRect;
class QSize;
class QWidget;

namespace quorvik
{

/**
 * Where a window opens that belongs to a box on the screen: to its right, else to its left, else below, else
 * above, within the screen and not over the box. Where no side has the room it stays within the screen, and
 * covers as little of the box as it can.
 * @param size the window's, with its frame.
 * @param available the part of the screen that windows may take.
 * @param gap pixels between window and box, where there is room for them.
 */
QPoint PlaceBeside(const QRect &box, const QSize &size, const QRect &available, int gap);

/** Moves a window beside a box on the screen; it has its size already, and need not be shown. */
void PlaceWindowBeside(const QRect &box, QWidget &window);

} // namespace quorvik
