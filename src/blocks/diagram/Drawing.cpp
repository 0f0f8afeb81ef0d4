#include "blocks/diagram/Drawing.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr double DotRadius = 0.45;
constexpr double HandRoom = 1.5;
constexpr double LinkStub = 1.5;

QRectF Around(const QPointF &centre, double radius)
{
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

} // namespace

void LiveText::Set(const QString &text) const
{
    drawing_->SetText(index_, text);
}

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
    return {points.first() + edge, contactsAtLeft ? Side::Right : Side::Left, drawing_->At(index_).node};
}

Port LivePart::Contact(int i) const
{
    const QPolygonF &points = drawing_->At(index_).points;
    const bool contactsAtLeft = points.at(1).x() < points.first().x();
    const QPointF edge(contactsAtLeft ? -ContactRadius : ContactRadius, 0);
    return {points.at(i + 1) + edge, contactsAtLeft ? Side::Left : Side::Right, drawing_->At(index_).node, i};
}

QRectF LivePart::Area() const
{
    return Drawing::Bounds(drawing_->At(index_)).adjusted(-HandRoom, -HandRoom, HandRoom, HandRoom);
}

int Drawing::Add(Element element)
{
    if (const auto kind = KindOf(element.symbol))
        element.node = net_.Add({.kind = *kind, .text = element.text, .state = element.state});
    elements_.append(std::move(element));
    return int(elements_.size()) - 1;
}

void Drawing::AddWire(const Port &from, const Port &to, double bend, bool arrow, Edge::Kind kind)
{
    Add({.symbol = Symbol::Wire,
         .points = RouteWire(from, to, bend),
         .arrow = arrow,
         .edge = Connect(from, to, kind)});
}

void Drawing::Chain(std::initializer_list<Shape> shapes)
{
    for (const Shape *shape = shapes.begin(); shape + 1 != shapes.end(); ++shape)
        Wire(shape->Right(), (shape + 1)->Left());
}

void Drawing::Path(const Port &from, const QList<QPointF> &corners, const Port &to, bool arrow)
{
    Add({.symbol = Symbol::Wire,
         .points = QPolygonF{from.at} + corners + QPolygonF{to.at},
         .arrow = arrow,
         .edge = Connect(from, to)});
}

void Drawing::Stroke(const QPolygonF &corners, bool arrow)
{
    Add({.symbol = Symbol::Wire, .points = corners, .arrow = arrow});
}

Port Drawing::Dot(const QPointF &at)
{
    const int index = Add({.symbol = Symbol::Dot, .rect = Around(at, DotRadius)});
    return {at, Side::Any, At(index).node};
}

Shape Drawing::Box(Symbol symbol, const QPointF &left, const QSizeF &size, const QString &name,
                   const QString &text)
{
    const QRectF rect(left - QPointF(0, size.height() / 2), size);
    const int index = Add({.symbol = symbol, .name = name, .rect = rect, .text = text});
    return Shape(rect, At(index).node);
}

Shape Drawing::Terminal(const QPointF &centre, int number, const QString &labelName, const QString &role)
{
    const QRectF rect = Around(centre, 0.9);
    const int index = Add({.symbol = Symbol::Terminal, .rect = rect, .text = QString::number(number)});
    Label(labelName, QString::number(number), centre + QPointF(1.7, 0), Qt::AlignLeft, true);
    Label({}, role, centre + QPointF(5, 0), Qt::AlignLeft);
    return Shape(rect, At(index).node);
}

Shape Drawing::Captioned(Symbol symbol, const QPointF &left, const QSizeF &size, const Caption &caption)
{
    const Shape shape = Box(symbol, left, size);
    net_.nodes[std::size_t(shape.Node())].text = caption.text;
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
    Add({.symbol = Symbol::Link,
         .points = {{from.at, from.at + QPointF(0, away)}},
         .partner = arm.Index(),
         .edge = Connect(from, arm.Pivot(), Edge::Kind::Control)});
}

void Drawing::Guide(const Port &from, const Port &to)
{
    // A selector stands by the value that it selects.
    const bool isChoice = from.node >= 0 && to.node >= 0;
    Add({.symbol = Symbol::Guide,
         .points = RouteWire(from, to, HalfWay),
         .edge = isChoice ? Connect(from, to, Edge::Kind::Control) : -1});
}

LiveText Drawing::LiveLabel(const QString &name, const QString &text, const QString &longestText,
                            const QPointF &at, Qt::Alignment align, bool bold)
{
    texts_.append(
        {.name = name, .text = text, .at = at, .align = align, .bold = bold, .longestText = longestText});
    return {this, int(texts_.size()) - 1};
}

void Drawing::Label(const QString &name, const QString &text, const QPointF &at, Qt::Alignment align,
                    bool bold, const QString &toolTip)
{
    texts_.append({.name = name, .text = text, .at = at, .align = align, .bold = bold, .toolTip = toolTip});
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
    if (const int node = elements_[index].node; node >= 0)
        net_.nodes[std::size_t(node)].state = state;
    Announce(index);
}

void Drawing::SetLook(int index, const ShapeLook &look)
{
    if (elements_.at(index).look == look)
        return;
    elements_[index].look = look;
    Announce(index);
}

void Drawing::SetText(int index, const QString &text)
{
    if (texts_.at(index).text == text)
        return;
    texts_[index].text = text;
    if (TextChanged)
        TextChanged(index);
}

void Drawing::SetVisible(int index, bool visible)
{
    if (elements_.at(index).visible == visible)
        return;
    elements_[index].visible = visible;
    Announce(index);
}

void Drawing::SetFaint(int index, bool isFaint)
{
    if (elements_.at(index).isFaint == isFaint)
        return;
    elements_[index].isFaint = isFaint;
    Announce(index);
}

void Drawing::SetLit(int index, bool isLit)
{
    if (elements_.at(index).isLit == isLit)
        return;
    elements_[index].isLit = isLit;
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
