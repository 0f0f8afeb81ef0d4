#include "blocks/diagram/Drawing.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr double DotRadius = 0.45;
constexpr double ContactRadius = 0.5;
constexpr double HandRoom = 1.5;
constexpr double LinkStub = 1.5;

QRectF Around(const QPointF &centre, double radius)
{
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
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

void Drawing::Chain(std::initializer_list<Shape> shapes)
{
    for (const Shape *shape = shapes.begin(); shape + 1 != shapes.end(); ++shape)
        Wire(shape->Right(), (shape + 1)->Left());
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

Shape Drawing::Box(Symbol symbol, const QPointF &left, const QSizeF &size, const QString &name,
                   const QString &text)
{
    const QRectF rect(left - QPointF(0, size.height() / 2), size);
    Add({.symbol = symbol, .name = name, .rect = rect, .text = text});
    return Shape(rect);
}

Shape Drawing::Terminal(const QPointF &centre, int number, const QString &labelName, const QString &role)
{
    const QRectF rect = Around(centre, 0.9);
    Add({.symbol = Symbol::Terminal, .rect = rect});
    Label(labelName, QString::number(number), centre + QPointF(1.7, 0), Qt::AlignLeft, true);
    Label({}, role, centre + QPointF(5, 0), Qt::AlignLeft);
    return Shape(rect);
}

Shape Drawing::Captioned(Symbol symbol, const QPointF &left, const QSizeF &size, const Caption &caption)
{
    const Shape shape = Box(symbol, left, size);
    Label(caption.labelName, caption.text, shape.Rect().center() + caption.offset, Qt::AlignHCenter, true,
          caption.toolTip);
    return shape;
}

Shape Drawing::Latch(const QString &name, const QPointF &left)
{
    const Shape shape = Box(Symbol::Latch, left, {11, 2 * LatchReach + 5}, name);
    for (const auto &[letter, input] :
         {std::pair("S", SetInput(shape).at), std::pair("R", ResetInput(shape).at)})
        Label({}, QLatin1String(letter), input + QPointF(2.6, 0), Qt::AlignHCenter, true);
    Label({}, QStringLiteral("Latch"), shape.Rect().center() + QPointF(0, 0.2), Qt::AlignHCenter, true,
          QStringLiteral("Set when S becomes true, reset while R is true"));
    return shape;
}

Shape Drawing::Roll(const QPointF &centre, double radius, double coreRadius)
{
    const QRectF rect = Around(centre, radius);
    Add({.symbol = Symbol::Roll,
         .rect = rect,
         .points = {{centre, QPointF(centre.x() + coreRadius, centre.y())}}});
    return Shape(rect);
}

Shape Drawing::Limiter(const QPointF &left, const QString &name)
{
    const Shape shape = Box(Symbol::Limiter, left, {6, 6}, name);
    elements_.last().state = 1;
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

LivePart Drawing::Part(const QString &name)
{
    return {this, int(Find(name) - elements_.constData())};
}

void Drawing::Link(const Port &from, const LivePart &arm)
{
    // Selectors side by side meet in one line clear of their boxes.
    const double away = from.side == Side::Top ? -LinkStub : from.side == Side::Bottom ? LinkStub : 0;
    Add({.symbol = Symbol::Link, .points = {{from.at, from.at + QPointF(0, away)}}, .partner = arm.Index()});
}

void Drawing::Guide(const Port &from, const Port &to)
{
    Add({.symbol = Symbol::Guide, .points = RouteWire(from, to, HalfWay)});
}

Port Drawing::From(const QPointF &end, const QString &text, const QString &labelName)
{
    Label(labelName, text, end, Qt::AlignRight, true);
    return {end + QPointF(0.6, 0), Side::Right};
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
    const QPointF stub = link.points.last();
    return {{link.points.first(), stub, {middle.x(), stub.y()}, middle}};
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
