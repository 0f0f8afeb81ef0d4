#include "blocks/diagram/Drawing.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr double SumRadius = 1.6;
constexpr double DotRadius = 0.45;
constexpr double ContactRadius = 0.5;
constexpr double HandRoom = 1.5;

QRectF Around(const QPointF &centre, double radius)
{
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

QRectF FromLeft(const QPointF &left, const QSizeF &size)
{
    return {left.x(), left.y() - size.height() / 2, size.width(), size.height()};
}

} // namespace

void LivePart::Set(int state) const
{
    drawing_->SetState(index_, state);
}

void LivePart::Show(bool visible) const
{
    drawing_->SetVisible(index_, visible);
}

int LivePart::State() const
{
    return drawing_->At(index_).state;
}

Port LivePart::Pivot() const
{
    const QPolygonF &points = drawing_->At(index_).points;
    const bool contactsAtLeft = points.at(1).x() < points.first().x();
    const QPointF edge(contactsAtLeft ? ContactRadius : -ContactRadius, 0);
    return {points.first() + edge, contactsAtLeft ? Side::Right : Side::Left};
}

Port LivePart::Contact(int i) const
{
    const QPolygonF &points = drawing_->At(index_).points;
    const bool contactsAtLeft = points.at(1).x() < points.first().x();
    const QPointF edge(contactsAtLeft ? -ContactRadius : ContactRadius, 0);
    return {points.at(i + 1) + edge, contactsAtLeft ? Side::Left : Side::Right};
}

QRectF LivePart::Area() const
{
    return Drawing::Bounds(drawing_->At(index_)).adjusted(-HandRoom, -HandRoom, HandRoom, HandRoom);
}

int Drawing::Add(Element element)
{
    elements_.append(std::move(element));
    return int(elements_.size()) - 1;
}

void Drawing::AddWire(const Port &from, const Port &to, double bend, bool arrow)
{
    Path(RouteWire(from, to, bend), arrow);
}

void Drawing::Path(const QPolygonF &corners, bool arrow)
{
    Add({.symbol = Symbol::Wire, .points = corners, .arrow = arrow});
}

Port Drawing::Dot(const QPointF &at)
{
    Add({.symbol = Symbol::Dot, .rect = Around(at, DotRadius)});
    return {at, Side::Any};
}

Shape Drawing::Box(Symbol symbol, const QPointF &left, const QSizeF &size, const QString &name)
{
    const QRectF rect = FromLeft(left, size);
    Add({.symbol = symbol, .name = name, .rect = rect});
    return Shape(rect);
}

Shape Drawing::Terminal(const QPointF &centre, const QString &number, const QString &labelName,
                        Side labelSide)
{
    const QRectF rect = Around(centre, 0.9);
    Add({.symbol = Symbol::Terminal, .rect = rect});
    const double reach = 1.7;
    switch (labelSide) {
    case Side::Left:
        Label(labelName, number, centre - QPointF(reach, 0), Qt::AlignRight, true);
        break;
    case Side::Top:
        Label(labelName, number, centre - QPointF(0, reach + 0.4), Qt::AlignHCenter, true);
        break;
    case Side::Bottom:
        Label(labelName, number, centre + QPointF(0, reach + 0.4), Qt::AlignHCenter, true);
        break;
    default:
        Label(labelName, number, centre + QPointF(reach, 0), Qt::AlignLeft, true);
    }
    return Shape(rect);
}

Shape Drawing::Sum(const QPointF &centre, const QString &signs)
{
    const QRectF rect = Around(centre, SumRadius);
    Add({.symbol = Symbol::Sum, .rect = rect, .text = signs});
    return Shape(rect);
}

Shape Drawing::Multiplier(const QPointF &centre)
{
    const QRectF rect = Around(centre, SumRadius);
    Add({.symbol = Symbol::Multiplier, .rect = rect});
    return Shape(rect);
}

Shape Drawing::Gain(const QPointF &left, const QString &factor)
{
    const QRectF rect = FromLeft(left, {6, 7});
    Add({.symbol = Symbol::Gain, .rect = rect, .text = factor});
    return Shape(rect, Shape::Outline::Slanted);
}

Shape Drawing::Inverter(const QPointF &left, const QString &name)
{
    const QRectF rect = FromLeft(left, {5, 5});
    Add({.symbol = Symbol::Inverter, .name = name, .rect = rect});
    return Shape(rect, Shape::Outline::Slanted);
}

LivePart Drawing::LiveInverter(const QString &name, const QPointF &left)
{
    Inverter(left, name);
    return {this, int(elements_.size()) - 1};
}

Shape Drawing::Gate(Symbol symbol, const QPointF &left, const Caption &caption, const QString &labelName)
{
    const Shape shape = Box(symbol, left, caption.size);
    Label(labelName, caption.text, left + QPointF(3.3, 0), Qt::AlignHCenter, true, caption.toolTip);
    return shape;
}

Shape Drawing::And(const QPointF &left, const QString &labelName, double height)
{
    return Gate(Symbol::And, left, {QStringLiteral("AND"), QStringLiteral("And Function"), {7, height}},
                labelName);
}

