#include "blocks/diagram/ShapeLook.h"

#include "blocks/diagram/Drawing.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

using Value = std::optional<double>;

constexpr double FullScale = 100; ///< percent

/** The characteristics as they are drawn, where the working point has to meet them. */
namespace Place
{
constexpr double Low = 0.78;
constexpr double High = 0.22;
constexpr double BandLeft = 0.34;
constexpr double BandRight = 0.66;
constexpr double Left = 0.16;
} // namespace Place

double Between(double from, double to, double part)
{
    return from + (to - from) * std::clamp(part, 0.0, 1.0);
}

/** What surrounds one element. */
class Surroundings
{
public:
    Surroundings(int node, const Net &net, const NetValues &values)
        : net_(net)
        , values_(values)
        , inputs_(values.InputsOf(node))
        , node_(node)
    {
    }

    Value Result() const { return values_.Result(node_); }
    Value On(Side side, int index = 0) const { return inputs_.On(side, index); }
    int CountOn(Side side) const { return inputs_.CountOn(side); }
    /** What the first box behind the element shows, by closed contacts; turned by the inverters between. */
    Value Behind() const { return Behind(node_); }
    /** The contact of the switch that the element moves, -1 for none. */
    int MovedContact() const
    {
        for (const Edge &edge : net_.edges)
            if (edge.kind == Edge::Kind::Control && edge.from.node == node_ && edge.to.node >= 0)
                return net_.nodes[std::size_t(edge.to.node)].state;
        return -1;
    }

private:
    Value Behind(int node) const
    {
        for (const Edge &edge : net_.edges) {
            if (edge.kind != Edge::Kind::Signal || edge.from.node != node || edge.to.node < 0)
                continue;
            const Node &next = net_.nodes[std::size_t(edge.to.node)];
            Value found;
            if (next.kind == NodeKind::Value)
                found = values_.Result(edge.to.node);
            else if (next.kind == NodeKind::Joint ||
                     (next.kind == NodeKind::Switch && next.state == edge.to.contact))
                found = Behind(edge.to.node);
            else if (next.kind == NodeKind::Not)
                found = Turned(Behind(edge.to.node));
            if (found)
                return found;
        }
        return std::nullopt;
    }
    static Value Turned(const Value &value) { return value ? Value(*value == 0) : std::nullopt; }

    const Net &net_;
    const NetValues &values_;
    NetInputs inputs_;
    int node_;
};

ShapeLook CurveLook(const Surroundings &around)
{
    const bool hasPolarity = around.CountOn(Side::Left) > 1;
    const bool isBipolar = hasPolarity && around.On(Side::Left, 0).value_or(0) != 0;
    const Value x = around.On(Side::Left, hasPolarity ? 1 : 0);
    const double low = around.On(Side::Bottom, 0).value_or(0);
    const double high = around.On(Side::Bottom, 1).value_or(0);
    const double bias = around.On(Side::Top, 0).value_or(0);
    const double gain = around.On(Side::Top, 1).value_or(0);
    // Room beyond the calibration points shows that the line is level there.
    const double reach = 1.25 * std::max({std::abs(low), std::abs(high), 1.0});
    const double lowest = isBipolar || low < 0 ? -reach : 0;
    const double tallest = std::max({std::abs(bias), std::abs(gain), FullScale});
    const double bottom = isBipolar || bias < 0 || gain < 0 ? -tallest : 0;
    const auto at = [&](double across, double up) {
        return QPointF(Between(0.08, 0.92, (across - lowest) / (reach - lowest)),
                       Between(0.9, 0.1, (up - bottom) / (tallest - bottom)));
    };
    ShapeLook look{.origin = at(0, 0)};
    if (isBipolar) {
        const double slope = high != low ? gain / (high - low) : 0;
        look.line = {at(-reach, -gain), at(-high, -gain), at(-high, (-high - low) * slope), at(high, gain),
                     at(reach, gain)};
    } else {
        look.line = {at(lowest, bias), at(low, bias), at(high, gain), at(reach, gain)};
    }
    if (const Value y = around.Result(); x && y) {
        look.point = at(*x, *y);
        look.isActive = *x > high || *x < (isBipolar ? -high : low);
    }
    return look;
}

