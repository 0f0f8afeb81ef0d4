#include "emulator/forms/Gauges.h"

#include "desktop/BoxColors.h"
#include "emulator/forms/LampLook.h"
#include "platform/Guard.h"

#include <QPainter>
#include <algorithm>

namespace quorvik
{

Lamp::Lamp(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Lamp::SetLit(bool lit)
{
    lit_ = lit;
    update();
}

QSize Lamp::sizeHint() const
{
    return QSize(fontMetrics().height(), fontMetrics().height());
}

void Lamp::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double margin = width() * 0.1;
        PaintLamp(painter, QRectF(rect()).adjusted(margin, margin, -margin, -margin), lit_, palette());
    });
}

LevelBar::LevelBar(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LevelBar::SetLevel(double level)
{
    level_ = std::clamp(level, -1.0, 1.0);
    update();
}

QSize LevelBar::sizeHint() const
{
    return QSize(fontMetrics().height() * 8, qRound(fontMetrics().height() * 0.8));
}

void LevelBar::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        const QRectF trough = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        painter.fillRect(trough, palette().color(QPalette::Base));
        const double middle = trough.center().x();
        const double end = middle + (trough.width() / 2.0 - 1.0) * level_;
        painter.fillRect(
            QRectF(std::min(middle, end), trough.top() + 2.0, std::abs(end - middle), trough.height() - 4.0),
            SignalColor());
        const QColor line =
            Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.5);
        painter.setPen(line);
        painter.drawRect(trough);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawLine(QPointF(middle, trough.top()), QPointF(middle, trough.bottom()));
    });
}

Ruler::Ruler(QStringList texts, int shortTicks, int margin, QWidget *parent)
    : QWidget(parent)
    , texts_(std::move(texts))
    , shortTicks_(shortTicks)
    , margin_(margin)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

bool Ruler::HasTexts() const
{
    return !texts_.join(QString()).isEmpty();
}

QSize Ruler::sizeHint() const
{
    int width = 0;
    for (const QString &text : texts_)
        width += fontMetrics().horizontalAdvance(text) + fontMetrics().height();
    return QSize(width, qRound(fontMetrics().height() * (HasTexts() ? 1.45 : 0.45)));
}

void Ruler::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        const double line = fontMetrics().height();
        const int spans = int(texts_.size() - 1);
        const double span = (width() - 1.0 - 2.0 * margin_) / spans;
        painter.setPen(Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.75));
        for (int tick = 0; tick <= spans * shortTicks_; ++tick) {
            const double x = margin_ + span * tick / shortTicks_;
            painter.drawLine(QPointF(x, 0.0), QPointF(x, line * (tick % shortTicks_ == 0 ? 0.4 : 0.2)));
        }
        painter.setPen(palette().color(QPalette::WindowText));
        for (int position = 0; position <= spans; ++position) {
            const QString &text = texts_.at(position);
            const double textWidth = fontMetrics().horizontalAdvance(text) + 1.0;
            // The figures at the ends stay inside the widget.
            const double left = std::clamp(margin_ + span * position - textWidth / 2.0, 0.0,
                                           std::max(0.0, width() - textWidth));
            painter.drawText(QRectF(left, line * 0.42, textWidth, line), Qt::AlignCenter, text);
        }
    });
}

} // namespace quorvik
