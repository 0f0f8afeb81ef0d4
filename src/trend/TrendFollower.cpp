#include "trend/TrendFollower.h"

#include "platform/Guard.h"
#include "trend/TrendRecorder.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

TrendFollower::TrendFollower(TrendRecorder &recorder, const TrendTimings &timings,
                             std::function<QString()> newPath)
    : recorder_(&recorder)
    , timings_(timings)
    , newPath_(std::move(newPath))
{
    timer_.setInterval(timings.storeMs);
    On(&timer_, &QTimer::timeout, this, [this] { Gather(!recorder_ || !recorder_->IsRunning()); });
    On(&recorder, &TrendRecorder::StateChanged, this, [this] { FollowState(); });
    // A channel that goes and comes again counts its samples anew.
    On(&recorder, &TrendRecorder::ChannelsChanged, this, [this] {
        const TrendData &data = recorder_->Data();
        std::erase_if(known_, [&](const auto &item) { return data.TrackOf(item.first) == nullptr; });
        std::erase_if(handed_, [&](const auto &item) { return data.TrackOf(item.first) == nullptr; });
    });
    On(&recorder, &TrendRecorder::Marked, this, [this](const TrendMark &mark) {
        if (!isEnded_)
            marks_.push_back(mark);
    });
}

void TrendFollower::FollowState()
{
    const TrendHead &head = recorder_->Data().head;
    const bool isNew = beganUs_ != head.beganUs || beganUtcMs_ != head.beganUtcMs;
    if (recorder_->IsRunning() && isNew)
        Begin();
    else if (!recorder_->IsRunning())
        Gather(true);
}

void TrendFollower::Begin()
{
    // The recorder has let go of the last one; what is in its file is all that there is.
    if (!isEnded_ && !path_.isEmpty()) {
        TrendBatch end;
        end.path = path_;
        end.isLast = end.isEndOnly = true;
        Q_EMIT Gathered(end);
    }
    beganUs_ = recorder_->Data().head.beganUs;
    beganUtcMs_ = recorder_->Data().head.beganUtcMs;
    path_.clear();
    known_.clear();
    marks_.clear();
    marksHanded_ = 0;
    underWay_ = 0;
    hasFailed_ = false;
    isWhole_ = true;
    isEnded_ = endHanded_ = false;
    sinceFailed_.invalidate();
    timer_.start();
}

TrendPart TrendFollower::PartOf(const TrendTrack &track) const
{
    const SampleRing &samples = track.samples;
    const qint64 end = samples.Appended() - samples.TakenBack();
    TrendPart part{.channel = track.channel, .first = end - qint64(samples.Size()), .from = 0, .samples = {}};
    const auto found = known_.find(track.channel.param);
    if (!isWhole_ && found != known_.end() && found->second.appended <= samples.Appended()) {
        // So many that were in the file, at most, were taken back and replaced since.
        const qint64 replaced = samples.TakenBack() - found->second.takenBack;
        const qint64 written = found->second.appended - found->second.takenBack;
        part.from = std::clamp(written - replaced, qint64(0), end);
    }
    const auto begin = std::size_t(std::max(part.from - part.first, qint64(0)));
    for (std::size_t i = begin; i < samples.Size(); ++i)
        part.samples.push_back(samples[i]);
    return part;
}

void TrendFollower::Gather(bool isLast)
{
    const bool isHeld = sinceFailed_.isValid() && !sinceFailed_.hasExpired(timings_.storeRetryMs);
    if (isEnded_ || endHanded_ || !recorder_ || isHeld || (underWay_ > 0 && !isLast))
        return;
    const TrendData &data = recorder_->Data();
    if (data.head.beganUs != beganUs_ || data.head.beganUtcMs != beganUtcMs_)
        return;
    const auto isEmpty = [](const TrendTrack &track) { return track.samples.IsEmpty(); };
    if (path_.isEmpty() && std::ranges::all_of(data.tracks, isEmpty)) {
        // A recording of nothing leaves no file.
        if (isLast)
            End();
        return;
    }
    if (path_.isEmpty())
        path_ = newPath_();
    // The writer takes one after the other: what is under way is there when this comes.
    if (underWay_ > 0) {
        known_ = handed_;
        isWhole_ = false;
    }
    TrendBatch batch;
    batch.path = path_;
    batch.head = data.head;
    batch.triggerUs = data.triggerUs;
    handed_.clear();
    for (const TrendTrack &track : data.tracks) {
        batch.parts.push_back(PartOf(track));
        handed_[track.channel.param] = {track.samples.Appended(), track.samples.TakenBack()};
    }
    if (isWhole_) {
        marks_ = data.marks;
        marksHanded_ = 0;
    }
    batch.marks.assign(marks_.begin() + std::ptrdiff_t(marksHanded_), marks_.end());
    batch.isWhole = isWhole_;
    batch.isLast = isLast;
    marksHanded_ = marks_.size();
    endHanded_ = isLast;
    ++underWay_;
    Q_EMIT Gathered(batch);
}

void TrendFollower::Take(const QString &path, bool isWritten)
{
    if (path != path_ || underWay_ == 0)
        return;
    hasFailed_ = hasFailed_ || !isWritten;
    if (--underWay_ > 0)
        return;
    if (std::exchange(hasFailed_, false)) {
        // A file that was taken away is made anew at once; where that fails, too, there is time.
        if (isWhole_)
            sinceFailed_.start();
        isWhole_ = true;
        endHanded_ = false;
        return;
    }
    sinceFailed_.invalidate();
    isWhole_ = false;
    known_ = handed_;
    marks_.erase(marks_.begin(), marks_.begin() + std::ptrdiff_t(marksHanded_));
    marksHanded_ = 0;
    if (endHanded_)
        End();
}

void TrendFollower::End()
{
    isEnded_ = true;
    timer_.stop();
}

} // namespace quorvik
