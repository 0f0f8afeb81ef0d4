// Parameters that are read as fast as the line allows, between everything else. They fill the pauses, which
// become as long as they would have been, and take a round of their own now and then within a scan.

#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"
#include "platform/Clock.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

void DriveLink::AddSampling(int p)
{
    ++sampled_[p];
    MSComm1.SetLowLatency(true);
}

void DriveLink::RemoveSampling(int p)
{
    const auto found = sampled_.find(p);
    if (found != sampled_.end() && --found->second == 0)
        sampled_.erase(found);
    MSComm1.SetLowLatency(!sampled_.empty());
}

std::optional<int> DriveLink::NextSample() const
{
    auto next = sampled_.upper_bound(sampledLast_);
    if (next == sampled_.end() || next->first > table_.LastParam)
        next = sampled_.begin();
    if (next == sampled_.end() || next->first > table_.LastParam)
        return std::nullopt;
    return next->first;
}

void DriveLink::Pause()
{
    const qint64 earlier = std::exchange(earlierTickUs_, 0);
    if (!NextSample()) {
        ArmSerialCommTimer();
        return;
    }
    tickDueUs_ = earlier > 0 ? earlier : MicrosecondsUp() + timings_.scanPause * UsPerMs;
    BeginRound(AfterSamples::Pause);
}

bool DriveLink::IsRoundDue() const
{
    // After a time-out a row is read alone, to see what the line still brings.
    return NextSample() && !wholeRead_.IsSettling() && MicrosecondsUp() >= roundDueUs_;
}

void DriveLink::BeginRound(AfterSamples after)
{
    afterSamples_ = after;
    samplesLeft_ = int(sampled_.size());
    AskForSample(NextSample().value_or(sampledLast_), false);
}

void DriveLink::AskForSample(int p, bool isNeighbour)
{
    QUORVIK_LINK_TRACE() << " Sample Param[" << p << "]";
    isSampleSent_ = true;
    sampledLast_ = p;
    AskFor(p,
           isNeighbour ? QByteArray(1, Wire::Ack) : BuildPacket(Wire::Command::Read, ToInt16(p), 0, false));
}

bool DriveLink::IsSamplingInPause() const
{
    return isSampleSent_ && afterSamples_ == AfterSamples::Pause && SerialCommTimeout.isActive();
}

bool DriveLink::MustServe() const
{
    return OffLineRequested || DriveCommand != Restart::None || ReadPropsIndex >= 1 ||
           (table_.WritePending && !isRetryPending_);
}

void DriveLink::GoOnSampling()
{
    isSampleSent_ = false;
    const qint64 now = MicrosecondsUp();
    roundDueUs_ = now + timings_.sampleEvery * UsPerMs;
    --samplesLeft_;
    const bool isPause = afterSamples_ == AfterSamples::Pause;
    const bool isOver = isPause ? MustServe() || now >= tickDueUs_ : samplesLeft_ <= 0;
    const std::optional<int> next = NextSample();
    if (next && !isOver && (isPause || !WriteBeforeRead())) {
        const bool isNeighbour = *next == paramAsked_ + 1;
        // With the request behind it in one piece: a turn of the line less.
        endsRun_ = !isNeighbour;
        AskForSample(*next, isNeighbour);
        return;
    }
    Send(QByteArray(1, Wire::Eot));
    LeaveSampling(now);
}

void DriveLink::LeaveSampling(qint64 now)
{
    switch (afterSamples_) {
    case AfterSamples::Reading:
        ReadNext();
        return;
    case AfterSamples::Writing:
        WriteNext();
        return;
    case AfterSamples::Storing:
        StoreNext();
        return;
    case AfterSamples::Pause:
        break;
    }
    const qint64 restUs = tickDueUs_ - now;
    if (MustServe()) {
        // What it put off is not to wait for longer: a slider on its way would keep all boxes from being
        // read.
        earlierTickUs_ = restUs > 0 ? tickDueUs_ : 0;
        ServeTick();
    } else if (restUs > 0) {
        // Long enough for what was answered too much to show.
        ArmSerialCommTimer(std::max(int(restUs / UsPerMs), timings_.quiet));
    } else if (now - inStepUs_ >= timings_.sampleQuiet * UsPerMs) {
        BeginQuiet();
    } else {
        ServeTick();
    }
}

std::optional<int> DriveLink::WriteBeforeRead() const
{
    const std::optional<int> first = FirstWrite();
    if (first || !table_.WritePending || isRetryPending_ || wholeRead_.IsUnderWay() || !NextSample())
        return first;
    // Who records the answer to an entry does not wait for the end of a scan.
    for (int p = 0; p <= table_.LastParam; ++p)
        if (table_[p].WriteFlag == WriteState::Queued)
            return p;
    return std::nullopt;
}

void DriveLink::BeginQuiet()
{
    // One reply too many would give each channel the value of its neighbour, for ever: now and then the line
    // is left alone for so long that it would show.
    const int step = std::min(timings_.quietStep, timings_.quiet);
    ArmSerialCommTimer(step);
    quietLeft_ = timings_.quiet - step;
}

void DriveLink::ReadBrokeOff()
{
    if (MSComm1.RThreshold() != Wire::ReadReplyLength)
        return;
    if (isSampleSent_)
        wholeRead_.BrokeOff();
    else
        wholeRead_.BrokeOff(CurrentParam);
}

} // namespace quorvik
