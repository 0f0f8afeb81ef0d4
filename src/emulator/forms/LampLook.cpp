#include "emulator/forms/LampLook.h"

#include "desktop/BoxColors.h"

#include <QPainter>
#include <QRadialGradient>

namespace quorvik
{

QColor SignalColor()
{
    return QColor(0xff, 0xa0, 0x00);
}

void PaintLamp(QPainter &painter, const QRectF &place, bool lit, const QPalette &palette)
{
    const QColor rim = Mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.6);
    QRadialGradient glass(place.center() - QPointF(place.width(), place.height()) * 0.15,
                          place.width() * 0.6);
    const QColor body =
        lit ? SignalColor()
            : Mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.2);
    glass.setColorAt(0.0, lit ? QColor(0xff, 0xec, 0xb0) : body.lighter(120));
    glass.setColorAt(1.0, body);
    painter.setPen(QPen(rim, place.width() * 0.08));
    painter.setBrush(glass);
    painter.drawEllipse(place);
}

} // namespace quorvik
