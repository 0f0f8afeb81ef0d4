#include "link/LinkStatistics.h"

#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

LinkStatistics::LinkStatistics(DriveLink &link, FineClock clock, WallClock wallClock)
    : link_(link)
    , clock_(std::move(clock))
    , wallClock_(std::move(wallClock))
    , answerTimes_(Buckets)
{
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    On(&link, &DriveLink::Broken, this, [this] { isBroken_ = true; });
    On(&link, &DriveLink::Failed, this, [this](LinkFault fault) { OnFailed(fault); });
    // These come by the hundred a second.
    connect(&link, &DriveLink::Sent, this, &LinkStatistics::OnSent);
    connect(&link, &DriveLink::Received, this, &LinkStatistics::OnReceived);
}

void LinkStatistics::FollowLink()
{
    if (link_.PortOpen()) {
        Begin();
    } else if (state_ == State::OnLine) {
        state_ = isBroken_ ? State::Lost : State::Ended;
        until_ = Now();
        endedAt_ = clock_();
    }
}

void LinkStatistics::Begin()
{
    state_ = State::OnLine;
    device_ = link_.MSComm1.DeviceOf(link_.MSComm1.CommPort());
    since_ = Now();
    beganAt_ = sentAt_ = clock_();
    isBroken_ = false;
    request_ = {};
    counts_ = {};
    std::ranges::fill(answerTimes_, 0);
    slots_ = {};
    failed_.clear();
    silences_.clear();
}

std::optional<LinkStatistics::Network> LinkStatistics::OverNetwork() const
{
    const ReplyTime &reply = link_.TheReplyTime();
    if (state_ == State::Never || !reply.IsOverNetwork())
        return std::nullopt;
    return Network{device_, reply.SmoothedMs(), reply.TimeoutMs()};
}

int LinkStatistics::Key() const
{
    using enum WireRequest::Kind;
    // A value is the same whether it is asked for by its number or as the next one.
    return request_.param * 8 + int(request_.kind == Next ? Read : request_.kind);
}

void LinkStatistics::OnSent(const QByteArray &bytes)
{
    request_ = DecodeRequest(bytes, request_);
    if (request_.ReplyLength() == 0)
        return;
    sentAt_ = clock_();
    ++counts_.requests;
    if (request_.kind == WireRequest::Kind::Write)
        ++counts_.writes;
    if (!failed_.empty() && failed_.erase(Key()) > 0)
        ++counts_.repeats;
}

void LinkStatistics::OnReceived(const QByteArray &bytes, bool isAwaited)
{
    if (!isAwaited)
        ++counts_.unawaited;
    else if (request_.IsAnsweredBy(bytes))
        CountAnswer(bytes);
}

void LinkStatistics::CountAnswer(const QByteArray &bytes)
{
    const qint64 now = clock_();
    ++counts_.answers;
    const qint64 tenths = (now - sentAt_ + BucketUs / 2) / BucketUs;
    ++answerTimes_[std::min(std::size_t(tenths), Buckets - 1)];
    const qint64 number = (now - beganAt_) / SlotUs;
    Slot &slot = slots_[std::size_t(number) % slots_.size()];
    if (slot.number != number)
        slot = {number};
    ++slot.answers;
    if (request_.kind == WireRequest::Kind::Write && bytes.at(0) != Wire::Ack) {
        ++counts_.refusals;
        failed_.insert(Key());
    }
}

void LinkStatistics::OnFailed(LinkFault fault)
{
    failed_.insert(Key());
    switch (fault) {
    case LinkFault::DamagedReply:
        ++counts_.wrongChecks;
        break;
    case LinkFault::WrongLength:
        ++counts_.wrongLengths;
        break;
    case LinkFault::NoReply:
        ++counts_.silences;
        silences_.push_back({Now(), request_});
        if (silences_.size() > MostSilences)
            silences_.pop_front();
        break;
    }
}

std::optional<double> LinkStatistics::AnswerTime(double percentage) const
{
    if (counts_.answers == 0)
        return std::nullopt;
    const auto wanted = qint64(std::ceil(double(counts_.answers) * percentage / 100));
    qint64 seen = 0;
    std::size_t bucket = 0;
    while (bucket + 1 < Buckets && (seen += answerTimes_[bucket]) < wanted)
        ++bucket;
    return double(bucket) * double(BucketUs) / 1000;
}

qint64 LinkStatistics::Microseconds() const
{
    return (state_ == State::OnLine ? clock_() : endedAt_) - beganAt_;
}

std::optional<double> LinkStatistics::AnswerRate() const
{
    if (Microseconds() < SlotUs)
        return std::nullopt;
    return double(counts_.answers) * UsPerSecond / double(Microseconds());
}

std::optional<double> LinkStatistics::RecentAnswerRate() const
{
    // The slot that is being filled does not count yet.
    const qint64 current = Microseconds() / SlotUs;
    if (state_ != State::OnLine || current == 0)
        return std::nullopt;
    const qint64 first = std::max<qint64>(current - RecentSlots, 0);
    int answers = 0;
    for (const Slot &slot : slots_)
        if (slot.number >= first && slot.number < current)
            answers += slot.answers;
    return double(answers) * UsPerSecond / double((current - first) * SlotUs);
}

} // namespace quorvik
