#include "trend/TrendRecorder.h"

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "model/ShownText.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int TidyMs = 100;
constexpr int WholePercent = 100;

} // namespace

TrendRecorder::TrendRecorder(ParameterTable &table, const Document &document, DriveLink &link,
                             DriveEmulator &emulator, const TrendTimings &timings, FineClock clock)
    : table_(table)
    , document_(document)
    , link_(link)
    , timings_(timings)
    , clock_(std::move(clock))
    , sampled_(link)
    , polled_(table)
    , keepMs_(timings.keepMs)
{
    // These come by the hundred a second.
    connect(&link, &DriveLink::Confirmed, this, &TrendRecorder::OnConfirmed);
    On(&link, &DriveLink::PassBegins, this, [this] { passUs_ = clock_(); });
    On(&link, &DriveLink::Failed, this, [this](LinkFault fault) {
        if (fault == LinkFault::NoReply)
            restBytes_ = link_.MSComm1.RThreshold();
    });
    On(&link, &DriveLink::Received, this, [this](const QByteArray &bytes, bool isAwaited) {
        // What was given up may still come, or its rest. Of more than that nobody knows since when.
        restBytes_ = (isAwaited ? link_.MSComm1.RThreshold() : restBytes_) - int(bytes.size());
        if (restBytes_ < 0)
            TakeBack(passUs_);
    });
    On(&link, &DriveLink::WriteTaken, this, [this](int p) { OnWriteTaken(p); });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t, const bool *) { unsent_.erase(p); });
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    On(&emulator, &DriveEmulator::Emulated, this, [this] { OnEmulated(); });
    On(&table.Signals(), &TableSignals::Changed, this,
       [this](const ParamChange &change) { OnChanged(change); });
    tidy_.setInterval(TidyMs);
    On(&tidy_, &QTimer::timeout, this, [this] { Tidy(); });
}

TrendRecorder::~TrendRecorder() = default;

TrendTrack *TrendRecorder::TrackOf(int p)
{
    return const_cast<TrendTrack *>(std::as_const(data_).TrackOf(p));
}

QString TrendRecorder::AddChannel(int p, TrendPace pace)
{
    if (p < 0 || p > table_.LastParam)
        return QStringLiteral("There is no parameter %1.").arg(p);
    TrendTrack *const present = TrackOf(p);
    if (present != nullptr && present->channel.pace == pace)
        return {};
    const auto count = std::ranges::count_if(
        data_.tracks, [&](const TrendTrack &track) { return track.channel.pace == pace; });
    if (pace == TrendPace::Fast && count >= timings_.mostFast)
        return QStringLiteral("There are %1 fast channels already. Take one out, or record %2 at the pace of "
                              "the windows.")
            .arg(timings_.mostFast)
            .arg(table_.FullName(p));
    if (pace == TrendPace::Slow && count >= timings_.mostSlow)
        return QStringLiteral("There are %1 slow channels already. Take one out first.")
            .arg(timings_.mostSlow);
    if (present != nullptr)
        present->channel.pace = pace;
    else
        data_.tracks.push_back({{p, pace, table_[p].Attributes, table_[p].Name}, {}});
    FollowInterest();
    Q_EMIT ChannelsChanged();
    return {};
}

void TrendRecorder::RemoveChannel(int p)
{
    if (std::erase_if(data_.tracks, [&](const TrendTrack &track) { return track.channel.param == p; }) == 0)
        return;
    FollowInterest();
    Q_EMIT ChannelsChanged();
}

void TrendRecorder::SetChannels(const std::vector<std::pair<int, TrendPace>> &channels)
{
    const auto isWanted = [&](const TrendTrack &track) {
        return std::ranges::any_of(channels,
                                   [&](const auto &channel) { return channel.first == track.channel.param; });
    };
    std::erase_if(data_.tracks, [&](const TrendTrack &track) { return !isWanted(track); });
    for (const auto &[p, pace] : channels)
        AddChannel(p, pace);
    FollowInterest();
    Q_EMIT ChannelsChanged();
}

void TrendRecorder::Start()
{
    // What belongs to the one under way is handed over first.
    if (isRunning_)
        Stop();
    for (TrendTrack &track : data_.tracks) {
        track.samples.Clear();
        track.channel.attributes = table_[track.channel.param].Attributes;
    }
    data_.marks.clear();
    data_.triggerUs.reset();
    const QDateTime now = QDateTime::currentDateTime();
    data_.head = {.title = {},
                  .setName = document_.FileName,
                  .drive = {},
                  .notes = {},
                  .beganUs = clock_(),
                  .beganUtcMs = now.toMSecsSinceEpoch(),
                  .offsetMinutes = now.offsetFromUtc() / 60};
    identity_.clear();
    unsent_.clear();
    fired_.clear();
    taken_ = 0;
    nextTriggerUs_ = 0;
    trigger_.Reset();
    isRunning_ = true;
    wasOpen_ = link_.PortOpen();
    passUs_ = data_.head.beganUs;
    FollowInterest();
    tidy_.start();
    Q_EMIT StateChanged();
}

