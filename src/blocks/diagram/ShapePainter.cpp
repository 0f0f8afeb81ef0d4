#include "blocks/diagram/ShapePainter.h"

#include "blocks/diagram/DrawingPainter.h"

#include <QPainter>

namespace quorvik
{

namespace
{

constexpr double PointRadius = 0.5;
constexpr double LampRadius = 0.6;

/** Characteristics drawn inside boxes, in fractions of the box: each stroke by itself. */
QList<QPolygonF> Characteristic(const Element &element)
{
    const bool isOneSided = element.state == 0;
    switch (element.symbol) {
    case Symbol::Limiter:
        if (isOneSided)
            return {{{{0.12, 0.72}, {0.5, 0.72}, {0.78, 0.22}, {0.9, 0.22}}}};
        return {{{{0.16, 0.78}, {0.34, 0.78}, {0.66, 0.22}, {0.84, 0.22}}}};
    case Symbol::Ramp:
        return {{{{0.14, 0.8}, {0.3, 0.8}, {0.62, 0.22}, {0.86, 0.22}}}};
    case Symbol::Curve:
        if (!element.look.line.isEmpty())
            return {element.look.line};
        if (isOneSided)
            return {{{{0.1, 0.78}, {0.26, 0.78}, {0.78, 0.2}, {0.92, 0.2}}}};
        return {{{{0.08, 0.84}, {0.2, 0.84}, {0.8, 0.16}, {0.92, 0.16}}}};
    case Symbol::Absolute:
        return {{{{0.22, 0.12}, {0.5, 0.5}, {0.78, 0.12}}}};
    case Symbol::Hysteresis:
        if (element.look.isFlipped)
            return {{{{0.88, 0.78}, {0.34, 0.78}, {0.34, 0.22}}},
                    {{{0.66, 0.78}, {0.66, 0.22}, {0.12, 0.22}}}};
        return {{{{0.12, 0.78}, {0.66, 0.78}, {0.66, 0.22}}}, {{{0.34, 0.78}, {0.34, 0.22}, {0.88, 0.22}}}};
    case Symbol::DeadBand:
        return {{{{0.12, 0.84}, {0.36, 0.62}, {0.36, 0.5}, {0.64, 0.5}, {0.64, 0.38}, {0.88, 0.16}}}};
    default:
        return {};
    }
}

/** The axes behind a characteristic. */
QList<QPolygonF> Axes(const Element &element)
{
    const auto crossing = [](const QPointF &origin) {
        const QList<QPointF> across = {QPointF(0.08, origin.y()), QPointF(0.92, origin.y())};
        const QList<QPointF> upwards = {QPointF(origin.x(), 0.1), QPointF(origin.x(), 0.9)};
        return QList<QPolygonF>{QPolygonF(across), QPolygonF(upwards)};
    };
    const bool isOneSided = element.state == 0;
    switch (element.symbol) {
    case Symbol::Curve:
        if (!element.look.line.isEmpty())
            return crossing(element.look.origin);
        return isOneSided ? QList<QPolygonF>{{{{0.1, 0.1}, {0.1, 0.9}, {0.92, 0.9}}}} : crossing({0.5, 0.5});
    case Symbol::DeadBand:
        return crossing({0.5, 0.5});
    case Symbol::Limiter:
        return isOneSided ? crossing({0.5, 0.72}) : QList<QPolygonF>();
    default:
        return {};
    }
}

QPointF PlaceIn(const QRectF &rect, const QPointF &part)
{
    return {rect.left() + part.x() * rect.width(), rect.top() + part.y() * rect.height()};
}

void PaintLines(DrawingPainter &on, const QRectF &rect, const QList<QPolygonF> &lines)
{
    for (const QPolygonF &parts : lines) {
        QPolygonF line;
        for (const QPointF &part : parts)
            line.append(on.Px(PlaceIn(rect, part)));
        on.Canvas().drawPolyline(line);
    }
}

void PaintLamp(DrawingPainter &on, const QPointF &centre, double radius, bool isOn)
{
    on.SetInk(isOn ? on.Ink().arm : on.Ink().line, 0.24, isOn ? on.Ink().arm : on.Ink().paper);
    on.Canvas().drawEllipse(on.Px(centre), radius * on.Unit(), radius * on.Unit());
}

void PaintPoint(DrawingPainter &on, const Element &element)
{
    if (!element.look.point)
        return;
    const QColor color = element.look.isActive ? on.Ink().arm : on.Ink().line;
    on.SetInk(on.Ink().paper, 0.1, color);
    on.Canvas().drawEllipse(on.Px(PlaceIn(element.rect, *element.look.point)), PointRadius * on.Unit(),
                            PointRadius * on.Unit());
}

/** How far it is, as a bar along the bottom of its box. */
void PaintGauge(DrawingPainter &on, const Element &element)
{
    const QRectF &rect = element.rect;
    const QRectF bar(rect.left() + 1, rect.bottom() - 1.2, rect.width() - 2, 0.5);
    QRectF part = bar;
    part.setWidth(bar.width() * *element.look.full);
    on.Canvas().fillRect(on.Px(part), element.look.isActive ? on.Ink().arm : on.Ink().curve);
    on.SetInk(on.Ink().line, 0.1);
    on.Canvas().drawRect(on.Px(bar));
}

} // namespace

void PaintCharacteristic(DrawingPainter &on, const Element &element)
{
    on.PaintBox(element.rect);
    on.SetInk(on.Ink().faint, 0.12);
    PaintLines(on, element.rect, Axes(element));
    if (element.symbol == Symbol::Curve && element.look.point) {
        const QPointF &point = *element.look.point;
        const QPointF &origin = element.look.origin;
        on.SetInk(on.Ink().faint, 0.12, Qt::NoBrush, Qt::DashLine);
        PaintLines(on, element.rect,
                   {{{QPointF(point.x(), origin.y()), point, QPointF(origin.x(), point.y())}}});
    }
    on.SetInk(on.Ink().curve, 0.25);
    PaintLines(on, element.rect, Characteristic(element));
    PaintPoint(on, element);
}

void PaintComparator(DrawingPainter &on, const Element &element)
{
    on.PaintBox(element.rect);
    PaintLamp(on, element.rect.topRight() + QPointF(-1.2, 1.2), LampRadius, element.look.isActive);
    if (!element.look.point)
        return;
    // The level in the middle, the value beside it.
    const double y = element.look.point->y();
    on.SetInk(on.Ink().faint, 0.12);
    PaintLines(on, element.rect, {{{QPointF(0.14, y), QPointF(0.86, y)}}});
    on.SetInk(on.Ink().curve, 0.25);
    PaintLines(on, element.rect, {{{QPointF(0.5, y - 0.1), QPointF(0.5, y + 0.1)}}});
    PaintPoint(on, element);
}

void PaintLatch(DrawingPainter &on, const Element &element)
{
    on.PaintBox(element.rect);
    // The step at S says that the change counts, the lamp at the output that the latch is set.
    const Shape shape(element.rect);
    const QPointF set = Drawing::SetInput(shape).at;
    on.SetInk(on.Ink().curve, 0.2);
    on.Canvas().drawPolyline(on.Px(QPolygonF{
        {set + QPointF(0.4, 0.7), set + QPointF(1, 0.7), set + QPointF(1, -0.7), set + QPointF(1.6, -0.7)}}));
    PaintLamp(on, element.rect.topRight() + QPointF(-1.8, 1.8), 0.8, element.state != 0);
}

void PaintCaptioned(DrawingPainter &on, const Element &element)
{
    on.PaintBox(element.rect);
    PaintPoint(on, element);
    if (!element.look.full)
        return;
    PaintGauge(on, element);
    if (element.symbol != Symbol::Pi || !element.look.isActive)
        return;
    const QRectF line(element.rect.left(), element.rect.bottom() - 3.5, element.rect.width(), 2);
    on.SetInk(on.Ink().arm, 0.1);
    on.Canvas().drawText(on.Px(line), Qt::AlignCenter | Qt::TextDontClip, QStringLiteral("at clamp"));
}

} // namespace quorvik
