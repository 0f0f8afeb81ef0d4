#pragma once

#include "circuit/Net.h"

#include <QPointF>
#include <QPolygonF>
#include <QRectF>

namespace quorvik
{

/**
 * The geometry of block diagrams as pure functions. All lengths are in grid cells; a cell is half the height
 * of a line of text, so that a drawing keeps its proportions at every font size.
 */

/** A place where a wire may end, the side of the element on which it lies, and the element. */
struct Port {
    QPointF at;
    Side side = Side::Any;
    int node = -1;    ///< index in the drawing's net, -1 for a free end
    int contact = -1; ///< of a switch: from 0 on, -1 its pivot

    /** The same place, left or entered at another side. */
    Port To(Side other) const { return {at, other, node, contact}; }
};

/** An element's rectangle with its ports. The fraction runs from 0, left or top, to 1. */
class Shape
{
public:
    Shape() = default;
    explicit Shape(const QRectF &rect, int node = -1)
        : rect_(rect)
        , node_(node)
    {
    }

    const QRectF &Rect() const { return rect_; }
    int Node() const { return node_; }
    Port Left() const { return LeftAt(rect_.center().y()); }
    Port Right() const { return RightAt(rect_.center().y()); }
    Port Top() const { return TopAt(rect_.center().x()); }
    Port Bottom() const { return BottomAt(rect_.center().x()); }
    Port LeftAt(double y) const { return {{rect_.left(), y}, Side::Left, node_}; }
    Port RightAt(double y) const { return {{rect_.right(), y}, Side::Right, node_}; }
    Port TopAt(double x) const { return {{x, rect_.top()}, Side::Top, node_}; }
    Port BottomAt(double x) const { return {{x, rect_.bottom()}, Side::Bottom, node_}; }

private:
    QRectF rect_;
    int node_ = -1;
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

/** How far a place lies from the nearest piece of a line; infinite for a line of less than two corners. */
double DistanceFrom(const QPolygonF &line, const QPointF &place);

/** Where the free end of a make contact's arm hangs while the contact is open. */
QPointF OpenArmEnd(const QPointF &pivot, const QPointF &contact);

} // namespace quorvik
