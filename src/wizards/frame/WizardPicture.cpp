#include "wizards/frame/WizardPicture.h"

#include "desktop/BoxColors.h"
#include "platform/RuntimeFailure.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

void SetTextHeight(QPainter &painter, qreal height, bool bold)
{
    QFont font = painter.font();
    // The canvas is scaled, so pixels are canvas units here.
    font.setPixelSize(int(std::lround(height)));
    font.setBold(bold);
    painter.setFont(font);
}

} // namespace

Ink::Ink(const QPalette &palette)
    : line(palette.color(QPalette::Text))
    , faint(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.32))
    , body(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.04))
    , ground(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight), 0.10))
    , accent(palette.color(QPalette::Highlight))
    , onAccent(palette.color(QPalette::HighlightedText))
{
}

WizardPicture::WizardPicture(QWidget *parent, const QString &description, DrawFunction draw)
    : QWidget(parent)
    , draw_(std::move(draw))
{
    setObjectName(QStringLiteral("Image1"));
    setAccessibleName(description);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize WizardPicture::sizeHint() const
{
    const int width = int(fontMetrics().height() * 13);
    return {width, width * CanvasHeight / CanvasWidth};
}

qreal WizardPicture::Unit() const
{
    return std::min(width() / qreal(CanvasWidth), height() / qreal(CanvasHeight));
}

QPointF WizardPicture::Origin() const
{
    return {(width() - CanvasWidth * Unit()) / 2, (height() - CanvasHeight * Unit()) / 2};
}

void WizardPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Ink ink(palette());
    painter.fillRect(rect(), ink.ground);
    painter.translate(Origin());
    painter.scale(Unit(), Unit());
    try {
        draw_(painter, ink);
    } catch (const RuntimeFailure &) {
        // A picture is decoration: what cannot be worked out is told where it is asked for, not at each
        // paint.
    }
}

void UsePen(QPainter &painter, const QColor &color, qreal width)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void UseShape(QPainter &painter, const QColor &color, const QColor &fill, qreal width)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(fill);
}

void DrawArrow(QPainter &painter, QPointF from, QPointF to)
{
    constexpr qreal headLength = 9;
    constexpr qreal headWidth = 7;
    const QLineF line(from, to);
    const QPointF along = (to - from) / line.length();
    const QPointF across(-along.y(), along.x());
    const QPointF neck = to - along * headLength;
    painter.drawLine(from, neck);
    QPainterPath head(to);
    head.lineTo(neck + across * headWidth / 2);
    head.lineTo(neck - across * headWidth / 2);
    head.closeSubpath();
    painter.fillPath(head, painter.pen().color());
}

void DrawCaption(QPainter &painter, QPointF centre, const QString &text, qreal height, bool bold)
{
    SetTextHeight(painter, height, bold);
    const QRectF box(centre.x() - 200, centre.y() - height, 400, 2 * height);
    painter.drawText(box, Qt::AlignCenter, text);
}

void DrawCaptionRight(QPainter &painter, QPointF left, const QString &text, qreal height)
{
    SetTextHeight(painter, height, false);
    painter.drawText(QRectF(left.x(), left.y() - height, 400, 2 * height), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
}

void DrawDrive(QPainter &painter, const Ink &ink, QPointF corner, qreal width)
{
    const qreal height = width * 1.35;
    const QRectF body(corner, QSizeF(width, height));
    UseShape(painter, ink.line, ink.body);
    painter.drawRoundedRect(body, 6, 6);

    const QRectF display(body.left() + width * 0.15, body.top() + height * 0.1, width * 0.7, height * 0.2);
    UseShape(painter, ink.line, ink.accent, 1.2);
    painter.drawRoundedRect(display, 3, 3);
    UsePen(painter, ink.onAccent, 1.6);
    painter.drawPolyline(QPolygonF{{display.left() + 8, display.bottom() - 7},
                                   {display.left() + display.width() * 0.35, display.top() + 7},
                                   {display.left() + display.width() * 0.65, display.top() + 7},
                                   {display.right() - 8, display.bottom() - 7}});

    UsePen(painter, ink.faint, 1.6);
    for (int i = 0; i < 5; ++i) {
        const qreal y = body.top() + height * (0.4 + i * 0.07);
        painter.drawLine(QPointF(body.left() + width * 0.2, y), QPointF(body.right() - width * 0.2, y));
    }

    constexpr int terminals = 7;
    const qreal pitch = width * 0.8 / terminals;
    for (int i = 0; i < terminals; ++i) {
        const QRectF terminal(body.left() + width * 0.1 + i * pitch, body.bottom() - height * 0.17,
                              pitch * 0.8, height * 0.1);
        UseShape(painter, ink.line, ink.ground, 1);
        painter.drawRect(terminal);
    }
}

void DrawMachine(QPainter &painter, const Ink &ink, QPointF centre, qreal radius, const QString &letter,
                 bool highlighted)
{
    UseShape(painter, ink.line, highlighted ? ink.accent : ink.body, highlighted ? 2.2 : 1.6);
    painter.drawEllipse(centre, radius, radius);
    painter.setPen(highlighted ? ink.onAccent : ink.line);
    DrawCaption(painter, centre, letter, radius, true);
}

} // namespace quorvik
