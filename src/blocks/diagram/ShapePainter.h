#pragma once

namespace quorvik
{

class DrawingPainter;
struct Element;

// The shapes that show what they do: their characteristic with the working point, their band, their state.
// What acts has the accent of the arms.

/** A box with its characteristic inside. */
void PaintCharacteristic(DrawingPainter &on, const Element &element);
/** A box with a lamp that says that the relation holds, and how far the value is from its level. */
void PaintComparator(DrawingPainter &on, const Element &element);
void PaintLatch(DrawingPainter &on, const Element &element);
/** A box that says in words what it is; along its bottom, where it has a level, how far it is on its way. */
void PaintCaptioned(DrawingPainter &on, const Element &element);

} // namespace quorvik
