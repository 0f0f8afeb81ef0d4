#pragma once

#include "link/LinkTimings.h"

namespace quorvik
{

/**
 * How long a reply is waited for. On a wire that is told; over a network it is the same and what the network
 * takes on top, followed from the replies that have come as TCP does it (RFC 6298): their smoothed time, and
 * four times how far they stray from it.
 */
class ReplyTime
{
public:
    /** The longest, in milliseconds. */
    static constexpr int LongestMs = 2000;

    /** @param onWireMs the time-out on a wire. @param roundTripMs of the network, 1 or more; 0 for a wire. */
    void Begin(int onWireMs, int roundTripMs);
    bool IsOverNetwork() const { return isOverNetwork_; }
    /** A reply has come after so many milliseconds. The first one after a miss tells nothing: it may be the
     * one that was missed. */
    void Answered(double milliseconds);
    /** None has come: the next ones get more time, up to twice as much. */
    void Missed();

    /** Between the time-out on a wire and LongestMs. */
    int TimeoutMs() const;
    /** How long question and answer take, in milliseconds. */
    double SmoothedMs() const { return smoothed_; }

private:
    bool isOverNetwork_ = false;
    bool isDoubtful_ = false;
    int onWireMs_ = 0;
    double backedOff_ = 1; ///< factor, until a reply can be told again
    double smoothed_ = 0;
    double variation_ = 0;
};

/** The intervals of a line whose replies take so long: those that rest on everything late having come by then
 * grow with it, all others stay. A wire's stay as they are. */
LinkTimings WithReplyTime(LinkTimings onWire, const ReplyTime &replyTime);

} // namespace quorvik
