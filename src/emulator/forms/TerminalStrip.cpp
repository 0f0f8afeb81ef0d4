#include "emulator/forms/TerminalStrip.h"

#include "emulator/forms/LampLook.h"
#include "platform/Guard.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace quorvik
{

TerminalStrip::TerminalStrip(QList<Terminal> terminals, Indicator indicator, int indicated, bool selectable,
                             QWidget *parent)
    : QWidget(parent)
    , terminals_(std::move(terminals))
    , levels_(indicated, 0.0)
    , indicator_(indicator)
    , selectable_(selectable)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setMouseTracking(selectable);
}

void TerminalStrip::SetIndicator(int position, double level)
{
    level = std::clamp(level, -1.0, 1.0);
    if (levels_.at(position) == level)
        return;
    levels_[position] = level;
    update();
}

void TerminalStrip::SetSelected(int position)
{
    selected_ = position;
    update();
}

void TerminalStrip::SetBridges(const QList<QPair<int, int>> &bridges)
{
    if (bridges_ == bridges)
        return;
    bridges_ = bridges;
    update();
}

double TerminalStrip::LineHeight() const
{
    return fontMetrics().height();
}

double TerminalStrip::IndicatorHeight() const
{
    return indicator_ == Indicator::None ? 0.0 : LineHeight() * 0.85;
}

double TerminalStrip::ScrewDiameter() const
{
    return LineHeight() * 0.95;
}

QSize TerminalStrip::sizeHint() const
{
    int widest = 0;
    for (const Terminal &terminal : terminals_)
        widest = std::max(widest, fontMetrics().horizontalAdvance(terminal.name));
    const double cell = std::max(widest + LineHeight() * 0.6, LineHeight() * 2.0);
    const double height = LineHeight() * 2.3 + IndicatorHeight() + ScrewDiameter();
    return QSize(int(std::ceil(cell * double(terminals_.size()))), int(std::ceil(height)));
}

QSize TerminalStrip::minimumSizeHint() const
{
    return sizeHint();
}

QRectF TerminalStrip::CellRect(int position) const
{
    const double cell = double(width()) / double(terminals_.size());
    return QRectF(cell * position, 0.0, cell, height());
}

QRectF TerminalStrip::ScrewRect(const QRectF &cell) const
{
    const double diameter = ScrewDiameter();
    const double top = cell.top() + LineHeight() * 1.1 + IndicatorHeight();
    return QRectF(cell.center().x() - diameter / 2.0, top, diameter, diameter);
}

void TerminalStrip::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int position = 0; position < terminals_.size(); ++position)
            PaintTerminal(painter, position);
        painter.setPen(QPen(SignalColor(), LineHeight() * 0.22, Qt::SolidLine, Qt::RoundCap));
        for (const auto &[from, to] : bridges_)
            painter.drawLine(ScrewRect(CellRect(from)).center(), ScrewRect(CellRect(to)).center());
    });
}

void TerminalStrip::PaintTerminal(QPainter &painter, int position) const
{
    const QColor window = palette().color(QPalette::Window);
    const QColor ink = palette().color(QPalette::WindowText);
    const Terminal &terminal = terminals_.at(position);
    const QRectF cell = CellRect(position);
    const bool isSelected = position == selected_;

    painter.setPen(QPen(isSelected ? palette().color(QPalette::Highlight) : Mixed(window, ink, 0.35),
                        isSelected ? LineHeight() * 0.14 : 1.0));
    painter.setBrush(Mixed(window, ink, 0.09));
    painter.drawRect(cell.adjusted(1.5, 1.5, -1.5, -1.5));

    painter.setPen(ink);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.drawText(QRectF(cell.left(), cell.top() + LineHeight() * 0.1, cell.width(), LineHeight()),
                     Qt::AlignCenter, QString::number(terminal.number));
    painter.setFont(font());

    if (position < levels_.size()) {
        const double size = LineHeight() * 0.6;
        const QRectF place(cell.center().x() - size / 2.0, cell.top() + LineHeight() * 1.15, size, size);
        if (indicator_ == Indicator::Lamp) {
            PaintLamp(painter, place, levels_.at(position) != 0.0, palette());
        } else if (indicator_ == Indicator::Level) {
            const QRectF trough =
                QRectF(cell.left(), place.top(), cell.width(), size)
                    .adjusted(LineHeight() * 0.4, size * 0.2, -LineHeight() * 0.4, -size * 0.2);
            painter.setPen(QPen(Mixed(window, ink, 0.5), 1.0));
            painter.setBrush(palette().color(QPalette::Base));
            painter.drawRect(trough);
            const double level = levels_.at(position);
            QRectF bar = trough.adjusted(1.0, 1.0, -1.0, -1.0);
            bar.setWidth(bar.width() * std::abs(level));
            // A negative level grows from the right end.
            if (level < 0.0)
                bar.moveRight(trough.right() - 1.0);
            painter.fillRect(bar, level < 0.0 ? palette().color(QPalette::Highlight) : SignalColor());
        }
    }

    const QRectF screw = ScrewRect(cell);
    QLinearGradient metal(screw.topLeft(), screw.bottomRight());
    metal.setColorAt(0.0, QColor(0xe8, 0xe8, 0xe8));
    metal.setColorAt(1.0, QColor(0x9a, 0x9a, 0x9a));
    painter.setPen(QPen(QColor(0x55, 0x55, 0x55), 1.0));
    painter.setBrush(metal);
    painter.drawEllipse(screw);
    const QPointF slot(screw.width() * 0.26, -screw.height() * 0.26);
    painter.setPen(QPen(QColor(0x44, 0x44, 0x44), screw.width() * 0.14, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(screw.center() - slot, screw.center() + slot);

    painter.setPen(ink);
    painter.drawText(QRectF(cell.left(), screw.bottom() + LineHeight() * 0.1, cell.width(), LineHeight()),
                     Qt::AlignCenter, terminal.name);
}

int TerminalStrip::PickableAt(const QPointF &place) const
{
    for (int position = 0; selectable_ && position < levels_.size(); ++position)
        if (CellRect(position).contains(place))
            return position;
    return -1;
}

void TerminalStrip::mousePressEvent(QMouseEvent *event)
{
    Guarded([&] {
        const int position = PickableAt(event->position());
        if (position >= 0)
            Q_EMIT Picked(position);
    });
}

void TerminalStrip::mouseMoveEvent(QMouseEvent *event)
{
    Guarded(
        [&] { setCursor(PickableAt(event->position()) >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor); });
}

} // namespace quorvik
