#include "trend/TripTrend.h"

#include "link/DriveLink.h"
#include "model/ParameterNumbers.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"

#include <QDateTime>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int WholePercent = 100;

} // namespace

TripTrend::TripTrend(TrendRecorder &recorder, TrendStore &store, DriveLink &link)
    : recorder_(recorder)
    , store_(store)
    , link_(link)
{
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    On(&recorder, &TrendRecorder::Captured, this, [this](const TrendDataPtr &capture) { Keep(capture); });
}

std::vector<int> TripTrend::UsualChannels()
{
    return {Param::VelFeedback,   Param::VelocityDemand, Param::ArmatureAmps,
            Param::ArmatureVolts, Param::FieldAmps,      Param::DriveState};
}

void TripTrend::SetOn(bool on)
{
    isOn_ = on;
    FollowLink();
}

void TripTrend::SetChannels(const std::vector<int> &params)
{
    channels_.assign(params.begin(), params.begin() + std::ptrdiff_t(std::min(params.size(), MostChannels)));
    if (recorder_.IsRunning())
        ChooseChannels();
}

void TripTrend::ChooseChannels()
{
    std::vector<std::pair<int, TrendPace>> channels;
    for (const int p : channels_)
        channels.emplace_back(p, TrendPace::Fast);
    recorder_.SetChannels(channels);
}

void TripTrend::FollowLink()
{
    const bool isWanted = isOn_ && link_.PortOpen();
    if (isWanted == recorder_.IsRunning())
        return;
    if (!isWanted) {
        // What there is of a trip that was just seen is kept by this, too.
        recorder_.Stop();
        return;
    }
    ChooseChannels();
    const TrendTimings &timings = recorder_.Timings();
    recorder_.SetKeepMs(timings.tripMs + timings.afterTripMs);
    recorder_.Start();
    Await();
}

void TripTrend::Await()
{
    const TrendTimings &timings = recorder_.Timings();
    TriggerSetting setting;
    setting.kind = TriggerKind::Fault;
    setting.windowMs = timings.tripMs + timings.afterTripMs;
    // Rounded up: the time before the trip is what matters.
    setting.prePercent = (timings.tripMs * WholePercent + setting.windowMs - 1) / setting.windowMs;
    recorder_.Arm(setting);
}

void TripTrend::NoteTrip(int number, const QString &text)
{
    if (!recorder_.IsRunning())
        return;
    awaited_.push_back(number);
    recorder_.NoteFault(text);
}

void TripTrend::Keep(const TrendDataPtr &capture)
{
    const std::vector<int> numbers = std::exchange(awaited_, {});
    if (numbers.empty())
        return;
    auto data = std::make_shared<TrendData>(*capture);
    const qint64 utcMs = data->UtcMsAt(data->triggerUs.value_or(data->LastUs()));
    const QDateTime time =
        QDateTime::fromMSecsSinceEpoch(utcMs, Qt::OffsetFromUTC, data->head.offsetMinutes * SecondsPerMinute);
    data->head.title = QStringLiteral("Trip %1 of %2")
                           .arg(numbers.front())
                           .arg(time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    const QString path = store_.Save(data, RecordingKind::Trip);
    for (const int number : numbers)
        paths_.emplace_back(number, path);
    if (recorder_.IsRunning())
        Await();
    for (const int number : numbers)
        Q_EMIT Saved(number, path);
}

QString TripTrend::PathOf(int tripNumber) const
{
    const auto found = std::ranges::find(paths_, tripNumber, &std::pair<int, QString>::first);
    return found == paths_.end() ? QString() : found->second;
}

} // namespace quorvik