ShapeLook LimiterLook(const Surroundings &around, const Node &node, bool isOneSided)
{
    const Value asked = around.On(Side::Left);
    const Value given = around.Result();
    if (!asked || !given)
        return {};
    constexpr double noLimit = 2 * FullScale;
    // What enters at the top of a limiter without a lower limit chooses its kind.
    const bool hasBoth = around.CountOn(Side::Bottom) > 0;
    const double highest = node.highest.value_or(hasBoth ? around.On(Side::Top).value_or(noLimit) : noLimit);
    const double lowest = node.lowest.value_or(around.On(Side::Bottom).value_or(isOneSided ? 0 : -highest));
    ShapeLook look{.isActive = std::abs(*asked - *given) > 1e-9};
    const double part = highest > lowest ? (*given - lowest) / (highest - lowest) : 0.5;
    const bool isAbove = look.isActive && *asked > *given;
    const bool isBelow = look.isActive && *asked < *given;
    if (isOneSided)
        look.point =
            isBelow ? QPointF(0.3, 0.72) : QPointF(Between(0.5, 0.78, part), Between(0.72, 0.22, part));
    else if (isAbove || isBelow)
        look.point = isAbove ? QPointF(0.75, Place::High) : QPointF(0.25, Place::Low);
    else
        look.point =
            QPointF(Between(Place::BandLeft, Place::BandRight, part), Between(Place::Low, Place::High, part));
    return look;
}

/** A limiter in a box whose limit lines stand on it as elements of their own. */
bool IsLimiterBox(const Element &element, const Surroundings &around)
{
    return element.symbol == Symbol::Function && around.CountOn(Side::Left) > 0 &&
           around.CountOn(Side::Top) > 0 && around.CountOn(Side::Bottom) > 0;
}

/** The same place on wider and taller lines. */
ShapeLook Spread(ShapeLook look)
{
    constexpr double across = 0.3 / (Place::BandRight - Place::BandLeft);
    constexpr double up = 0.75 / (Place::Low - Place::High);
    if (look.point)
        look.point = QPointF(0.5 + (look.point->x() - 0.5) * across, 0.5 + (look.point->y() - 0.5) * up);
    return look;
}

ShapeLook RampLook(const Surroundings &around)
{
    const Value given = around.Behind();
    if (!given)
        return {};
    const auto at = [](double part) { return QPointF(Between(0.3, 0.62, part), Between(0.8, 0.22, part)); };
    // A pot that is moved up and down goes from its lowest to its highest value.
    if (around.CountOn(Side::Left) > 1) {
        const double highest = around.On(Side::Top, 1).value_or(0);
        const double lowest = around.On(Side::Bottom, 1).value_or(0);
        const double part = highest > lowest ? (*given - lowest) / (highest - lowest) : 0;
        const bool isMoving = around.On(Side::Left, 0).value_or(0) != around.On(Side::Left, 1).value_or(0);
        return {.point = at(part), .isActive = isMoving && *given > lowest && *given < highest};
    }
    const Value asked = around.On(Side::Left);
    if (!asked)
        return {};
    const double far = std::max(std::abs(*asked), std::abs(*given));
    if (*asked == *given)
        return {.point = far > 0 ? QPointF(0.74, 0.22) : QPointF(0.22, 0.8)};
    const double near = *asked * *given > 0 ? std::min(std::abs(*asked), std::abs(*given)) : 0;
    return {.point = at(near / far), .isActive = true};
}

ShapeLook ComparatorLook(const Surroundings &around, const NetValues &values, int node)
{
    const auto into = values.Into(node);
    ShapeLook look{.isActive = around.Result().value_or(0) != 0};
    if (into.size() != 2)
        return look;
    const Value value = values.OnEdge(into[0]);
    const Value level = values.OnEdge(into[1]);
    if (!value || !level)
        return look;
    const double scale = std::max({std::abs(*value), std::abs(*level), 1e-9});
    look.point = QPointF(Between(0.14, 0.86, 0.5 + (*value - *level) / scale / 2), 0.85);
    return look;
}

ShapeLook HysteresisLook(const Surroundings &around)
{
    const Value value = around.On(Side::Left);
    const bool isByPoints = around.CountOn(Side::Bottom) > 0;
    const Value one = around.On(Side::Top, 0);
    const Value other = isByPoints ? around.On(Side::Bottom) : around.On(Side::Top, 1);
    if (!value || !one || !other)
        return {};
    // Either its two points enter, on and off, or a threshold and what it is widened by on both sides.
    const double on = isByPoints ? *one : *one + *other;
    const double off = isByPoints ? *other : *one - *other;
    const double band = std::abs(on - off);
    const double part = band > 0 ? (*value - std::min(on, off)) / band : *value < on ? -1 : 2;
    ShapeLook look{.isFlipped = on < off};
    const bool isBeyond = (part >= 1) != look.isFlipped;
    if (const int contact = around.MovedContact(); contact >= 0)
        look.isActive = contact == 0;
    else
        look.isActive = part >= 1 || part <= 0 ? isBeyond : around.Behind().value_or(0) != 0;
    const double across = part < 0   ? Between(Place::BandLeft, 0.1, -part)
                          : part > 1 ? Between(Place::BandRight, 0.9, part - 1)
                                     : Between(Place::BandLeft, Place::BandRight, part);
    look.point = QPointF(across, look.isActive ? Place::High : Place::Low);
    return look;
}