Shape Drawing::Nand(const QPointF &left, const QString &labelName, double height)
{
    return Gate(Symbol::Nand, left, {QStringLiteral("NAND"), {}, {8, height}}, labelName);
}

Shape Drawing::Or(const QPointF &left, const QString &labelName, double height)
{
    return Gate(Symbol::Or, left, {QStringLiteral("OR"), QStringLiteral("Or Function"), {7, height}},
                labelName);
}

Shape Drawing::Roll(const QPointF &centre, double radius, double coreRadius)
{
    const QRectF rect = Around(centre, radius);
    Add({.symbol = Symbol::Roll,
         .rect = rect,
         .points = {{centre, QPointF(centre.x() + coreRadius, centre.y())}}});
    return Shape(rect);
}

Shape Drawing::Coil(const QPointF &left, const QString &name)
{
    return Box(Symbol::Coil, left, {5, 4}, name);
}

Shape Drawing::Function(const QPointF &left, const QSizeF &size, const QString &caption,
                        const QString &labelName, const QString &toolTip)
{
    const Shape shape = Box(Symbol::Function, left, size);
    Label(labelName, caption, shape.Rect().center(), Qt::AlignHCenter, true, toolTip);
    return shape;
}

void Drawing::Frame(const QRectF &rect, const QString &title)
{
    Add({.symbol = Symbol::Frame, .rect = rect});
    if (!title.isEmpty())
        Label({}, title, {rect.left() + 1, rect.top() + 1.6}, Qt::AlignLeft, true);
}

LivePart Drawing::Switch(const QString &name, const QPointF &pivot, const QList<QPointF> &contacts)
{
    return {this, Add({.symbol = Symbol::Switch, .name = name, .points = QPolygonF{pivot} + contacts})};
}

LivePart Drawing::Contact(const QString &name, const QPointF &pivot, const QPointF &contact)
{
    return {this, Add({.symbol = Symbol::Contact, .name = name, .points = {{pivot, contact}}})};
}

LivePart Drawing::Limit(const QString &name, const QPolygonF &line)
{
    return {this, Add({.symbol = Symbol::Limit, .name = name, .points = line, .state = 1})};
}

void Drawing::Link(const Port &from, const LivePart &arm)
{
    Add({.symbol = Symbol::Link, .points = {{from.at}}, .arrow = false, .partner = arm.Index()});
}

void Drawing::Guide(const Port &from, const Port &to)
{
    Add({.symbol = Symbol::Guide, .points = RouteWire(from, to, HalfWay)});
}

void Drawing::Constant(const QString &labelName, const QString &text, const Port &contact)
{
    // Clear of the hand's room around the arm.
    const QPointF start = contact.at - QPointF(2.2, 0);
    Label(labelName, text, start - QPointF(0.4, 0), Qt::AlignRight);
    Line({start, Side::Right}, contact);
}

void Drawing::Label(const QString &name, const QString &text, const QPointF &at, Qt::Alignment align,
                    bool bold, const QString &toolTip)
{
    texts_.append({name, text, at, align, bold, toolTip});
}

const Element *Drawing::Find(const QString &name) const
{
    const auto found = std::find_if(elements_.begin(), elements_.end(),
                                    [&](const Element &element) { return element.name == name; });
    return found == elements_.end() ? nullptr : &*found;
}

void Drawing::Announce(int index)
{
    if (!Changed)
        return;
    Changed(elements_.at(index));
    for (const Element &element : elements_)
        if (element.partner == index)
            Changed(element);
}

void Drawing::SetState(int index, int state)
{
    if (elements_.at(index).state == state)
        return;
    // The old place of a link's end must be repainted as well as the new one.
    Announce(index);
    elements_[index].state = state;
    Announce(index);
}

void Drawing::SetVisible(int index, bool visible)
{
    if (elements_.at(index).visible == visible)
        return;
    elements_[index].visible = visible;
    Announce(index);
}

QPointF Drawing::ArmEnd(const Element &element)
{
    const QPolygonF &points = element.points;
    if (element.symbol == Symbol::Contact)
        return element.state == 1 ? points.at(1) : OpenArmEnd(points.first(), points.at(1));
    if (element.state < 0)
        return OpenArmEnd(points.first(), points.at(1));
    return points.at(std::min<qsizetype>(element.state + 1, points.size() - 1));
}

QPolygonF Drawing::LinkLine(const Element &link) const
{
    const Element &arm = elements_.at(link.partner);
    const QPointF middle = (arm.points.first() + ArmEnd(arm)) / 2;
    const QPointF from = link.points.first();
    return {{from, {middle.x(), from.y()}, middle}};
}

QRectF Drawing::Bounds(const Element &element)
{
    QRectF bounds = element.rect.united(element.points.boundingRect());
    if (element.symbol == Symbol::Contact || element.symbol == Symbol::Switch) {
        const QPointF lifted = OpenArmEnd(element.points.first(), element.points.at(1));
        if (element.symbol == Symbol::Contact)
            bounds |= Around(lifted, 0.1);
        bounds.adjust(-ContactRadius, -ContactRadius, ContactRadius, ContactRadius);
    }
    return bounds;
}

} // namespace quorvik
