#include "link/DriveLink.h"

#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/Model.h"
#include "platform/Asker.h"

namespace quorvik
{

Q_LOGGING_CATEGORY(linkTrace, "quorvik.link", QtInfoMsg)

DriveLink::DriveLink(Model &model, EntryRules &rules, Asker &asker, LinkTimings timings)
    : model_(model)
    , rules_(rules)
    , asker_(asker)
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
    model_.PortOpen = [this] { return PortOpen(); };
}

DriveLink::~DriveLink()
{
    model_.PortOpen = [] { return false; };
}

void DriveLink::RunHandler(void (DriveLink::*handler)())
{
    bool failed = false;
    guard_.Run([&] {
        try {
            (this->*handler)();
        } catch (const RuntimeFailure &) {
            failed = true;
            SerialCommTimer.stop();
            SerialCommTimeout.stop();
            throw;
        }
    });
    if (failed)
        ArmSerialCommTimer();
}

void DriveLink::SerialCommTimer_Timer()
{
    QUORVIK_LINK_TRACE() << "SerialCommTimer";
    if (OffLineRequested) {
        QUORVIK_LINK_TRACE() << " Going offline";
        GoOffLine(2);
        OffLineRequested = false;
        return;
    }
    if (DriveCommand != 0) {
        ServeDriveCommand();
        return;
    }
    CurrentParam = 0;
    DiscardInput();
    if (ReadPropsIndex >= 1)
        ReadProps(ReadPropsIndex);
    else if (!model_.WritePending)
        ReadNext();
    else
        WriteNext();
}

void DriveLink::SerialCommTimeout_Timer()
{
    QUORVIK_LINK_TRACE() << "SerialCommTimeout";
    if (!PortOpen())
        return;
    const qsizetype received = MSComm1.Input().size();
    if (received == 0) {
        QUORVIK_LINK_TRACE() << " No Response";
        HandleNoResponses();
    } else if (received < MSComm1.RThreshold()) {
        QUORVIK_LINK_TRACE() << " Incorrect Packet Size: " << received;
        HandlePacketSizeErrors();
    }
    ArmSerialCommTimer();
}

void DriveLink::MSComm1_OnComm()
{
    if (MSComm1.CommEvent() != MSComm::EvReceive)
        return;
    QUORVIK_LINK_TRACE() << "Comm Receive";
    // A reply does not say whose it is: one that nobody waits for any more must not reach the table.
    if (!SerialCommTimeout.isActive()) {
        DiscardInput();
        return;
    }
    SerialCommTimeout.stop();
    ParsePacket(MSComm1.Input());
}

void DriveLink::ParsePacket(const QByteArray &buffer)
{
    QUORVIK_LINK_TRACE() << "Parse Packet";
    NoResponseCount = 0;
    if (MSComm1.RThreshold() != buffer.size()) {
        QUORVIK_LINK_TRACE() << " Incorrect Packet Size";
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
        asker_.MsgBox(QStringLiteral("Invalid MSCOMM1.RTHRESHOLD Value in ParsePacket()"), MsgButtons::Ok,
                      MsgIcon::Critical, AppTitle());
        Q_EMIT FatalError();
    }
}

void DriveLink::TimerDelay_Timer()
{
    DiscardInput();
    ArmSerialCommTimer();
}

void DriveLink::ArmSerialCommTimer()
{
    // A message shown meanwhile may have outlived the link.
    if (PortOpen())
        SerialCommTimer.start();
}

void DriveLink::DiscardInput()
{
    if (MSComm1.InBufferCount() > 0)
        NoResponseCount = 0;
    MSComm1.ClearInput();
}

} // namespace quorvik
