#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>

namespace quorvik
{

/**
 * The geometry of block diagrams as pure functions. All lengths are in grid cells; a cell is half the height
 * of a line of text, so that a drawing keeps its proportions at every font size.
 */
enum class Side { Left, Top, Right, Bottom, Any };

/** A place where a wire may end, and the side of the element on which it lies. */
struct Port {
    QPointF at;
    Side side = Side::Any;
};

/** An element's rectangle with its ports. The fraction runs from 0, left or top, to 1. */
class Shape
{
public:
    Shape() = default;
    explicit Shape(const QRectF &rect)
        : rect_(rect)
    {
    }

    const QRectF &Rect() const { return rect_; }
    Port Left() const { return LeftAt(rect_.center().y()); }
    Port Right() const { return RightAt(rect_.center().y()); }
    Port Top() const { return TopAt(rect_.center().x()); }
    Port Bottom() const { return BottomAt(rect_.center().x()); }
    Port LeftAt(double y) const { return {{rect_.left(), y}, Side::Left}; }
    Port RightAt(double y) const { return {{rect_.right(), y}, Side::Right}; }
    Port TopAt(double x) const { return {{x, rect_.top()}, Side::Top}; }
    Port BottomAt(double x) const { return {{x, rect_.bottom()}, Side::Bottom}; }

private:
    QRectF rect_;
};

/**
 * The corners of an orthogonal wire. It leaves and enters at right angles to the sides of its ports: straight
 * where they face each other, with one elbow between a horizontal and a vertical side, with two half-way
 * otherwise.
 * @param bend where the two elbows lie, as x between horizontal sides and as y between vertical ones;
 * half-way when it is not a number.
 */
QPolygonF RouteWire(const Port &from, const Port &to, double bend);

/** The three corners of an arrow head with its tip at the end of a line; empty for a line without length. */
QPolygonF ArrowHead(const QPolygonF &line);

/** Where the free end of a make contact's arm hangs while the contact is open. */
QPointF OpenArmEnd(const QPointF &pivot, const QPointF &contact);

} // namespace quorvik
