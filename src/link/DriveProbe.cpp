#include "link/DriveProbe.h"

#include "link/PacketLayer.h"
#include "link/ReplyTime.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"
#include "platform/PortAddress.h"

#include <utility>

namespace quorvik
{

namespace
{

/** A reply that came late enough for the question to be repeated may be followed by one as late. */
constexpr int QuietTimeouts = 2;

DriveProbe::Answer::Kind KindOf(MSComm::Failure failure)
{
    using Kind = DriveProbe::Answer::Kind;
    switch (failure) {
    case MSComm::Failure::InUse:
        return Kind::Busy;
    case MSComm::Failure::NoPermission:
        return Kind::NoPermission;
    case MSComm::Failure::NotPresent:
        return Kind::NotPresent;
    case MSComm::Failure::NotReached:
        return Kind::NotReached;
    default:
        return Kind::Failed;
    }
}

} // namespace

DriveProbe::DriveProbe(const ParameterTable &table, const LinkTimings &timings)
    : table_(table)
    , timings_(timings)
{
    port_.SetCommPort(0);
    port_.DeviceOf = [this](int) { return device_; };
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    On(&port_, &MSComm::PrepareEnded, this, [this] {
        if (step_ == Step::Reaching)
            Begin();
    });
    On(&port_, &MSComm::OnComm, this, [this] { Receive(); });
    On(&timer_, &QTimer::timeout, this, [this] { TimeOut(); });
}

void DriveProbe::Start(const QString &device, const std::set<int> &params)
{
    Cancel();
    device_ = device;
    params_ = params;
    answer_ = {};
    step_ = Step::Reaching;
    port_.Prepare();
    if (!port_.IsPreparing())
        Begin();
}

void DriveProbe::Begin()
{
    if (const QString failure = port_.SetPortOpen(true); !failure.isEmpty()) {
        End(KindOf(port_.OpenFailure()), failure);
        return;
    }
    ReplyTime replyTime;
    replyTime.Begin(timings_.replyTimeout, port_.RoundTripMs());
    timeoutMs_ = replyTime.TimeoutMs();
    step_ = Step::Properties;
    Ask(false);
}

void DriveProbe::Cancel()
{
    step_ = Step::Idle;
    timer_.stop();
    port_.CancelPreparing();
    port_.SetPortOpen(false);
}

void DriveProbe::Ask(bool isRepetition)
{
    isRepetition_ = isRepetition;
    isAnswered_ = isSpoiled_ = false;
    const bool isValue = step_ == Step::Value;
    port_.ClearInput();
    port_.SetRThreshold(isValue ? Wire::ReadReplyLength : Wire::PropertiesReplyLength);
    port_.Output(BuildPacket(isValue ? Wire::Command::Read : Wire::Command::ReadProperties,
                             ToInt16(isValue ? *params_.begin() : Param::FirstSelector), 0, false));
    timer_.start(timeoutMs_);
}

void DriveProbe::Receive()
{
    const bool isWhole = port_.InBufferCount() == port_.RThreshold();
    const QByteArray reply = port_.Input();
    // From the first byte that is not the drive's on, the rest of the wait is for what else may come.
    if (isAnswered_ || isSpoiled_ || !isWhole || !IsBccGood(reply)) {
        isSpoiled_ = true;
        return;
    }
    isAnswered_ = true;
    TakeReply(reply);
}

void DriveProbe::TakeReply(const QByteArray &reply)
{
    if (step_ == Step::Properties) {
        answer_.lastParam = RetrieveData(reply.at(4), reply.at(5), table_.AttrBit(Attr::Long, 1));
        if (answer_.lastParam < Param::FirstSelector) {
            answer_.lastParam = 0;
            isSpoiled_ = true;
            return;
        }
    } else {
        const int p = *params_.begin();
        answer_.rawValues[p] = RetrieveData(reply.at(2), reply.at(3), table_.AttrBit(Attr::Long, p));
        // The drive would go on with the next one at an ACK.
        port_.Output(QByteArray(1, Wire::Eot));
    }
    if (isRepetition_) {
        port_.SetRThreshold(1);
        timer_.start(QuietTimeouts * timeoutMs_);
    } else {
        GoOn();
    }
}

void DriveProbe::TimeOut()
{
    if (step_ == Step::Ending) {
        step_ = Step::Idle;
        Q_EMIT Finished(std::exchange(answer_, {}));
        return;
    }
    if (isAnswered_ && !isSpoiled_)
        GoOn();
    else if (!isRepetition_)
        Ask(true);
    else
        End(Answer::Kind::Silent, QStringLiteral("No drive answers %1.").arg(PortAddress::PlaceOf(device_)));
}

void DriveProbe::GoOn()
{
    if (step_ == Step::Value)
        params_.erase(params_.begin());
    else
        params_.erase(params_.upper_bound(answer_.lastParam), params_.end());
    if (params_.empty()) {
        End(Answer::Kind::Drive, QStringLiteral("A Sarvex drive answers %1 (last parameter %2).")
                                     .arg(PortAddress::PlaceOf(device_))
                                     .arg(answer_.lastParam));
        return;
    }
    step_ = Step::Value;
    Ask(false);
}

void DriveProbe::End(Answer::Kind kind, const QString &sentence)
{
    answer_.kind = kind;
    answer_.sentence = sentence;
    port_.SetPortOpen(false);
    // Not from within Start() or the port's own event.
    step_ = Step::Ending;
    timer_.start(0);
}

} // namespace quorvik
