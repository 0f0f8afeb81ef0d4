#include "desktop/ValueMark.h"

#include "desktop/BoxColors.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace quorvik
{

namespace
{

const QColor Amber(255, 176, 0);

/** Between the edge and the outline. */
constexpr double OutlineInset = 0.5;
/** From this height down the outline gets thinner, so that it stays clear of the text. */
constexpr double FullHeight = 18;
constexpr double ThinnestOutline = 0.5;

// Shares of a body's height.
constexpr double MarkLeft = 0.27;
constexpr double MarkGap = 0.2;
constexpr double ArrowWidth = 0.36;
constexpr double ArrowHeight = 0.5;
constexpr double CornerSide = 0.55;
/** As far as the corner reaches where the text stands. */
constexpr double CornerRoom = 0.5;

QFont Bold(QFont font)
{
    font.setBold(true);
    return font;
}

QPainterPath ArrowUp(const QRectF &place)
{
    const double x = place.center().x();
    const double shaft = place.width() / 6;
    const double neck = place.top() + place.height() * 0.52;
    QPainterPath arrow(QPointF(x, place.top()));
    for (const QPointF &point :
         {QPointF(place.right(), neck), QPointF(x + shaft, neck), QPointF(x + shaft, place.bottom()),
          QPointF(x - shaft, place.bottom()), QPointF(x - shaft, neck), QPointF(place.left(), neck)})
        arrow.lineTo(point);
    arrow.closeSubpath();
    return arrow;
}

} // namespace

ValueMark::ValueMark(ValueState state, const QColor &body)
    : state_(state)
    , body_(body)
{
}

bool ValueMark::HasOutline() const
{
    return state_ == ValueState::Old || state_ == ValueState::Never || state_ == ValueState::Lost;
}

QColor ValueMark::Ink() const
{
    return HasOutline() ? FaintText(body_) : ContrastingText(body_);
}

QFont ValueMark::TextFont(QFont font) const
{
    if (state_ == ValueState::Emulated)
        font.setItalic(true);
    return font;
}

double ValueMark::QuestionWidth(const QFont &font) const
{
    return QFontMetricsF(Bold(font)).horizontalAdvance(u'?');
}

double ValueMark::Room(const QFont &font, double height) const
{
    switch (state_) {
    case ValueState::Never:
        return height * (MarkLeft + MarkGap) + QuestionWidth(font);
    case ValueState::Queued:
        return height * (MarkLeft + ArrowWidth + MarkGap);
    case ValueState::Refused:
        return height * CornerRoom;
    default:
        return 0;
    }
}

void ValueMark::Draw(QPainter &painter, const QRectF &body) const
{
    const double height = body.height();
    const double radius = height / 8;
    const double left = body.left() + height * MarkLeft;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (HasOutline()) {
        // In the text's colour and within the body, so that it is seen on a light and on a dark window.
        const double thick = std::clamp(height / FullHeight, ThinnestOutline, 1.0);
        const double inset = OutlineInset + thick;
        QPen dashes(Ink(), thick);
        dashes.setDashPattern({3, 3});
        dashes.setCapStyle(Qt::FlatCap);
        painter.setPen(dashes);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(body.adjusted(inset, inset, -inset, -inset), radius, radius);
    }
    const QColor ink = ContrastingText(body_);
    if (state_ == ValueState::Never) {
        painter.setFont(Bold(painter.font()));
        painter.setPen(ink);
        painter.drawText(QRectF(left, body.top(), QuestionWidth(painter.font()) + 1, height),
                         Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("?"));
    } else if (state_ == ValueState::Queued) {
        const double top = body.center().y() - height * ArrowHeight / 2;
        painter.fillPath(ArrowUp({left, top, height * ArrowWidth, height * ArrowHeight}), ink);
    } else if (state_ == ValueState::Refused) {
        QPainterPath clip;
        clip.addRoundedRect(body, radius, radius);
        painter.setClipPath(clip);
        const double side = height * CornerSide;
        QPainterPath corner(body.topLeft());
        corner.lineTo(body.topLeft() + QPointF(side, 0));
        corner.lineTo(body.topLeft() + QPointF(0, side));
        painter.fillPath(corner, Amber);
        // Parts it from a body of its own colour.
        painter.setPen(QPen(ink, 1));
        painter.drawLine(body.topLeft() + QPointF(side, 0), body.topLeft() + QPointF(0, side));
    }
    painter.restore();
}

} // namespace quorvik
