#include "trend/forms/PlotCursors.h"

#include "desktop/BoxColors.h"
#include "model/ShownText.h"
#include "platform/Numbers.h"
#include "platform/TimeUnits.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotBoard.h"

#include <QPainter>
#include <QStringList>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int TimeDecimals = 4;
constexpr double DotRadius = 3;

QString SecondsText(double us)
{
    return FormatFixed(us / UsPerSecond, TimeDecimals) + QStringLiteral(" s");
}

qint64 OriginUs(const TrendData &data)
{
    return data.triggerUs.value_or(data.head.beganUs);
}

} // namespace

QString CursorLetter(int which)
{
    return which == 0 ? QStringLiteral("A") : QStringLiteral("B");
}

void PaintCursors(QPainter &painter, const PlotBoard &board, const TrendView &view, int active)
{
    const QRect frames = board.Frames();
    const PlotLook &look = board.Look();
    painter.setFont(look.font);
    const QFontMetricsF metrics(look.font);
    for (const int which : {0, 1}) {
        const std::optional<qint64> timeUs = view.Cursor(which);
        if (!timeUs)
            continue;
        const double x = board.XOf(*timeUs);
        if (x < frames.left() || x > frames.right() + 1)
            continue;
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(look.text, which == active ? 2 : 1, which == 0 ? Qt::SolidLine : Qt::DashLine));
        painter.drawLine(QLineF(x, frames.top(), x, frames.bottom()));
        const double width = metrics.horizontalAdvance(u'W') + 4;
        const QRectF tag(x - width / 2, frames.top() - metrics.height() - 1, width, metrics.height());
        painter.fillRect(tag, look.text);
        painter.setPen(ContrastingText(look.text));
        painter.drawText(tag, Qt::AlignCenter, CursorLetter(which));
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(look.ground, 1));
        for (const PlotArea &area : board.Areas())
            for (const auto &curve : area.curves)
                if (const std::optional<double> y = curve->HeightAt(*timeUs);
                    y && *y >= curve->Rect().top() && *y <= curve->Rect().bottom()) {
                    painter.setBrush(curve->Pen().color());
                    painter.drawEllipse(QPointF(x, *y), DotRadius, DotRadius);
                }
    }
    painter.setBrush(Qt::NoBrush);
}

std::optional<qint64> NextSampleUs(const TrendView &view, qint64 timeUs, bool isForward)
{
    std::optional<qint64> nearest;
    for (const TrendCurve &curve : view.Curves()) {
        const TrendTrack *const track = view.Shown().TrackOf(curve.param);
        if (!curve.isVisible || track == nullptr)
            continue;
        const SampleRing &samples = track->samples;
        const std::size_t place = samples.IndexFrom(isForward ? timeUs + 1 : timeUs);
        if (isForward && place < samples.Size())
            nearest = std::min(nearest.value_or(samples[place].timeUs), samples[place].timeUs);
        else if (!isForward && place > 0)
            nearest = std::max(nearest.value_or(samples[place - 1].timeUs), samples[place - 1].timeUs);
    }
    return nearest;
}

QString ValueAtCursor(const TrendView &view, int param, int which)
{
    const std::optional<qint64> timeUs = view.Cursor(which);
    const TrendTrack *const track = view.Shown().TrackOf(param);
    if (!timeUs || track == nullptr)
        return {};
    const TrendSample *const sample = track->samples.At(*timeUs);
    return sample == nullptr ? QString() : ShownText(sample->rawValue, track->channel.attributes);
}

QString CursorTime(const TrendView &view, int which)
{
    const std::optional<qint64> timeUs = view.Cursor(which);
    return timeUs ? SecondsText(double(*timeUs - OriginUs(view.Shown()))) : QString();
}

QString CursorDistance(const TrendView &view)
{
    if (!view.Cursor(0) || !view.Cursor(1))
        return {};
    return SecondsText(double(*view.Cursor(1) - *view.Cursor(0)));
}

QString SpokenPlots(const TrendView &view)
{
    const TrendData &data = view.Shown();
    QStringList sentences;
    sentences.append(view.PlotCount() == 1 ? QStringLiteral("One plot")
                                           : QStringLiteral("%1 plots").arg(view.PlotCount()));
    for (const TrendCurve &curve : view.Curves()) {
        const TrendTrack *const track = data.TrackOf(curve.param);
        if (!curve.isVisible || track == nullptr)
            continue;
        QString sentence = QStringLiteral("(%1) %2").arg(curve.param).arg(track->channel.name);
        for (const int which : {0, 1})
            if (const QString value = ValueAtCursor(view, curve.param, which); !value.isEmpty())
                sentence += QStringLiteral(", at %1 %2").arg(CursorLetter(which), value);
        sentences.append(sentence);
    }
    const qint64 origin = OriginUs(data);
    sentences.append(
        view.Follows() && view.IsLive()
            ? QStringLiteral("The last %1, going on").arg(SecondsText(double(view.ToUs() - view.FromUs())))
            : QStringLiteral("From %1 to %2")
                  .arg(SecondsText(double(view.FromUs() - origin)),
                       SecondsText(double(view.ToUs() - origin))));
    for (const int which : {0, 1})
        if (const QString time = CursorTime(view, which); !time.isEmpty())
            sentences.append(QStringLiteral("Cursor %1 at %2").arg(CursorLetter(which), time));
    if (const QString distance = CursorDistance(view); !distance.isEmpty())
        sentences.append(QStringLiteral("From A to B %1").arg(distance));
    return sentences.join(QStringLiteral(". ")) + u'.';
}

} // namespace quorvik
