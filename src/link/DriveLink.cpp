#include "link/DriveLink.h"

#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/ParameterTable.h"
#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

Q_LOGGING_CATEGORY(linkTrace, "quorvik.link", QtInfoMsg)

DriveLink::DriveLink(ParameterTable &table, LinkTimings timings)
    : table_(table)
    , onWire_(timings)
    , timings_(timings)
{
    const std::pair<QTimer *, int> intervals[] = {
        {&SerialCommTimer, timings.scanPause},
        {&SerialCommTimeout, timings.replyTimeout},
        {&timerDelay_, timings.sizeErrorPause},
    };
    for (const auto &[timer, interval] : intervals) {
        timer->setTimerType(Qt::PreciseTimer);
        timer->setSingleShot(true);
        timer->setInterval(interval);
    }
    On(&SerialCommTimer, &QTimer::timeout, this, [this] { RunHandler(&DriveLink::SerialCommTimer_Timer); });
    On(&SerialCommTimeout, &QTimer::timeout, this,
       [this] { RunHandler(&DriveLink::SerialCommTimeout_Timer); });
    On(&timerDelay_, &QTimer::timeout, this, [this] { RunHandler(&DriveLink::TimerDelay_Timer); });
    On(&MSComm1, &MSComm::OnComm, this, [this] { RunHandler(&DriveLink::MSComm1_OnComm); });
}

DriveLink::~DriveLink()
{
    table_.SetPortOpen(false);
}

void DriveLink::RunHandler(void (DriveLink::*handler)())
{
    isFailing_ = false;
    try {
        (this->*handler)();
    } catch (const RuntimeFailure &failure) {
        SerialCommTimeout.stop();
        ArmSerialCommTimer();
        Report(failure);
    }
    if (!isFailing_)
        isFailureTold_ = false;
}

void DriveLink::Report(const RuntimeFailure &failure)
{
    isFailing_ = true;
    if (std::exchange(isFailureTold_, true))
        return;
    // Not from within the chain, and above all not from within the port's own event: whoever shows a message
    // may run the event loop.
    QMetaObject::invokeMethod(
        this, [failure] { ReportFailure(failure); }, Qt::QueuedConnection);
}

void DriveLink::SerialCommTimer_Timer()
{
    QUORVIK_LINK_TRACE() << "SerialCommTimer";
    if (quietLeft_ > 0 && !MustServe()) {
        const int step = std::min(quietLeft_, timings_.quietStep);
        SerialCommTimer.setInterval(step);
        SerialCommTimer.start();
        quietLeft_ -= step;
        return;
    }
    const bool wasQuiet = std::exchange(quietLeft_, 0) == 0;
    if (!OffLineRequested && DriveCommand == Restart::None) {
        DiscardInput();
        if (wasQuiet) {
            inStepUs_ = MicrosecondsUp();
            Q_EMIT PassBegins();
        }
    }
    ServeTick();
}

void DriveLink::ServeTick()
{
    if (OffLineRequested) {
        QUORVIK_LINK_TRACE() << " Going offline";
        BreakOff();
        OffLineRequested = false;
        return;
    }
    if (DriveCommand != Restart::None) {
        ServeDriveCommand();
        return;
    }
    isStoring_ = isRetryPending_ = false;
    // What the tick is for goes first.
    roundDueUs_ = MicrosecondsUp() + timings_.sampleEvery * UsPerMs;
    if (ReadPropsIndex < 1 && !table_.WritePending && !stores_.IsUnderWay()) {
        BeginReadScan();
        return;
    }
    CurrentParam = 0;
    isReadScan_ = false;
    if (ReadPropsIndex >= 1)
        ReadProps(ReadPropsIndex);
    else if (table_.WritePending)
        WriteNext();
    else
        StoreNext();
}

