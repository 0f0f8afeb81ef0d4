#include "map/MapPainter.h"

#include "desktop/BoxColors.h"
#include "desktop/ValueMark.h"
#include "map/MapMetrics.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvik
{

using namespace MapMetrics;

struct MapPainter::Inks {
    explicit Inks(const QPalette &palette)
        : paper(Paper(palette))
        , card(palette.color(QPalette::Base))
        , text(palette.color(QPalette::Text))
        , isDark(ContrastingText(paper) == QColor(Qt::white))
        , caption(Mixed(text, card, 0.25))
        , frame(Mixed(text, paper, 0.35))
        , wire(Mixed(text, paper, isDark ? 0.3 : 0.2))
        , link(isDark ? QColor(112, 164, 255) : QColor(20, 92, 214))
        , lit(isDark ? QColor(255, 146, 84) : QColor(217, 72, 15))
    {
    }

    QColor paper;
    QColor card;
    QColor text;
    bool isDark;
    QColor caption;
    QColor frame;
    QColor wire;
    QColor link;
    QColor lit;
    QColor amber = QColor(255, 176, 0);
};

namespace
{

constexpr double FaintOpacity = 0.28;
constexpr double Radius = 4;
constexpr double BendRadius = 4;
constexpr double ArrowLength = 7;
constexpr double ArrowHalf = 3.4;
constexpr double TextInset = 7;
constexpr double ValueGap = 5; ///< between a caption and its value
constexpr double MarkRadius = 6.5;
constexpr double PulseWidth = 7;

QColor HeaderColor(CardGroup group)
{
    switch (group) {
    case CardGroup::Terminals:
        return QColor(0x2A, 0x70, 0x6B);
    case CardGroup::References:
        return QColor(0x27, 0x74, 0xB8);
    case CardGroup::Loops:
        return QColor(0x4A, 0x58, 0xA6);
    case CardGroup::Logic:
        return QColor(0x7A, 0x4F, 0x86);
    case CardGroup::Service:
        return QColor(0x66, 0x70, 0x7A);
    case CardGroup::Machine:
        break;
    }
    return QColor(0x3C, 0x46, 0x52);
}

/** A wire with its bends rounded, up to the arrow. */
QPainterPath Bent(const QPolygonF &way)
{
    QPainterPath path(way.first());
    for (int i = 1; i + 1 < way.size(); ++i) {
        QLineF in(way[i], way[i - 1]);
        QLineF out(way[i], way[i + 1]);
        const double radius = std::min({BendRadius, in.length() / 2, out.length() / 2});
        in.setLength(radius);
        out.setLength(radius);
        path.lineTo(in.p2());
        path.quadTo(way[i], out.p2());
    }
    QLineF last(way.last(), way[way.size() - 2]);
    last.setLength(std::min(last.length(), ArrowLength - 1));
    path.lineTo(last.p2());
    return path;
}

QPolygonF Arrow(const QPolygonF &way)
{
    const QPointF tip = way.last();
    QLineF back(tip, way[way.size() - 2]);
    back.setLength(ArrowLength);
    const QPointF along = (back.p2() - tip) / ArrowLength;
    const QPointF aside(-along.y(), along.x());
    return {tip, back.p2() + aside * ArrowHalf, back.p2() - aside * ArrowHalf};
}

/** A disc with a bar for what is blocked, with a line under a ceiling for what is limited. */
void DrawMark(QPainter &painter, const QColor &amber, MapMark::Kind kind, const QPointF &centre)
{
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(amber);
    painter.drawEllipse(centre, MarkRadius, MarkRadius);
    painter.setPen(QPen(Qt::black, 1.8, Qt::SolidLine, Qt::FlatCap));
    if (kind == MapMark::Kind::Blocked) {
        painter.drawLine(centre + QPointF(-3.4, 0), centre + QPointF(3.4, 0));
    } else {
        painter.drawLine(centre + QPointF(-3.6, -2.6), centre + QPointF(3.6, -2.6));
        painter.drawLine(centre + QPointF(0, -2), centre + QPointF(0, 4));
    }
}

} // namespace

QFont MapPainter::TextFont(const QFont &base)
{
    QFont font(base);
    font.setPixelSize(int(TextHeight));
    return font;
}

QColor MapPainter::Paper(const QPalette &palette)
{
    const QColor window = palette.color(QPalette::Window);
    return ContrastingText(window) == QColor(Qt::white) ? window : Mixed(window, Qt::white, 0.45);
}

QPalette MapPainter::PaperPalette()
{
    QPalette palette(Qt::white, Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::black);
    return palette;
}

void MapPainter::Paint(QPainter &painter, const QPalette &palette, const MapLight &light,
                       const QRectF &visible) const
{
    const Inks inks(palette);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(TextFont(painter.font()));
    PaintWires(painter, inks, light);
    const double around = PulseWidth + 1;
    for (int card = 0; card < MapModel::CardCount(); ++card)
        if (layout_.Card(card).adjusted(-around, -around, around, around).intersects(visible) &&
            !(light.isAlone && !light.path->cards[std::size_t(card)]))
            PaintCard(painter, inks, card, light);
    if (!light.isAlone && visible.bottom() > layout_.Size().height() - LegendHeight - Margin)
        PaintLegend(painter, inks);
}

void MapPainter::PaintWires(QPainter &painter, const Inks &inks, const MapLight &light) const
{
    // Those of the path come last, over the others.
    for (const bool wantsLit : {false, true})
        for (int i = 0; i < int(model_.Wires().size()); ++i) {
            const bool isLit = light.path && light.path->wires[std::size_t(i)];
            if (isLit == wantsLit && (isLit || !light.isAlone))
                PaintWire(painter, inks, i, isLit && !light.isAlone, light.path && !isLit);
        }
}

void MapPainter::PaintWire(QPainter &painter, const Inks &inks, int wire, bool isLit, bool isFaint) const
{
    const MapWire &shown = model_.Wires()[std::size_t(wire)];
    const QPolygonF &way = layout_.Way(wire);
    const QColor color = isLit ? inks.lit : shown.isLink ? inks.link : inks.wire;
    // Mixed and not drawn through, or crossings would show as dots.
    const QColor ink = isFaint ? Mixed(inks.paper, color, FaintOpacity) : color;
    painter.setPen(QPen(ink,
                        isLit          ? 2.6
                        : shown.isLink ? 1.7
                                       : 1.3,
                        Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(Bent(way));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(Arrow(way));
}

void MapPainter::PaintCard(QPainter &painter, const Inks &inks, int card, const MapLight &light) const
{
    const MapCard &entry = MapCards()[std::size_t(card)];
    const QRectF place = layout_.Card(card);
    const bool isFaint = light.path && !light.path->cards[std::size_t(card)];
    if (card == light.pulsing && light.pulse > 0) {
        QColor halo = inks.amber;
        halo.setAlphaF(float(light.pulse));
        painter.setPen(QPen(halo, PulseWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(place, Radius, Radius);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(inks.card);
    painter.drawRoundedRect(place, Radius, Radius);

    const QColor header = HeaderColor(entry.group);
    QPainterPath head;
    head.setFillRule(Qt::WindingFill);
    head.addRoundedRect(layout_.Header(card), Radius, Radius);
    head.addRect(layout_.Header(card).adjusted(0, HeaderHeight / 2, 0, 0));
    painter.fillPath(head, isFaint ? Mixed(inks.card, header, FaintOpacity + 0.25) : header);

    QFont bold = painter.font();
    bold.setBold(true);
    const QFont plain = painter.font();
    painter.setFont(bold);
    painter.setPen(Qt::white);
    painter.drawText(layout_.Header(card).adjusted(TextInset, 0, -TextInset, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(entry.title));
    painter.setFont(plain);
    if (const QRectF symbol = layout_.Symbol(card); !symbol.isEmpty())
        PaintSymbol(painter, inks, symbol);
    if (card == light.pulsing && light.pulsingRow >= 0 && light.pulse > 0) {
        QColor halo = inks.amber;
        halo.setAlphaF(float(light.pulse * 0.6));
        painter.fillRect(layout_.Row(card, light.pulsingRow), halo);
    }
    if (card == light.card && light.row >= 0)
        painter.fillRect(layout_.Row(card, light.row).adjusted(1, 0, -1, 0),
                         Mixed(inks.card, inks.lit, 0.14));
    if (isFaint)
        painter.setOpacity(FaintOpacity + 0.2);
    for (int row = 0; row < int(entry.rows.size()); ++row)
        PaintRow(painter, inks, card, row, !light.isAlone);
    painter.setOpacity(1);

    const bool isPointedAt = card == light.card;
    painter.setPen(QPen(isPointedAt ? inks.lit
                        : isFaint   ? Mixed(inks.paper, inks.frame, 0.4)
                                    : inks.frame,
                        isPointedAt ? 2 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place, Radius, Radius);
    if (!light.isAlone)
        PaintMarks(painter, inks, card);
}

void MapPainter::PaintRow(QPainter &painter, const Inks &inks, int card, int row, bool withValue) const
{
    const MapRow &shown = model_.Rows(card)[std::size_t(row)];
    const QRectF place = layout_.Row(card, row).adjusted(TextInset, 0, -TextInset, 0);
    const ValueMark mark(shown.state, inks.card);
    const QFont plain = painter.font();
    double taken = 0;
    if (withValue && !shown.value.isEmpty()) {
        QFont bold = mark.TextFont(plain);
        bold.setBold(true);
        painter.setFont(bold);
        const double room = mark.Room(bold, place.height());
        const double widest = place.width() * 0.7;
        const QString value =
            QFontMetricsF(bold).elidedText(shown.value, Qt::ElideRight, std::max(widest - room, 1.0));
        const double width = QFontMetricsF(bold).horizontalAdvance(value) + 1;
        taken = room + width + ValueGap;
        if (!mark.IsPlain())
            mark.Draw(painter, place.adjusted(place.width() - width - room - 4, 1, 4, -1));
        painter.setFont(bold);
        painter.setPen(mark.Ink());
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, value);
        painter.setFont(plain);
    }
    const bool isIdle = shown.param < 0;
    painter.setPen(isIdle ? FaintText(inks.card) : inks.caption);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(plain).elidedText(shown.caption, Qt::ElideRight, place.width() - taken));
}

void MapPainter::PaintSymbol(QPainter &painter, const Inks &inks, const QRectF &place) const
{
    const double radius = place.height() / 2 - 8;
    painter.setPen(QPen(inks.text, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(place.center(), radius, radius);
    // The brushes of a direct current machine.
    painter.setBrush(inks.text);
    for (const int side : {-1, 1})
        painter.drawRect(
            QRectF(place.center().x() + side * (radius + 3) - 2.5, place.center().y() - 6, 5, 12));
    const QFont plain = painter.font();
    QFont large = plain;
    large.setPixelSize(int(radius));
    large.setBold(true);
    painter.setFont(large);
    painter.drawText(place, Qt::AlignCenter, QStringLiteral("M"));
    painter.setFont(plain);
}

void MapPainter::PaintMarks(QPainter &painter, const Inks &inks, int card) const
{
    QPointF centre(layout_.Header(card).right() - MarkRadius - 5, layout_.Header(card).center().y());
    for (const MapMark &mark : model_.Marks())
        if (mark.card == card) {
            DrawMark(painter, inks.amber, mark.kind, centre);
            centre.rx() -= 2 * MarkRadius + 3;
        }
}

void MapPainter::PaintLegend(QPainter &painter, const Inks &inks) const
{
    const double y = layout_.Size().height() - LegendHeight / 2 - Margin / 2;
    double x = Margin;
    constexpr double sample = 30;
    const auto text = [&](const QString &words) {
        painter.setPen(inks.text);
        painter.drawText(QPointF(x, y + TextHeight * 0.36), words);
        x += QFontMetricsF(painter.font()).horizontalAdvance(words) + 22;
    };
    const auto wire = [&](const QColor &color, double width, const QString &words) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(x, y), QPointF(x + sample, y));
        x += sample + 6;
        text(words);
    };
    wire(inks.wire, 1.3, QStringLiteral("fixed wire"));
    wire(inks.link, 1.7, QStringLiteral("link, set by a parameter"));
    wire(inks.lit, 2.6, QStringLiteral("path under the pointer"));
    for (const auto &[kind, words] : {std::pair{MapMark::Kind::Blocked, "a switch blocks the path"},
                                      {MapMark::Kind::Limited, "a limit holds"}}) {
        DrawMark(painter, inks.amber, kind, {x + MarkRadius, y});
        x += 2 * MarkRadius + 6;
        text(QString::fromLatin1(words));
    }
    for (const auto &[group, words] : {std::pair{CardGroup::Terminals, "terminals"},
                                       {CardGroup::References, "references"},
                                       {CardGroup::Loops, "loops"},
                                       {CardGroup::Logic, "logic"},
                                       {CardGroup::Service, "service"}}) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(HeaderColor(group));
        painter.drawRoundedRect(QRectF(x, y - 5, 14, 10), 2, 2);
        x += 20;
        text(QString::fromLatin1(words));
    }
}

} // namespace quorvik
