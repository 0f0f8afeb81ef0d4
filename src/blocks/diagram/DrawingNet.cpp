// The net of the signals that a drawing stands for.

#include "blocks/diagram/Drawing.h"

#include "model/ParameterNumbers.h"

namespace quorvik
{

namespace
{

/** Side and order of a place, as the net tells pins apart. */
Pin PinOf(const Port &port)
{
    const bool isAcross = port.side == Side::Top || port.side == Side::Bottom;
    return {port.node, port.side, isAcross ? port.at.x() : port.at.y(), port.contact};
}

std::optional<double> Scaled(const std::optional<double> &value, double factor)
{
    return value ? std::optional(*value * factor) : std::nullopt;
}

} // namespace

std::optional<NodeKind> Drawing::KindOf(Symbol symbol)
{
    switch (symbol) {
    case Symbol::Dot:
        return NodeKind::Joint;
    case Symbol::Terminal:
    case Symbol::Coil:
        return NodeKind::Terminal;
    case Symbol::Sum:
        return NodeKind::Sum;
    case Symbol::Multiplier:
        return NodeKind::Product;
    case Symbol::Gain:
        return NodeKind::Gain;
    case Symbol::Inverter:
        return NodeKind::Not;
    case Symbol::And:
        return NodeKind::And;
    case Symbol::Nand:
        return NodeKind::Nand;
    case Symbol::Or:
        return NodeKind::Or;
    case Symbol::Absolute:
        return NodeKind::Absolute;
    case Symbol::Limiter:
        return NodeKind::Limiter;
    case Symbol::Comparator:
        return NodeKind::Comparator;
    case Symbol::Switch:
        return NodeKind::Switch;
    case Symbol::Contact:
        return NodeKind::Contact;
    case Symbol::DeadBand:
    case Symbol::Curve:
    case Symbol::Scale:
        return NodeKind::Formula;
    case Symbol::Function:
    case Symbol::Latch:
    case Symbol::Filter:
    case Symbol::Pi:
    case Symbol::Delay:
    case Symbol::Ramp:
    case Symbol::Hysteresis:
        return NodeKind::Memory;
    case Symbol::Wire:
    case Symbol::Roll:
    case Symbol::Limit:
    case Symbol::Link:
    case Symbol::Guide:
    case Symbol::Frame:
        break;
    }
    return std::nullopt;
}

int Drawing::Connect(const Port &from, const Port &to, Edge::Kind kind)
{
    if (from.node < 0 && to.node < 0)
        return -1;
    return net_.Connect(PinOf(from), PinOf(to), kind);
}

Shape Drawing::Value(const QRectF &rect, int p)
{
    return Shape(rect, net_.Add({.kind = NodeKind::Value, .param = p}));
}

void Drawing::Gives(const Shape &shape, NetFormula formula)
{
    Node &node = net_.nodes[std::size_t(shape.Node())];
    if (node.kind != NodeKind::Limiter)
        node.kind = NodeKind::Formula;
    node.formula = std::move(formula);
}

void Drawing::Holds(const Shape &limiter, double lowest, double highest)
{
    Node &node = net_.nodes[std::size_t(limiter.Node())];
    node.lowest = lowest;
    node.highest = highest;
}

void Drawing::ShowsLevel(const Shape &shape, const Shape &value, const Shape &level)
{
    for (Element &element : elements_)
        if (element.node == shape.Node()) {
            element.shownNode = value.Node();
            element.levelNode = level.Node();
        }
}

Shape Drawing::Group(const QRectF &rect, const QString &name, std::initializer_list<Shape> members)
{
    const Shape group(rect, net_.Add({.kind = NodeKind::Group, .text = name}));
    for (const Shape &member : members)
        Connect(member.Right(), group.Left(), Edge::Kind::Member);
    return group;
}

Shape Drawing::TimesFactor(const QPointF &left, double factor)
{
    const Shape shape = Scale(left, QStringLiteral("x %1").arg(factor));
    Gives(shape, [factor](const NetInputs &inputs) { return Scaled(inputs.On(Side::Left), factor / 100); });
    return shape;
}

Shape Drawing::TimesParameter(const QPointF &left, int p)
{
    const Shape shape = Scale(left, QStringLiteral("x (%1)").arg(p));
    Gives(shape, [p](const NetInputs &inputs) {
        const std::optional<double> factor = inputs.Parameter(p);
        return factor ? Scaled(inputs.On(Side::Left), *factor / 100) : std::nullopt;
    });
    return shape;
}

Shape Drawing::ByParameter(const QPointF &left, int p)
{
    const Shape shape = Scale(left, QStringLiteral("\u00F7 (%1)").arg(p));
    Gives(shape, [p](const NetInputs &inputs) {
        const std::optional<double> whole = inputs.Parameter(p);
        return whole && *whole != 0 ? Scaled(inputs.On(Side::Left), 100 / *whole) : std::nullopt;
    });
    return shape;
}

Port Drawing::From(const QPointF &end, const QString &text, int p, const QString &labelName)
{
    Label(labelName, text, end, Qt::AlignRight, true);
    texts_.last().node = net_.Add({.kind = NodeKind::Signal, .text = text, .param = p});
    return {end + QPointF(0.6, 0), Side::Right, texts_.last().node};
}

Port Drawing::FromState(const QPointF &end, const QString &text, NetFormula formula, const QString &labelName)
{
    const Port port = From(end, text, Param::DriveState, labelName);
    Node &node = net_.nodes.back();
    node.kind = NodeKind::Formula;
    node.formula = std::move(formula);
    return port;
}

void Drawing::To(const Port &from, const QPointF &begin, const QString &text, int p, const QString &labelName)
{
    Label(labelName, text, begin, Qt::AlignLeft, true);
    texts_.last().node = net_.Add({.kind = NodeKind::Signal, .text = text, .param = p});
    Wire(from, {begin - QPointF(1, 0), Side::Left, texts_.last().node});
}

void Drawing::Constant(const QString &labelName, const QString &text, const Port &contact)
{
    // Clear of the hand's room around the arm.
    const QPointF start = contact.at - QPointF(2.2, 0);
    Label(labelName, text, start - QPointF(0.4, 0), Qt::AlignRight);
    // "False" is no number, and stands for 0 as "0.00%" does.
    QString number = text;
    number.remove(u'%');
    const int node = net_.Add({.kind = NodeKind::Constant, .text = text, .number = number.toDouble()});
    Line({start, Side::Right, node}, contact);
}

} // namespace quorvik
