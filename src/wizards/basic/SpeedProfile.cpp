#include "wizards/basic/SpeedProfile.h"

#include "desktop/Form.h"
#include "wizards/basic/BasicPictures.h"

#include <QPainter>

namespace quorvik
{

namespace
{

constexpr qreal Forward = 90;
constexpr qreal Standstill = 180;
constexpr qreal Reverse = 270;

constexpr struct {
    qreal x1, y1, x2, y2;
} Lines[SpeedProfile::LineCount] = {
    {20, Standstill, 52, Forward},   {82, Forward, 108, Standstill}, {120, Standstill, 146, Reverse},
    {174, Reverse, 200, Standstill}, {52, Forward, 82, Forward},     {108, Standstill, 120, Standstill},
    {146, Reverse, 174, Reverse},
};

} // namespace

LineAccelDecel::LineAccelDecel(QWidget *parent, int index)
    : QWidget(parent)
    , falling_(SpeedProfile::LineOnCanvas(index).dy() > 0)
{
    setObjectName(ControlName("LineAccelDecel", index));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void LineAccelDecel::SetBorderWidth(int width)
{
    borderWidth_ = width;
    update();
}

void LineAccelDecel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Ink ink(palette());
    const qreal width = fontMetrics().height() / (borderWidth_ == Thick ? 4.0 : 9.0);
    painter.setPen(QPen(borderWidth_ == Thick ? ink.accent : ink.line, width, Qt::SolidLine, Qt::RoundCap));
    const qreal pad = fontMetrics().height() / 8.0;
    const QRectF box = QRectF(rect()).adjusted(0, pad, 0, -pad);
    painter.drawLine(falling_ ? QLineF(box.topLeft(), box.bottomRight())
                              : QLineF(box.bottomLeft(), box.topRight()));
}

SpeedProfile::SpeedProfile(QWidget *parent)
    : WizardPicture(parent, QStringLiteral("Speed over time with its accel and decel ramps"),
                    [this] { return SpeedProfilePicture(showsReverse_); })
{
    for (int i = 0; i < LineCount; ++i)
        lines_[std::size_t(i)] = new LineAccelDecel(this, i);
}

QLineF SpeedProfile::LineOnCanvas(int index)
{
    const auto &line = Lines[index];
    return {line.x1, line.y1, line.x2, line.y2};
}

void SpeedProfile::HighlightRamp(int index)
{
    for (LineAccelDecel *line : lines_)
        line->SetBorderWidth(LineAccelDecel::Thin);
    lines_[std::size_t(index)]->SetBorderWidth(LineAccelDecel::Thick);
}

void SpeedProfile::ShowReverse(bool show)
{
    showsReverse_ = show;
    for (const std::size_t index : {2U, 3U, 6U})
        lines_[index]->setVisible(show);
    update();
}

void SpeedProfile::resizeEvent(QResizeEvent *)
{
    const qreal pad = fontMetrics().height() / 8.0;
    for (int i = 0; i < LineCount; ++i) {
        const QLineF line = LineOnCanvas(i);
        const QRectF box = QRectF(line.p1(), line.p2()).normalized();
        const QRectF placed(Origin() + box.topLeft() * Unit(), box.size() * Unit());
        lines_[std::size_t(i)]->setGeometry(placed.adjusted(0, -pad, 0, pad).toRect());
    }
}

} // namespace quorvik
