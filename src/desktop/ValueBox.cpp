#include "desktop/ValueBox.h"

#include "desktop/PlainText.h"
#include "desktop/Pulse.h"
#include "desktop/ValueMark.h"
#include "platform/Guard.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int FocusRing = 2;

/** The room between text and edge, a third of the text's height. */
int Padding(const QFontMetrics &metrics)
{
    return FocusRing + metrics.height() / 4;
}

} // namespace

ValueBox::ValueBox(const QString &name, QWidget *parent)
    : QAbstractButton(parent)
{
    setObjectName(name);
    setFocusPolicy(Qt::StrongFocus);
    // Not that of whatever the box stands on.
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_Hover);
}

void ValueBox::SetBackColor(const QColor &color)
{
    if (color == backColor_)
        return;
    backColor_ = color;
    update();
}

void ValueBox::SetEditable(bool editable)
{
    if (editable == editable_)
        return;
    editable_ = editable;
    setCursor(editable ? Qt::PointingHandCursor : Qt::ArrowCursor);
    update();
}

bool ValueBox::SetText(const QString &shownText)
{
    if (shownText == text())
        return false;
    // An ampersand of a button's text would become a mnemonic; no value holds one.
    setText(shownText);
    return true;
}

void ValueBox::SetState(ValueState state)
{
    if (state == state_)
        return;
    state_ = state;
    update();
}

int ValueBox::WidthFor(const QString &shownText) const
{
    return fontMetrics().horizontalAdvance(shownText) + 2 * Padding(fontMetrics());
}

QSize ValueBox::sizeHint() const
{
    return {WidthFor(text()), fontMetrics().height() * 3 / 2};
}

void ValueBox::Pulse()
{
    quorvik::Pulse(this, [this](double strength) {
        pulse_ = strength;
        update();
    });
}

void ValueBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = height() / 8.0;
    const QColor back = isDown() && editable_ ? backColor_.lighter(130) : backColor_;
    const bool isHovered = editable_ && underMouse();
    QColor edge = palette().color(isHovered ? QPalette::Highlight : QPalette::WindowText);
    if (!isHovered)
        edge.setAlpha(110);
    painter.setPen(edge);
    painter.setBrush(back);
    painter.drawRoundedRect(body, radius, radius);

    const ValueMark mark(state_, back);
    const QColor ink = mark.Ink();
    // The ring of the focus stands around an outline, as it does around its own inner line.
    mark.Draw(painter, hasFocus() ? QRectF(rect()).adjusted(1, 1, -1, -1) : QRectF(rect()));
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), FocusRing));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
        if (!mark.HasOutline()) {
            painter.setPen(QPen(ink, 1));
            painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), radius, radius);
        }
    }
    if (pulse_ > 0) {
        painter.setBrush(Qt::NoBrush);
        QColor glow = palette().color(QPalette::Highlight);
        glow.setAlphaF(float(std::min(1.0, 2 * pulse_)));
        const double width = 2 + 4 * pulse_;
        painter.setPen(QPen(glow, width));
        painter.drawRoundedRect(QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2), radius,
                                radius);
    }
    painter.setFont(mark.TextFont(font()));
    painter.setPen(ink);
    const int padding = Padding(fontMetrics());
    const int room = int(std::ceil(mark.Room(font(), height())));
    const QRect place = rect().adjusted(std::max(padding, room), 0, -padding, 0);
    const int wanted = painter.fontMetrics().horizontalAdvance(text());
    // A raw value far outside its limits, or beside a mark, is squeezed: a number with a digit missing would
    // lie.
    if (wanted > place.width()) {
        painter.translate(place.right() + 1, 0);
        painter.scale(double(place.width()) / wanted, 1);
        painter.drawText(QRect(-wanted, 0, wanted, height()), Qt::AlignRight | Qt::AlignVCenter, text());
        return;
    }
    painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, text());
}

bool ValueBox::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !describe_)
        return QAbstractButton::event(event);
    Guarded([&] { ShowToolTip(static_cast<QHelpEvent *>(event)->globalPos()); });
    return true;
}

void ValueBox::ShowToolTip(const QPoint &place)
{
    QToolTip::showText(place, WithSecondLine(toolTip(), describe_()), this);
}

void ValueBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace quorvik