void TrendRecorder::Stop()
{
    if (!isRunning_)
        return;
    isRunning_ = false;
    tidy_.stop();
    FollowInterest();
    // What there is of a capture is worth more than nothing.
    while (!fired_.empty())
        Capture();
    Q_EMIT StateChanged();
}

void TrendRecorder::SetKeepMs(int milliseconds)
{
    keepMs_ = std::clamp(milliseconds, timings_.leastKeepMs, timings_.mostKeepMs);
}

void TrendRecorder::FollowInterest()
{
    std::set<int> fast;
    std::set<int> slow;
    if (isRunning_) {
        for (const TrendTrack &track : data_.tracks)
            (track.channel.pace == TrendPace::Fast ? fast : slow).insert(track.channel.param);
        if (link_.PortOpen() && !data_.head.drive)
            std::ranges::copy_if(DriveIdentity::Params(), std::inserter(slow, slow.end()),
                                 [this](int p) { return p <= table_.LastParam && !identity_.contains(p); });
    }
    sampled_.Set(fast);
    polled_.Set(slow);
}

void TrendRecorder::LearnDrive(int p, std::int32_t rawValue)
{
    if (data_.head.drive || std::ranges::find(DriveIdentity::Params(), p) == DriveIdentity::Params().end())
        return;
    identity_[p] = rawValue;
    // A drive with fewer parameters has none of this.
    const bool isKnown = std::ranges::all_of(
        DriveIdentity::Params(), [this](int q) { return q > table_.LastParam || identity_.contains(q); });
    if (isKnown)
        data_.head.drive = DriveIdentity::Of([this](int q) { return identity_[q]; }, table_.LastParam);
    FollowInterest();
}

void TrendRecorder::OnConfirmed(int p, std::int32_t rawValue)
{
    if (!isRunning_)
        return;
    LearnDrive(p, rawValue);
    TrendTrack *const track = TrackOf(p);
    if (track == nullptr)
        return;
    const qint64 askedUs = link_.AskedUs();
    const qint64 spanUs = link_.AnsweredUs() - askedUs;
    Take(*track, {.timeUs = askedUs + spanUs / 2, .rawValue = rawValue, .spanUs = std::uint32_t(spanUs)},
         track->channel.pace == TrendPace::Fast ? timings_.fastGapMs : timings_.slowGapMs);
}

void TrendRecorder::OnEmulated()
{
    if (!isRunning_)
        return;
    const qint64 now = clock_();
    for (TrendTrack &track : data_.tracks)
        Take(track, {.timeUs = now, .rawValue = table_.Value(track.channel.param)}, timings_.slowGapMs);
}

void TrendRecorder::Take(TrendTrack &track, TrendSample sample, int gapMs)
{
    SampleRing &samples = track.samples;
    if (!samples.IsEmpty()) {
        // A clock of another kind is no reason to stop.
        if (sample.timeUs < samples.Last().timeUs)
            return;
        if (sample.timeUs - samples.Last().timeUs > gapMs * UsPerMs)
            samples.Interrupt();
    }
    samples.Append(sample);
    if (track.channel.param == trigger_.Setting().param)
        if (const std::optional<qint64> met = trigger_.Take(samples.Last()))
            Fire(*met);
}

void TrendRecorder::TakeBack(qint64 sinceUs)
{
    if (!isRunning_)
        return;
    for (TrendTrack &track : data_.tracks)
        track.samples.DropSince(sinceUs);
    trigger_.Reset();
}

void TrendRecorder::FollowLink()
{
    unsent_.clear();
    const bool wasOpen = std::exchange(wasOpen_, link_.PortOpen());
    if (!isRunning_ || wasOpen == wasOpen_)
        return;
    for (TrendTrack &track : data_.tracks)
        track.samples.Interrupt();
    trigger_.Reset();
    if (wasOpen_)
        Mark(clock_(), TrendMarkKind::LinkBack, -1, QStringLiteral("On line"));
    else
        Mark(clock_(), TrendMarkKind::LinkLost, -1, QStringLiteral("Off line"));
    FollowInterest();
}

void TrendRecorder::OnChanged(const ParamChange &change)
{
    if (!isRunning_ || Param::ClearsItself(change.param))
        return;
    const bool isEntered = change.cause == ChangeCause::Entered || change.cause == ChangeCause::Undone;
    if (isEntered && link_.PortOpen())
        unsent_.try_emplace(change.param, change.before);
    else if (isEntered || change.cause == ChangeCause::Transfer)
        MarkEdit(clock_(), change.param, change.before, change.after);
}

void TrendRecorder::OnWriteTaken(int p)
{
    if (!isRunning_)
        return;
    const auto found = unsent_.find(p);
    if (found == unsent_.end())
        return;
    const std::int32_t rawBefore = found->second;
    unsent_.erase(found);
    MarkEdit(clock_(), p, rawBefore, table_.Value(p));
}

