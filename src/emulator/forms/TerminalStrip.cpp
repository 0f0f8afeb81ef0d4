#include "emulator/forms/TerminalStrip.h"

#include "desktop/BoxColors.h"
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
    , bars_(indicated, Bar{})
    , indicator_(indicator)
    , selectable_(selectable)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setMouseTracking(selectable);
    QStringList spoken;
    for (const Terminal &terminal : terminals_)
        spoken.append(QStringLiteral("%1 %2").arg(terminal.number).arg(terminal.name));
    setAccessibleName(QStringLiteral("Terminals ") + spoken.join(QStringLiteral(", ")));
}

void TerminalStrip::SetLamp(int position, bool lit)
{
    SetBar(position, {0.0, lit ? 1.0 : 0.0});
}

void TerminalStrip::SetLevel(int position, double from, double to)
{
    SetBar(position, {std::clamp(from, 0.0, 1.0), std::clamp(to, 0.0, 1.0)});
}

void TerminalStrip::SetBar(int position, const Bar &bar)
{
    if (bars_.at(position) == bar)
        return;
    bars_[position] = bar;
    update();
}

void TerminalStrip::SetSelected(int position)
{
    selected_ = position;
    update();
}

void TerminalStrip::SetContacts(const QList<QPair<int, int>> &contacts)
{
    if (contacts_ == contacts)
        return;
    contacts_ = contacts;
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

double TerminalStrip::NaturalWidth(int terminals) const
{
    double width = 0.0;
    for (int position = 0; position < terminals; ++position)
        width += std::max(fontMetrics().horizontalAdvance(terminals_.at(position).name) + LineHeight() * 0.5,
                          LineHeight() * 1.9);
    return width;
}

QSize TerminalStrip::sizeHint() const
{
    const double height = LineHeight() * 2.3 + IndicatorHeight() + ScrewDiameter();
    return QSize(int(std::ceil(NaturalWidth(int(terminals_.size())))), int(std::ceil(height)));
}

QSize TerminalStrip::minimumSizeHint() const
{
    return sizeHint();
}

QRectF TerminalStrip::CellRect(int position) const
{
    const int count = int(terminals_.size());
    const double spare = (width() - NaturalWidth(count)) / count;
    const double left = NaturalWidth(position) + spare * position;
    const double right = NaturalWidth(position + 1) + spare * (position + 1);
    return QRectF(left, 0.0, right - left, height());
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
        for (const auto &[from, to] : contacts_)
            PaintContact(painter, from, to);
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

    if (position < bars_.size()) {
        const double size = LineHeight() * 0.6;
        const QRectF place(cell.center().x() - size / 2.0, cell.top() + LineHeight() * 1.15, size, size);
        if (indicator_ == Indicator::Lamp)
            PaintLamp(painter, place, IsLit(position), palette());
        else
            PaintLevel(painter,
                       QRectF(cell.left(), place.top(), cell.width(), size)
                           .adjusted(LineHeight() * 0.4, size * 0.2, -LineHeight() * 0.4, -size * 0.2),
                       bars_.at(position));
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

void TerminalStrip::PaintLevel(QPainter &painter, const QRectF &trough, const Bar &bar) const
{
    const QColor line = Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.5);
    painter.setPen(QPen(line, 1.0));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRect(trough);
    const QRectF inside = trough.adjusted(1.0, 1.0, -1.0, -1.0);
    const double zero = inside.left() + inside.width() * bar.from;
    const double end = inside.left() + inside.width() * bar.to;
    painter.fillRect(QRectF(std::min(zero, end), inside.top(), std::abs(end - zero), inside.height()),
                     SignalColor());
    if (bar.from > 0.0)
        painter.drawLine(QPointF(zero, trough.top()), QPointF(zero, trough.bottom()));
}

// The contact passes above the screws, so that it does not seem to touch the one between its ends.
void TerminalStrip::PaintContact(QPainter &painter, int from, int to) const
{
    const QPointF start = ScrewRect(CellRect(from)).center();
    const QPointF end = ScrewRect(CellRect(to)).center();
    const double above = LineHeight() * 1.45;
    painter.setPen(QPen(SignalColor(), LineHeight() * 0.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({start, {start.x(), above}, {end.x(), above}, end}));
}

int TerminalStrip::PickableAt(const QPointF &place) const
{
    for (int position = 0; selectable_ && position < bars_.size(); ++position)
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
