#include "operator/VirtualSlider.h"

#include "platform/Guard.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr std::int16_t DesignMin = 10000;
constexpr std::int16_t DesignMax = 0;
constexpr int DesignLargeChange = 1000;
constexpr int ScaleSteps = 10;
constexpr int LongestScaleText = 7; // "-327.68"

} // namespace

VirtualSlider::VirtualSlider(QWidget *parent)
    : QAbstractSlider(parent)
{
    setOrientation(Qt::Vertical);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
    SetDesignLimits();
}

void VirtualSlider::SetLimits(std::int16_t min, std::int16_t max, int largeChange)
{
    const QSignalBlocker blocked(this);
    min_ = min;
    max_ = max;
    setRange(std::min(min, max), std::max(min, max));
    setPageStep(largeChange);
    // "Up" on the keyboard moves the handle up, whichever end is the greater one.
    setInvertedAppearance(!TopIsGreater());
    setInvertedControls(!TopIsGreater());
    update();
}

void VirtualSlider::SetDesignLimits()
{
    SetLimits(DesignMin, DesignMax, DesignLargeChange);
}

void VirtualSlider::SetScaleTexts(const QString &topText, const QString &bottomText)
{
    topText_ = topText;
    bottomText_ = bottomText;
    update();
}

QSize VirtualSlider::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {int(metrics.height() * 3.4) + metrics.horizontalAdvance(u'0') * LongestScaleText,
            metrics.height() * 16};
}

QSize VirtualSlider::minimumSizeHint() const
{
    return {sizeHint().width(), fontMetrics().height() * 9};
}

int VirtualSlider::Left() const
{
    return std::max((width() - sizeHint().width()) / 2, 0) + 1;
}

int VirtualSlider::TravelTop() const
{
    return fontMetrics().height();
}

int VirtualSlider::TravelLength() const
{
    return std::max(height() - 2 * TravelTop(), 1);
}

QRect VirtualSlider::HandleRect() const
{
    const int unit = fontMetrics().height();
    const int y = TravelTop() + QStyle::sliderPositionFromValue(minimum(), maximum(), sliderPosition(),
                                                                TravelLength(), TopIsGreater());
    return {Left(), y - unit * 2 / 3, unit * 2, unit * 4 / 3};
}

void VirtualSlider::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        DrawScale(painter);
        DrawHandle(painter);
    });
}

void VirtualSlider::DrawScale(QPainter &painter) const
{
    const QRect handle = HandleRect();
    const int unit = fontMetrics().height();
    const int centre = handle.center().x();
    const int bottom = TravelTop() + TravelLength();

    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(palette().base());
    painter.drawRoundedRect(QRectF(centre - unit * 0.25, TravelTop(), unit * 0.5, TravelLength()),
                            unit * 0.25, unit * 0.25);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(isEnabled() ? QPalette::Highlight : QPalette::Mid));
    painter.drawRoundedRect(
        QRectF(centre - unit * 0.25, handle.center().y(), unit * 0.5, bottom - handle.center().y()),
        unit * 0.25, unit * 0.25);

    painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
    const double left = handle.right() + unit * 0.3;
    for (int step = 0; step <= ScaleSteps; ++step) {
        const double y = TravelTop() + double(TravelLength()) * step / ScaleSteps;
        const bool isLong = step % (ScaleSteps / 2) == 0;
        painter.drawLine(QPointF(left, y), QPointF(left + unit * (isLong ? 0.5 : 0.3), y));
    }
    const QRectF text(left + unit * 0.75, 0, width() - left - unit * 0.75, unit);
    painter.drawText(text.translated(0, TravelTop() - unit / 2.0), Qt::AlignLeft | Qt::AlignVCenter,
                     topText_);
    painter.drawText(text.translated(0, bottom - unit / 2.0), Qt::AlignLeft | Qt::AlignVCenter, bottomText_);
}

void VirtualSlider::DrawHandle(QPainter &painter) const
{
    const QRectF handle = QRectF(HandleRect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor face = palette().color(QPalette::Button);
    if (isSliderDown())
        face = face.darker(115);
    else if (underMouse())
        face = face.lighter(110);
    painter.setBrush(face);
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2)
                              : QPen(palette().color(QPalette::Dark), 1));
    painter.drawRoundedRect(handle, 3, 3);
    painter.setPen(QPen(palette().color(QPalette::ButtonText), 2));
    painter.drawLine(QPointF(handle.left() + 5, handle.center().y()),
                     QPointF(handle.right() - 5, handle.center().y()));
}

void VirtualSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const int y = event->position().toPoint().y();
    const QRect handle = HandleRect();
    if (y >= handle.top() && y <= handle.bottom()) {
        grabOffset_ = y - handle.center().y();
        setSliderDown(true);
    } else {
        const bool towardsTop = y < handle.top();
        const SliderAction step = towardsTop == TopIsGreater() ? SliderPageStepAdd : SliderPageStepSub;
        triggerAction(step);
    }
    update();
}

void VirtualSlider::mouseMoveEvent(QMouseEvent *event)
{
    if (!isSliderDown()) {
        event->ignore();
        return;
    }
    const int position = event->position().toPoint().y() - grabOffset_ - TravelTop();
    setSliderPosition(
        QStyle::sliderValueFromPosition(minimum(), maximum(), position, TravelLength(), TopIsGreater()));
    update();
}

void VirtualSlider::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(false);
    update();
}

void VirtualSlider::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QAbstractSlider::wheelEvent(event);
    else
        event->ignore();
}

} // namespace quorvik