ShapeLook DeadBandLook(const Surroundings &around)
{
    const Value asked = around.On(Side::Left);
    const Value given = around.Result();
    const Value band = around.On(Side::Bottom, 1);
    if (!asked || !given || !band)
        return {};
    const double width = std::max(*band, 1e-9);
    const double size = std::abs(*asked) / width;
    const bool isInside = *given == 0;
    const double along = isInside ? 0.14 * std::min(size, 1.0) : Between(0.14, 0.38, (size - 1) / 4);
    const double sign = *asked < 0 ? -1 : 1;
    const double rise = isInside ? 0 : Between(0.12, 0.34, (size - 1) / 4);
    return {.point = QPointF(0.5 + sign * along, 0.5 - sign * rise), .isActive = isInside && *asked != 0};
}

ShapeLook AbsoluteLook(const Surroundings &around)
{
    const Value asked = around.On(Side::Left);
    if (!asked)
        return {};
    const double part = std::clamp(*asked / std::max(std::abs(*asked), FullScale), -1.0, 1.0);
    return {.point = QPointF(0.5 + 0.28 * part, 0.5 - 0.38 * std::abs(part)), .isActive = *asked < 0};
}

/** What stands at its level, or is on its way to it. */
ShapeLook LevelLook(const Element &element, const NetValues &values)
{
    const Value shown = values.Result(element.shownNode);
    const Value level = values.Result(element.levelNode);
    if (!shown || !level)
        return {};
    const double size = std::abs(*shown);
    return {.full = *level > 0 ? std::min(size / *level, 1.0) : 1.0,
            .isActive = element.symbol == Symbol::Pi ? size >= *level : size > *level};
}

QPointF Rounded(const QPointF &place, const QSizeF &size)
{
    constexpr double steps = 16; // to a cell, half a pixel of the smallest one
    return {std::round(place.x() * size.width() * steps) / steps / size.width(),
            std::round(place.y() * size.height() * steps) / steps / size.height()};
}

ShapeLook ExactLook(const Element &element, const Net &net, const NetValues &values)
{
    const Surroundings around(element.node, net, values);
    switch (element.symbol) {
    case Symbol::Curve:
        return CurveLook(around);
    case Symbol::Limiter:
        return LimiterLook(around, net.nodes[std::size_t(element.node)], element.state == 0);
    case Symbol::Ramp:
        return RampLook(around);
    case Symbol::Comparator:
        return ComparatorLook(around, values, element.node);
    case Symbol::Hysteresis:
        return HysteresisLook(around);
    case Symbol::DeadBand:
        return DeadBandLook(around);
    case Symbol::Absolute:
        return AbsoluteLook(around);
    default:
        return IsLimiterBox(element, around)
                   ? Spread(LimiterLook(around, net.nodes[std::size_t(element.node)], false))
                   : LevelLook(element, values);
    }
}

} // namespace

std::optional<ShapeLook> LookOf(const Element &element, const Net &net, const NetValues &values)
{
    switch (element.symbol) {
    case Symbol::Curve:
    case Symbol::Limiter:
    case Symbol::Ramp:
    case Symbol::Comparator:
    case Symbol::Hysteresis:
    case Symbol::DeadBand:
    case Symbol::Absolute:
        break;
    default:
        if (element.node < 0 ||
            (element.levelNode < 0 && !IsLimiterBox(element, Surroundings(element.node, net, values))))
            return std::nullopt;
    }
    ShapeLook look = ExactLook(element, net, values);
    const QSizeF size = element.rect.size();
    for (QPointF &corner : look.line)
        corner = Rounded(corner, size);
    look.origin = Rounded(look.origin, size);
    if (look.point)
        look.point = Rounded(*look.point, size);
    if (look.full)
        look.full = Rounded({*look.full, 0}, size).x();
    return look;
}

} // namespace quorvik
