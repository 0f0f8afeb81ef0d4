#include "blocks/diagram/DrawingPainter.h"

#include "blocks/diagram/ShapePainter.h"
#include "desktop/BoxColors.h"

#include <QPainter>
#include <QPainterPath>

namespace quorvik
{

namespace
{

constexpr double LineWidth = 0.24;
constexpr double LitWidth = 0.4;

} // namespace

DrawingInk::DrawingInk(const QPalette &palette)
    : paper(palette.color(QPalette::Window))
{
    const QColor text = palette.color(QPalette::WindowText);
    const bool dark = paper.lightness() < text.lightness();
    line = Mixed(text, paper, 0.2);
    faint = Mixed(text, paper, 0.55);
    fill = dark ? Mixed(paper, QColor(Qt::white), 0.09) : Mixed(paper, QColor(Qt::white), 0.75);
    arm = dark ? QColor(255, 128, 74) : QColor(217, 72, 15);
    curve = dark ? QColor(110, 178, 255) : QColor(16, 98, 190);
}

DrawingPainter::DrawingPainter(QPainter &painter, const DrawingInk &ink, double unit)
    : painter_(painter)
    , ink_(ink)
    , unit_(unit)
{
    painter_.setRenderHint(QPainter::Antialiasing);
}

void DrawingPainter::Paint(const Drawing &drawing, const QRectF &exposedCells)
{
    // Outlines of groups lie under everything, arms above it.
    static constexpr int Layers = 3;
    const auto layerOf = [](Symbol symbol) {
        if (symbol == Symbol::Frame)
            return 0;
        return symbol == Symbol::Switch || symbol == Symbol::Contact || symbol == Symbol::Link ? 2 : 1;
    };
    const QRectF exposed = exposedCells.adjusted(-2, -2, 2, 2);
    for (int layer = 0; layer < Layers; ++layer)
        for (const Element &element : drawing.Elements()) {
            if (layerOf(element.symbol) != layer || !element.visible)
                continue;
            const QRectF bounds = Drawing::Bounds(element).adjusted(-0.01, -0.01, 0.01, 0.01);
            if (element.symbol == Symbol::Link || bounds.intersects(exposed))
                PaintElement(drawing, element);
        }
}

void DrawingPainter::PaintElement(const Drawing &drawing, const Element &element)
{
    line_ = element.isLit ? ink_.arm : element.isFaint ? ink_.faint : ink_.line;
    lineWidth_ = element.isLit ? LitWidth : LineWidth;
    switch (element.symbol) {
    case Symbol::Wire:
        PaintWire(element.points, element.arrow);
        break;
    case Symbol::Dot:
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(line_);
        painter_.drawEllipse(Px(element.rect));
        break;
    case Symbol::Terminal:
        PaintTerminal(element);
        break;
    case Symbol::Sum:
    case Symbol::Multiplier:
        PaintRound(element);
        break;
    case Symbol::Gain:
    case Symbol::Inverter:
        PaintTriangle(element);
        break;
    case Symbol::And:
    case Symbol::Nand:
        PaintGate(element);
        break;
    case Symbol::Or:
        PaintOr(element.rect);
        break;
    case Symbol::Roll:
        PaintRoll(element);
        break;
    case Symbol::Function:
    case Symbol::Filter:
    case Symbol::Scale:
    case Symbol::Pi:
    case Symbol::Delay:
        PaintCaptioned(*this, element);
        break;
    case Symbol::Comparator:
        PaintComparator(*this, element);
        break;
    case Symbol::Latch:
        PaintLatch(*this, element);
        break;
    case Symbol::Limiter:
    case Symbol::Ramp:
    case Symbol::Hysteresis:
    case Symbol::DeadBand:
    case Symbol::Curve:
    case Symbol::Absolute:
        PaintCharacteristic(*this, element);
        break;
    case Symbol::Coil:
        PaintBox(element.rect);
        SetInk(line_, lineWidth_);
        painter_.drawLine(Px(element.rect.bottomLeft()), Px(element.rect.topRight()));
        break;
    case Symbol::Switch:
    case Symbol::Contact:
        PaintArm(element);
        break;
    case Symbol::Limit:
        SetInk(element.state > 1 ? ink_.arm : line_, element.state > 1 ? 0.6 : lineWidth_);
        painter_.drawPolyline(Px(element.points));
        break;
    case Symbol::Link:
    case Symbol::Guide:
        SetInk(element.isLit ? line_ : ink_.faint, element.isLit ? lineWidth_ : 0.15, Qt::NoBrush,
               Qt::DashLine);
        painter_.drawPolyline(
            Px(element.symbol == Symbol::Link ? drawing.LinkLine(element) : element.points));
        break;
    case Symbol::Frame:
        SetInk(ink_.faint, 0.12);
        painter_.drawRoundedRect(Px(element.rect), 0.6 * unit_, 0.6 * unit_);
        break;
    }
}

void DrawingPainter::SetInk(const QColor &color, double cells, const QBrush &fill, Qt::PenStyle style)
{
    // Whole pixels keep orthogonal lines crisp.
    QPen pen(color, std::max(1.0, std::round(cells * unit_)), style, Qt::RoundCap, Qt::MiterJoin);
    if (style == Qt::DashLine)
        pen.setCapStyle(Qt::FlatCap);
    painter_.setPen(pen);
    painter_.setBrush(fill);
}

void DrawingPainter::PaintWire(const QPolygonF &line, bool arrow)
{
    SetInk(line_, lineWidth_);
    const QPolygonF head = arrow ? ArrowHead(line) : QPolygonF();
    QPolygonF shaft = line;
    // The shaft ends inside its head, or its square end would show beside the tip.
    if (!head.isEmpty())
        shaft.last() = (head.at(1) + head.at(2)) / 2;
    painter_.drawPolyline(Px(shaft));
    if (head.isEmpty())
        return;
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(line_);
    painter_.drawPolygon(Px(head));
}

void DrawingPainter::PaintBox(const QRectF &rect)
{
    SetInk(line_, lineWidth_, ink_.fill);
    painter_.drawRoundedRect(Px(rect), 0.4 * unit_, 0.4 * unit_);
}

void DrawingPainter::PaintRound(const Element &element)
{
    SetInk(line_, lineWidth_, ink_.fill);
    painter_.drawEllipse(Px(element.rect));
    const QPointF centre = element.rect.center();
    if (element.symbol == Symbol::Multiplier) {
        const double reach = 0.6;
        painter_.drawLine(Px(centre + QPointF(-reach, -reach)), Px(centre + QPointF(reach, reach)));
        painter_.drawLine(Px(centre + QPointF(-reach, reach)), Px(centre + QPointF(reach, -reach)));
        return;
    }
    painter_.drawText(Px(element.rect), Qt::AlignCenter, QStringLiteral("\u03A3"));
    // Beside the arrow of its input, outside the circle.
    static const QPointF places[] = {{-2.4, -1.3}, {1.3, -2.3}, {2.4, -1.3}, {1.3, 2.3}};
    for (int i = 0; i < int(std::min<qsizetype>(element.text.size(), std::size(places))); ++i) {
        const QPointF at = centre + places[i];
        const double reach = 0.5;
        if (element.text.at(i) == u' ')
            continue;
        painter_.drawLine(Px(at - QPointF(reach, 0)), Px(at + QPointF(reach, 0)));
        if (element.text.at(i) == u'+')
            painter_.drawLine(Px(at - QPointF(0, reach)), Px(at + QPointF(0, reach)));
    }
}

void DrawingPainter::PaintTriangle(const Element &element)
{
    SetInk(line_, lineWidth_, ink_.fill);
    QRectF body = element.rect;
    const double bubble = 0.55;
    if (element.symbol == Symbol::Inverter)
        body.setRight(body.right() - 2 * bubble);
    const QPointF apex(body.right(), body.center().y());
    painter_.drawPolygon(Px(QPolygonF{{body.topLeft(), apex, body.bottomLeft()}}));
    if (element.symbol == Symbol::Inverter)
        painter_.drawEllipse(Px(QPointF(apex.x() + bubble, apex.y())), bubble * unit_, bubble * unit_);
    const QRectF textArea(body.left(), body.top(), body.width() * 0.72, body.height());
    painter_.drawText(Px(textArea), Qt::AlignCenter, element.text);
}

void DrawingPainter::PaintGate(const Element &element)
{
    SetInk(line_, lineWidth_, ink_.fill);
    QRectF body = element.rect;
    const double bubble = 0.5;
    if (element.symbol == Symbol::Nand)
        body.setRight(body.right() - 2 * bubble);
    const QRectF px = Px(body);
    const double bow = std::min(px.height(), px.width());
    QPainterPath path(px.topLeft());
    path.lineTo(px.right() - bow / 2, px.top());
    path.arcTo(QRectF(px.right() - bow, px.top(), bow, px.height()), 90, -180);
    path.lineTo(px.bottomLeft());
    path.closeSubpath();
    painter_.drawPath(path);
    if (element.symbol == Symbol::Nand)
        painter_.drawEllipse(Px(QPointF(body.right() + bubble, body.center().y())), bubble * unit_,
                             bubble * unit_);
}

void DrawingPainter::PaintOr(const QRectF &rect)
{
    SetInk(line_, lineWidth_, ink_.fill);
    // The corners reach out at the left, so that the hollow back meets the tips of its inputs.
    const double reach = 0.6 * unit_;
    const QRectF px = Px(rect);
    const QPointF tip(px.right(), px.center().y());
    const QPointF top(px.left() - reach, px.top());
    const QPointF bottom(px.left() - reach, px.bottom());
    QPainterPath path(top);
    path.cubicTo({px.center().x(), px.top()}, {px.right() - px.width() * 0.2, px.top() + px.height() * 0.2},
                 tip);
    path.cubicTo({px.right() - px.width() * 0.2, px.bottom() - px.height() * 0.2},
                 {px.center().x(), px.bottom()}, bottom);
    path.quadTo({px.left() + 1.6 * reach, px.center().y()}, top);
    painter_.drawPath(path);
}

void DrawingPainter::PaintRoll(const Element &element)
{
    const QPointF centre = Px(element.rect.center());
    const double rim = element.rect.width() / 2 * unit_;
    const double core = (element.points.at(1).x() - element.points.first().x()) * unit_;
    SetInk(line_, lineWidth_, ink_.fill);
    painter_.drawEllipse(centre, rim, rim);
    constexpr int Layers = 6;
    SetInk(ink_.faint, 0.1);
    for (int layer = 1; layer < Layers && core < rim; ++layer) {
        const double radius = core + (rim - core) * layer / Layers;
        painter_.drawEllipse(centre, radius, radius);
    }
    SetInk(line_, lineWidth_, ink_.paper);
    painter_.drawEllipse(centre, core, core);
    const double hub = 0.5 * unit_;
    painter_.drawLine(centre - QPointF(hub, 0), centre + QPointF(hub, 0));
    painter_.drawLine(centre - QPointF(0, hub), centre + QPointF(0, hub));
}

void DrawingPainter::PaintArm(const Element &element)
{
    const QPointF end = Drawing::ArmEnd(element);
    for (const QPointF &point : element.points) {
        // The path goes through the contact that is touched, and past the others.
        const bool isOnPath = element.isLit && (point == element.points.first() || point == end);
        SetInk(element.isLit && !isOnPath ? ink_.line : line_, isOnPath ? LitWidth : LineWidth, ink_.paper);
        painter_.drawEllipse(Px(point), ContactRadius * unit_, ContactRadius * unit_);
    }
    SetInk(ink_.arm, 0.45);
    painter_.drawLine(Px(element.points.first()), Px(end));
}

void DrawingPainter::PaintTerminal(const Element &element)
{
    SetInk(line_, lineWidth_, ink_.fill);
    painter_.drawEllipse(Px(element.rect));
    const QPointF slot(0.45, -0.45);
    painter_.drawLine(Px(element.rect.center() - slot), Px(element.rect.center() + slot));
}

} // namespace quorvik
