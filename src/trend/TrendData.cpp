#include "trend/TrendData.h"

#include "platform/RuntimeFailure.h"
#include "platform/TimeUnits.h"

#include <algorithm>

namespace quorvik
{

namespace
{

bool IsBefore(const TrendSample &sample, qint64 timeUs)
{
    return sample.timeUs < timeUs;
}

} // namespace

void SampleRing::Append(const TrendSample &sample)
{
    if (!samples_.empty() && sample.timeUs < samples_.back().timeUs)
        throw RuntimeFailure(QStringLiteral("a sample is older than the one before it"));
    samples_.push_back(sample);
    if (std::exchange(isInterrupted_, false))
        samples_.back().isAfterGap = 1;
    ++appended_;
}

void SampleRing::DropBefore(qint64 timeUs)
{
    bool isAny = false;
    while (!samples_.empty() && samples_.front().timeUs < timeUs) {
        samples_.pop_front();
        isAny = true;
    }
    if (isAny && !samples_.empty())
        samples_.front().isAfterGap = 1;
}

void SampleRing::DropSince(qint64 timeUs)
{
    while (!samples_.empty() && samples_.back().timeUs >= timeUs) {
        samples_.pop_back();
        ++takenBack_;
    }
    isInterrupted_ = true;
}

std::size_t SampleRing::IndexFrom(qint64 timeUs) const
{
    return std::size_t(std::lower_bound(samples_.begin(), samples_.end(), timeUs, IsBefore) -
                       samples_.begin());
}

const TrendSample *SampleRing::At(qint64 timeUs) const
{
    const std::size_t next = IndexFrom(timeUs);
    if (next < samples_.size() && samples_[next].timeUs == timeUs)
        return &samples_[next];
    const bool isKnown = next > 0 && next < samples_.size() && samples_[next].isAfterGap == 0;
    return isKnown ? &samples_[next - 1] : nullptr;
}

QString TriggerByHand()
{
    return QStringLiteral("Trigger by hand");
}

const TrendTrack *TrendData::TrackOf(int param) const
{
    const auto found =
        std::ranges::find_if(tracks, [&](const TrendTrack &track) { return track.channel.param == param; });
    return found == tracks.end() ? nullptr : &*found;
}

qint64 TrendData::FirstUs() const
{
    std::optional<qint64> first;
    for (const TrendTrack &track : tracks)
        if (!track.samples.IsEmpty())
            first = std::min(first.value_or(track.samples.First().timeUs), track.samples.First().timeUs);
    return first.value_or(head.beganUs);
}

qint64 TrendData::LastUs() const
{
    std::optional<qint64> last;
    for (const TrendTrack &track : tracks)
        if (!track.samples.IsEmpty())
            last = std::max(last.value_or(track.samples.Last().timeUs), track.samples.Last().timeUs);
    return last.value_or(head.beganUs);
}

TrendData TrendData::Cut(qint64 fromUs, qint64 toUs) const
{
    TrendData cut;
    cut.head = head;
    if (triggerUs && *triggerUs >= fromUs && *triggerUs <= toUs)
        cut.triggerUs = triggerUs;
    for (const TrendTrack &track : tracks) {
        TrendTrack &part = cut.tracks.emplace_back(TrendTrack{track.channel, {}});
        const std::size_t end = track.samples.IndexFrom(toUs + 1);
        for (std::size_t i = track.samples.IndexFrom(fromUs); i < end; ++i)
            part.samples.Append(track.samples[i]);
    }
    std::ranges::copy_if(marks, std::back_inserter(cut.marks),
                         [&](const TrendMark &mark) { return mark.timeUs >= fromUs && mark.timeUs <= toUs; });
    return cut;
}

qint64 TrendData::UtcMsAt(qint64 timeUs) const
{
    return head.beganUtcMs + (timeUs - head.beganUs) / UsPerMs;
}

} // namespace quorvik
