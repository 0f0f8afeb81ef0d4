#include "blocks/diagram/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvik
{

namespace
{

constexpr double ArrowLength = 1.3;
constexpr double ArrowHalfWidth = 0.6;

bool IsHorizontal(Side side)
{
    return side == Side::Left || side == Side::Right;
}

bool IsVertical(Side side)
{
    return side == Side::Top || side == Side::Bottom;
}

} // namespace

QPolygonF RouteWire(const Port &from, const Port &to, double bend)
{
    const QPointF a = from.at;
    const QPointF b = to.at;
    if (a.x() == b.x() || a.y() == b.y())
        return {{a, b}};
    // A dot takes a wire from any side, so the other end decides.
    const bool leavesVertically =
        IsVertical(from.side) || (from.side == Side::Any && IsHorizontal(to.side) && std::isnan(bend));
    const bool entersVertically =
        IsVertical(to.side) || (to.side == Side::Any && !leavesVertically && std::isnan(bend));
    if (leavesVertically && entersVertically) {
        const double y = std::isnan(bend) ? (a.y() + b.y()) / 2 : bend;
        return {{a, {a.x(), y}, {b.x(), y}, b}};
    }
    if (leavesVertically)
        return {{a, {a.x(), b.y()}, b}};
    if (entersVertically)
        return {{a, {b.x(), a.y()}, b}};
    const double x = std::isnan(bend) ? (a.x() + b.x()) / 2 : bend;
    return {{a, {x, a.y()}, {x, b.y()}, b}};
}

QPolygonF ArrowHead(const QPolygonF &line)
{
    if (line.size() < 2)
        return {};
    const QPointF tip = line.last();
    const QPointF back = line.at(line.size() - 2) - tip;
    const double length = std::hypot(back.x(), back.y());
    if (length == 0)
        return {};
    const QPointF along = back / length * ArrowLength;
    const QPointF across = QPointF(-back.y(), back.x()) / length * ArrowHalfWidth;
    return {{tip, tip + along + across, tip + along - across}};
}

double DistanceFrom(const QPolygonF &line, const QPointF &place)
{
    double least = std::numeric_limits<double>::infinity();
    for (qsizetype i = 1; i < line.size(); ++i) {
        const QPointF from = line.at(i - 1);
        const QPointF along = line.at(i) - from;
        const double length = QPointF::dotProduct(along, along);
        const double share =
            length > 0 ? std::clamp(QPointF::dotProduct(place - from, along) / length, 0.0, 1.0) : 0;
        const QPointF off = place - (from + share * along);
        least = std::min(least, std::hypot(off.x(), off.y()));
    }
    return least;
}

QPointF OpenArmEnd(const QPointF &pivot, const QPointF &contact)
{
    // Lifted by about 27 degrees, to the left of the way from pivot to contact.
    const QPointF arm = contact - pivot;
    const QPointF left(arm.y(), -arm.x());
    return pivot + arm * 0.89 + left * (arm.x() < 0 ? -0.45 : 0.45);
}

} // namespace quorvik
