#include "shell/WelcomePicture.h"

#include "platform/Guard.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace quorvik
{

namespace
{

// The drawing is made on a sheet of this size and scaled to the window.
constexpr double SheetWidth = 200;
constexpr double SheetHeight = 260;

constexpr QRgb NightTop = 0xff16324f;
constexpr QRgb NightBottom = 0xff2a628f;
constexpr QRgb Steel = 0xffd5dde5;
constexpr QRgb SteelShade = 0xff9fb0c0;
constexpr QRgb Ink = 0xff14283c;
constexpr QRgb Signal = 0xffffb454;
constexpr QRgb Lamp = 0xff5fd38d;

void DrawGridAndRamp(QPainter &painter)
{
    painter.setPen(QPen(QColor(255, 255, 255, 28), 1));
    for (int x = 20; x < SheetWidth; x += 20)
        painter.drawLine(QPointF(x, 14), QPointF(x, 104));
    for (int y = 14; y <= 104; y += 18)
        painter.drawLine(QPointF(20, y), QPointF(180, y));
    QPainterPath ramp(QPointF(20, 96));
    ramp.lineTo(44, 96);
    ramp.cubicTo(62, 96, 66, 82, 80, 62);
    ramp.cubicTo(94, 42, 98, 30, 118, 30);
    ramp.lineTo(150, 30);
    ramp.cubicTo(164, 30, 166, 50, 180, 56);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(Signal), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(ramp);
}

void DrawDrive(QPainter &painter)
{
    painter.setPen(QPen(QColor(Ink), 2));
    painter.setBrush(QColor(Steel));
    painter.drawRoundedRect(QRectF(24, 128, 62, 104), 5, 5);
    painter.setBrush(QColor(Ink));
    painter.drawRoundedRect(QRectF(33, 138, 44, 22), 3, 3);
    painter.setPen(QPen(QColor(Lamp), 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(QPolygonF({{38, 153}, {47, 153}, {56, 144}, {71, 144}}));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(Lamp));
    painter.drawEllipse(QPointF(38, 172), 4, 4);
    painter.setBrush(QColor(SteelShade));
    painter.drawEllipse(QPointF(51, 172), 4, 4);
    painter.drawEllipse(QPointF(64, 172), 4, 4);
    for (int row = 0; row < 4; ++row)
        painter.drawRoundedRect(QRectF(33, 186 + row * 9, 44, 4), 2, 2);
    painter.setBrush(QColor(Ink));
    for (int terminal = 0; terminal < 5; ++terminal)
        painter.drawRect(QRectF(34 + terminal * 9.2, 224, 6, 8));
}

void DrawMotor(QPainter &painter)
{
    painter.setPen(QPen(QColor(Signal), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    QPainterPath cable(QPointF(56, 233));
    cable.lineTo(56, 243);
    cable.cubicTo(56, 250, 60, 250, 66, 250);
    cable.lineTo(96, 250);
    cable.cubicTo(104, 250, 104, 246, 104, 240);
    cable.lineTo(104, 228);
    painter.drawPath(cable);

    painter.setPen(QPen(QColor(Ink), 2));
    painter.setBrush(QColor(SteelShade));
    painter.drawRect(QRectF(172, 186, 16, 10));
    painter.drawRect(QRectF(112, 222, 12, 10));
    painter.drawRect(QRectF(150, 222, 12, 10));
    QLinearGradient shell(0, 156, 0, 226);
    shell.setColorAt(0, QColor(Steel));
    shell.setColorAt(1, QColor(SteelShade));
    painter.setBrush(shell);
    painter.drawRoundedRect(QRectF(100, 158, 72, 66), 10, 10);
    painter.setPen(QPen(QColor(Ink), 1.5));
    for (int rib = 0; rib < 5; ++rib)
        painter.drawLine(QPointF(112, 168 + rib * 11.5), QPointF(150, 168 + rib * 11.5));
    painter.setPen(QPen(QColor(Ink), 2));
    painter.drawLine(QPointF(158, 158), QPointF(158, 224));
    painter.setBrush(QColor(Steel));
    painter.drawRoundedRect(QRectF(114, 146, 26, 13), 3, 3);
}

} // namespace

WelcomePicture::WelcomePicture(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize WelcomePicture::sizeHint() const
{
    const int height = fontMetrics().height() * 17;
    return {int(height * SheetWidth / SheetHeight), height};
}

void WelcomePicture::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QLinearGradient night(0, 0, 0, height());
        night.setColorAt(0, QColor(NightTop));
        night.setColorAt(1, QColor(NightBottom));
        painter.fillRect(rect(), night);
        const double scale = std::min(width() / SheetWidth, height() / SheetHeight);
        painter.translate((width() - SheetWidth * scale) / 2, (height() - SheetHeight * scale) / 2);
        painter.scale(scale, scale);
        DrawGridAndRamp(painter);
        DrawDrive(painter);
        DrawMotor(painter);
    });
}

} // namespace quorvik