void DriveLink::SerialCommTimeout_Timer()
{
    QUORVIK_LINK_TRACE() << "SerialCommTimeout";
    if (!PortOpen())
        return;
    const qsizetype received = TakeInput(true).size();
    replyTime_.Missed();
    FollowReplyTime();
    ReadBrokeOff();
    if (received == 0) {
        QUORVIK_LINK_TRACE() << " No Response";
        HandleNoResponses();
    } else if (received < MSComm1.RThreshold()) {
        QUORVIK_LINK_TRACE() << " Incorrect Packet Size: " << received;
        HandlePacketSizeErrors();
    }
    PauseForLate();
}

void DriveLink::MSComm1_OnComm()
{
    if (MSComm1.CommEvent() != MSComm::EvReceive)
        return;
    QUORVIK_LINK_TRACE() << "Comm Receive";
    // A reply does not say whose it is: one that nobody waits for any more must not reach the table, and is
    // no answer to the silence that was counted.
    if (!SerialCommTimeout.isActive()) {
        DiscardInput();
        return;
    }
    SerialCommTimeout.stop();
    answeredUs_ = MicrosecondsUp();
    replyTime_.Answered(double(answeredUs_ - sentUs_) / UsPerMs);
    FollowReplyTime();
    ParsePacket(TakeInput(true));
}

void DriveLink::ParsePacket(const QByteArray &buffer)
{
    QUORVIK_LINK_TRACE() << "Parse Packet";
    NoResponseCount = 0;
    if (MSComm1.RThreshold() != buffer.size()) {
        QUORVIK_LINK_TRACE() << " Incorrect Packet Size";
        if (buffer.size() > MSComm1.RThreshold())
            Q_EMIT OutOfStep();
        ReadBrokeOff();
        HandlePacketSizeErrors();
        if (PortOpen())
            timerDelay_.start();
        return;
    }
    PacketSizeErrorCount = 0;
    switch (MSComm1.RThreshold()) {
    case Wire::WriteReplyLength:
        ParseAckNak(buffer);
        break;
    case Wire::ReadReplyLength:
        ParseReadPacket(buffer);
        break;
    case Wire::PropertiesReplyLength:
        ParseReadPropPacket(buffer);
        break;
    default:
        Q_EMIT FatalError(QStringLiteral("Invalid MSCOMM1.RTHRESHOLD Value in ParsePacket()"));
    }
}

void DriveLink::TimerDelay_Timer()
{
    MSComm1.ClearInput();
    ArmSerialCommTimer();
}

void DriveLink::ArmSerialCommTimer()
{
    ArmSerialCommTimer(timings_.scanPause);
}

void DriveLink::ArmSerialCommTimer(int milliseconds)
{
    isSampleSent_ = false;
    quietLeft_ = 0;
    earlierTickUs_ = 0;
    if (!PortOpen())
        return;
    SerialCommTimer.setInterval(milliseconds);
    SerialCommTimer.start();
}

void DriveLink::PauseForLate()
{
    ArmSerialCommTimer(std::max(timings_.scanPause, timings_.latePause));
}

void DriveLink::FollowReplyTime()
{
    if (!replyTime_.IsOverNetwork())
        return;
    timings_ = WithReplyTime(onWire_, replyTime_);
    SerialCommTimeout.setInterval(timings_.replyTimeout);
    timerDelay_.setInterval(timings_.sizeErrorPause);
}

void DriveLink::DiscardInput()
{
    if (MSComm1.InBufferCount() > 0) {
        wholeRead_.StrayReply();
        TakeInput(false);
        Q_EMIT OutOfStep();
    }
    MSComm1.ClearInput();
}

QByteArray DriveLink::TakeInput(bool isAwaited)
{
    QByteArray bytes = MSComm1.Input();
    if (!bytes.isEmpty())
        Q_EMIT Received(bytes, isAwaited);
    return bytes;
}

void DriveLink::Send(const QByteArray &bytes)
{
    if (std::exchange(endsRun_, false)) {
        const QByteArray end(1, Wire::Eot);
        Q_EMIT Sent(end);
        Q_EMIT Sent(bytes);
        MSComm1.Output(end + bytes);
        return;
    }
    Q_EMIT Sent(bytes);
    MSComm1.Output(bytes);
}

} // namespace quorvik