void TrendRecorder::MarkEdit(qint64 timeUs, int p, std::int32_t rawBefore, std::int32_t rawAfter)
{
    const std::int32_t attributes = table_[p].Attributes;
    Mark(timeUs, TrendMarkKind::Edit, p,
         QStringLiteral("%1: %2 to %3")
             .arg(table_.FullName(p), ShownText(rawBefore, attributes), ShownText(rawAfter, attributes)));
    if (trigger_.Setting().kind == TriggerKind::Edit)
        Fire(timeUs);
}

void TrendRecorder::NoteFault(const QString &text)
{
    if (!isRunning_)
        return;
    const qint64 now = clock_();
    Mark(now, TrendMarkKind::Fault, -1, text);
    if (trigger_.Setting().kind == TriggerKind::Fault)
        Fire(now);
}

void TrendRecorder::AddNote(const QString &text)
{
    Mark(clock_(), TrendMarkKind::Note, -1, text);
}

void TrendRecorder::Mark(qint64 timeUs, TrendMarkKind kind, int param, const QString &text)
{
    const TrendMark mark{timeUs, kind, param, text};
    const auto isLater = [](qint64 time, const TrendMark &other) { return time < other.timeUs; };
    data_.marks.insert(std::upper_bound(data_.marks.begin(), data_.marks.end(), timeUs, isLater), mark);
    if (data_.marks.size() > std::size_t(timings_.mostMarks))
        data_.marks.erase(data_.marks.begin());
    Q_EMIT Marked(mark);
}

void TrendRecorder::Arm(const TriggerSetting &setting)
{
    trigger_ = Trigger(setting);
    fired_.clear();
    captures_.clear();
    taken_ = 0;
    nextTriggerUs_ = 0;
    keepMs_ = std::max(keepMs_, std::min(setting.windowMs + timings_.leastKeepMs, timings_.mostKeepMs));
    Q_EMIT StateChanged();
}

void TrendRecorder::Pull()
{
    if (!isRunning_)
        return;
    if (!IsWaiting())
        taken_ = 0;
    Fire(clock_(), TriggerByHand());
}

bool TrendRecorder::IsWaiting() const
{
    const TriggerSetting &setting = trigger_.Setting();
    const bool isArmed = setting.kind != TriggerKind::None && taken_ < setting.captures;
    return isRunning_ && (isArmed || !fired_.empty());
}

qint64 TrendRecorder::PreUs() const
{
    const TriggerSetting &setting = trigger_.Setting();
    return setting.windowMs * UsPerMs * setting.prePercent / WholePercent;
}

void TrendRecorder::Fire(qint64 timeUs, const QString &why)
{
    const TriggerSetting &setting = trigger_.Setting();
    const int most = std::clamp(setting.captures, 1, timings_.mostCaptures);
    if (timeUs < nextTriggerUs_ || taken_ >= most)
        return;
    ++taken_;
    fired_.push_back(timeUs);
    const qint64 postUs = setting.windowMs * UsPerMs - PreUs();
    nextTriggerUs_ = timeUs + std::max(postUs, setting.holdOffMs * UsPerMs);
    Mark(timeUs, TrendMarkKind::Trigger, setting.param, why);
    AlignAt(timeUs);
    Q_EMIT Triggered(timeUs);
}

void TrendRecorder::AlignAt(qint64 timeUs)
{
    data_.triggerUs = timeUs;
    Q_EMIT Aligned();
}

void TrendRecorder::Capture()
{
    const qint64 timeUs = fired_.front();
    fired_.erase(fired_.begin());
    const qint64 fromUs = timeUs - PreUs();
    auto capture =
        std::make_shared<TrendData>(data_.Cut(fromUs, fromUs + trigger_.Setting().windowMs * UsPerMs));
    capture->triggerUs = timeUs;
    captures_.push_back(std::move(capture));
    Q_EMIT Captured(captures_.back());
    if (!IsWaiting())
        Q_EMIT StateChanged();
}

void TrendRecorder::Tidy()
{
    const qint64 now = clock_();
    // Answers that are on their way still belong to it.
    const qint64 postUs = trigger_.Setting().windowMs * UsPerMs - PreUs() + timings_.fastGapMs * UsPerMs;
    while (!fired_.empty() && now >= fired_.front() + postUs)
        Capture();
    for (TrendTrack &track : data_.tracks)
        track.samples.DropBefore(now - keepMs_ * UsPerMs);
}

std::optional<double> TrendRecorder::RateOf(int p) const
{
    const TrendTrack *const track = data_.TrackOf(p);
    if (!isRunning_ || track == nullptr)
        return std::nullopt;
    const qint64 now = clock_();
    const qint64 fromUs = std::max(now - timings_.rateMs * UsPerMs, data_.head.beganUs);
    const std::size_t count = track->samples.Size() - track->samples.IndexFrom(fromUs);
    if (count == 0 || now <= fromUs)
        return std::nullopt;
    return double(count) * UsPerSecond / double(now - fromUs);
}

} // namespace quorvik
