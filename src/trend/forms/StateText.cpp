#include "trend/forms/StateText.h"

#include "platform/TimeUnits.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendView.h"
#include "trend/forms/TriggerText.h"

#include <QDateTime>
#include <QTimeZone>

namespace quorvik
{

namespace
{

QString Channels(std::size_t count)
{
    return count == 1 ? QStringLiteral("1 channel") : QStringLiteral("%1 channels").arg(count);
}

/** "87 samples a second each": of the channels of one pace what comes on average. */
QString RateText(const TrendRecorder &recorder)
{
    double sum = 0;
    int count = 0;
    bool isAnyFast = false;
    for (const TrendTrack &track : recorder.Data().tracks) {
        if (track.channel.pace != TrendPace::Fast)
            continue;
        isAnyFast = true;
        if (const auto rate = recorder.RateOf(track.channel.param)) {
            sum += *rate;
            ++count;
        }
    }
    if (count == 0)
        return isAnyFast ? QStringLiteral("no samples just now")
                         : QStringLiteral("at the pace of the windows");
    const QString each = recorder.Data().tracks.size() == 1 ? QString()
                         : std::size_t(count) == recorder.Data().tracks.size()
                             ? QStringLiteral(" each")
                             : QStringLiteral(" of each fast one");
    return QStringLiteral("%1 samples a second%2")
        .arg(QString::number(sum / count, 'f', sum / count < 10 ? 1 : 0), each);
}

QString RunningText(const TrendRecorder &recorder, bool isOnLine)
{
    const std::size_t count = recorder.Data().tracks.size();
    if (isOnLine)
        return QStringLiteral("Recording %1, %2").arg(Channels(count), RateText(recorder));
    return QStringLiteral("Recording %1 off line: the emulator's values, %2")
        .arg(Channels(count), RateText(recorder));
}

} // namespace

QString RecordingText(const TrendData &data)
{
    const QDateTime began = QDateTime::fromMSecsSinceEpoch(
        data.head.beganUtcMs, QTimeZone(data.head.offsetMinutes * SecondsPerMinute));
    QString text = QStringLiteral("Recording of %1, %2")
                       .arg(began.toString(QStringLiteral("yyyy-MM-dd hh:mm")),
                            data.head.drive ? data.head.drive->Text() : QStringLiteral("off line"));
    if (!data.head.title.isEmpty())
        text += QStringLiteral(": ") + data.head.title;
    return text;
}

QString StateText(const TrendRecorder &recorder, const TrendView &view, bool isOnLine)
{
    if (view.IsOther())
        return RecordingText(view.Shown()) +
               (recorder.IsRunning() ? QStringLiteral(". The live one goes on.") : QString());
    const TrendData &data = recorder.Data();
    if (data.tracks.empty())
        return QStringLiteral("No channels yet: add one by name or number, choose a template, or drag a "
                              "value box here.");
    if (!recorder.IsRunning())
        return data.FirstUs() == data.LastUs()
                   ? QStringLiteral("Ready to record %1").arg(Channels(data.tracks.size()))
                   : QStringLiteral("Stopped: %1").arg(Channels(data.tracks.size()));
    QString text = RunningText(recorder, isOnLine);
    const TriggerSetting &trigger = recorder.Setting();
    if (recorder.IsWaiting() && trigger.kind != TriggerKind::None) {
        const TrendTrack *track = data.TrackOf(trigger.param);
        text += QStringLiteral(". Waiting for a trigger: %1")
                    .arg(TriggerText(trigger, track == nullptr ? nullptr : &track->channel));
    }
    if (view.IsFrozen())
        text += QStringLiteral(". The picture is paused, the recording goes on.");
    return text;
}

} // namespace quorvik
