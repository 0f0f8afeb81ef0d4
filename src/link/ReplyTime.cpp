#include "link/ReplyTime.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvik
{

namespace
{

/** RFC 6298, 2.2 and 2.3. */
constexpr double OfVariation = 1.0 / 4;
constexpr double OfTime = 1.0 / 8;
constexpr double Variations = 4;
/** A line that is dead is to be known as such after a few misses, so the time grows less than TCP's. */
constexpr double LongerEach = 0.5;
constexpr double LongestFactor = 2;

} // namespace

void ReplyTime::Begin(int onWireMs, int roundTripMs)
{
    isOverNetwork_ = roundTripMs > 0;
    isDoubtful_ = false;
    onWireMs_ = onWireMs;
    backedOff_ = 1;
    smoothed_ = roundTripMs;
    variation_ = roundTripMs / 2.0;
}

void ReplyTime::Answered(double milliseconds)
{
    if (!isOverNetwork_)
        return;
    if (std::exchange(isDoubtful_, false))
        return;
    backedOff_ = 1;
    variation_ += OfVariation * (std::abs(smoothed_ - milliseconds) - variation_);
    smoothed_ += OfTime * (milliseconds - smoothed_);
}

void ReplyTime::Missed()
{
    isDoubtful_ = true;
    backedOff_ = std::min(backedOff_ + LongerEach, LongestFactor);
}

int ReplyTime::TimeoutMs() const
{
    if (!isOverNetwork_)
        return onWireMs_;
    const double usual = onWireMs_ + smoothed_ + Variations * variation_;
    return int(std::clamp(usual * backedOff_, double(onWireMs_), std::max<double>(LongestMs, onWireMs_)));
}

LinkTimings WithReplyTime(LinkTimings onWire, const ReplyTime &replyTime)
{
    if (!replyTime.IsOverNetwork())
        return onWire;
    LinkTimings timings = onWire;
    timings.replyTimeout = replyTime.TimeoutMs();
    timings.latePause = timings.replyTimeout;
    timings.sizeErrorPause = std::max(onWire.sizeErrorPause, 2 * timings.replyTimeout);
    timings.quiet = onWire.quiet + int(std::ceil(replyTime.SmoothedMs()));
    timings.lastCommand = onWire.lastCommand + timings.replyTimeout;
    return timings;
}

} // namespace quorvik
