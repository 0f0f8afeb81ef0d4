#include "operator/LatchButton.h"

#include "platform/Guard.h"

#include <QStyleOption>
#include <QStylePainter>

namespace quorvik
{

namespace
{

constexpr QRgb LampOn = 0xff2e9e3e;

constexpr QLatin1String OpenText("open");
constexpr QLatin1String ClosedText("closed"); ///< the wider of the two

/** A contact between two terminals, its arm lifted while it is open. */
void DrawContact(QPainter &painter, const QRectF &box, bool isClosed, const QColor &ink)
{
    const double dot = box.height() * 0.13;
    const QPointF left(box.left() + box.width() * 0.28, box.center().y());
    const QPointF right(box.right() - box.width() * 0.28, box.center().y());
    const double lift = isClosed ? 0 : box.height() * 0.42;
    painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(box.left(), left.y()), left);
    painter.drawLine(right, QPointF(box.right(), right.y()));
    painter.drawLine(left, QPointF(right.x(), right.y() - lift));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(left, dot, dot);
    painter.drawEllipse(right, dot, dot);
}

} // namespace

LatchButton::LatchButton(QWidget *parent)
    : QPushButton(parent)
{
    setCheckable(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize LatchButton::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 25, fontMetrics().height() * 7 / 2};
}

void LatchButton::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        QStyleOptionButton option;
        initStyleOption(&option);
        option.text.clear();
        QStylePainter painter(this);
        painter.drawControl(QStyle::CE_PushButton, option);
        painter.setRenderHint(QPainter::Antialiasing);

        const double unit = fontMetrics().height();
        const QRectF box = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
        if (isChecked()) {
            // Within the style's own frame, which shows the focus.
            painter.setPen(QPen(QColor(LampOn), 2));
            painter.drawRoundedRect(box.adjusted(2, 2, -2, -2), unit * 0.2, unit * 0.2);
        }

        const QColor ink = palette().color(QPalette::ButtonText);
        const double sideWidth = fontMetrics().horizontalAdvance(ClosedText) + unit * 0.4;
        const QRectF side(box.left() + unit * 0.5, box.top(), sideWidth, box.height());
        const QRectF contact(side.left(), side.center().y() - unit * 0.95, side.width(), unit);
        DrawContact(painter, contact, isChecked(), isChecked() ? QColor(LampOn) : ink);
        painter.setPen(ink);
        painter.drawText(QRectF(side.left(), contact.bottom() - unit * 0.1, side.width(), unit * 1.2),
                         Qt::AlignCenter, isChecked() ? ClosedText : OpenText);

        const QRectF captionBox(side.right() + unit * 0.5, box.top() + unit * 0.25,
                                box.right() - side.right() - unit * 0.8, box.height() - unit * 0.5);
        painter.drawText(captionBox, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text());
    });
}

} // namespace quorvik
