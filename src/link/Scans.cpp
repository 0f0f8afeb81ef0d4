#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/Model.h"
#include "platform/Arithmetic.h"
#include "platform/Asker.h"

#include <utility>

namespace quorvik
{

namespace
{

constexpr int RefusalsInARow = 3;

/** The first parameter from current up that is wanted, or one past last. */
template<typename Wanted> int Seek(int current, int last, Wanted wanted)
{
    while (current <= last && !wanted(current))
        ++current;
    return current;
}

} // namespace

void DriveLink::SendRequest(const QByteArray &request, int replyLength)
{
    // A message shown meanwhile may have outlived the link.
    if (!PortOpen())
        return;
    MSComm1.SetRThreshold(replyLength);
    MSComm1.Output(request);
    SerialCommTimeout.start();
}

bool DriveLink::IsUnsigned(int paramNumber) const
{
    return model_.AttrBit(Attr::Long, paramNumber);
}

void DriveLink::ReadNext()
{
    CurrentParam = Seek(CurrentParam, model_.LastParam, [this](int p) {
        const ParamRecord &record = model_.ParamTable[p];
        return record.WriteFlag == WriteState::None && record.ReadFlag > 0;
    });
    if (CurrentParam > model_.LastParam) {
        QUORVIK_LINK_TRACE() << " ReadScanComplete";
        ArmSerialCommTimer();
        return;
    }
    QUORVIK_LINK_TRACE() << " Read Param[" << CurrentParam << "]";
    SendRequest(BuildPacket(Wire::Command::Read, ToInt16(CurrentParam), 0, false), Wire::ReadReplyLength);
}

void DriveLink::ParseReadPacket(const QByteArray &packet)
{
    QUORVIK_LINK_TRACE() << "ParseReadPacket";
    if (!IsBccGood(packet)) {
        QUORVIK_LINK_TRACE() << " Invalid BCC for p[" << CurrentParam;
        HandleBCCErrors();
    } else {
        BCCErrorCount = 0;
        ParamRecord &record = model_.ParamTable[CurrentParam];
        // The program's own value is the newer one while its write is pending.
        if (record.WriteFlag == WriteState::None)
            record.Value = RetrieveData(packet.at(2), packet.at(3), IsUnsigned(CurrentParam));
        QUORVIK_LINK_TRACE() << " Param[" << CurrentParam << "] = " << record.Value;
        Q_EMIT ValueRead(CurrentParam);
    }

    ++CurrentParam;
    if (CurrentParam > model_.LastParam) {
        QUORVIK_LINK_TRACE() << " EndofScan (EOT Sent)";
        MSComm1.Output(QByteArray(1, Wire::Eot));
        ArmSerialCommTimer();
    } else if (model_.ParamTable[CurrentParam].ReadFlag > 0) {
        QUORVIK_LINK_TRACE() << " ACK Sent";
        SendRequest(QByteArray(1, Wire::Ack), Wire::ReadReplyLength);
    } else {
        QUORVIK_LINK_TRACE() << " Discontinuous (EOT Sent)";
        MSComm1.Output(QByteArray(1, Wire::Eot));
        ReadNext();
    }
}

void DriveLink::WriteNext()
{
    const auto isQueued = [this](int p) { return model_.ParamTable[p].WriteFlag == WriteState::Queued; };
    CurrentParam = Seek(CurrentParam, model_.LastParam, isQueued);
    if (CurrentParam > model_.LastParam) {
        QUORVIK_LINK_TRACE() << " WriteScanComplete";
        // What was changed behind the cursor during this scan is for the next one.
        model_.WritePending = Seek(0, model_.LastParam, isQueued) <= model_.LastParam;
        ArmSerialCommTimer();
        return;
    }
    ParamRecord &record = model_.ParamTable[CurrentParam];
    QUORVIK_LINK_TRACE() << " Write Param[" << CurrentParam << "]=" << record.Value;
    QByteArray packet;
    try {
        packet =
            BuildPacket(Wire::Command::Write, ToInt16(CurrentParam), record.Value, IsUnsigned(CurrentParam));
    } catch (const RuntimeFailure &) {
        // No packet can carry this value, now or later. Given up like a refused write, or no other write and
        // no read would ever get through again.
        record.WriteFlag = WriteState::None;
        throw;
    }
    rawValueSent_ = record.Value;
    SendRequest(packet, Wire::WriteReplyLength);
}

void DriveLink::ParseAckNak(const QByteArray &packet)
{
    QUORVIK_LINK_TRACE() << "ParseAckNak";
    if (packet.at(0) != Wire::Ack) {
        QUORVIK_LINK_TRACE() << " ACK not received";
        RefuseWrite();
        return;
    }
    QUORVIK_LINK_TRACE() << " ACK received, p[" << CurrentParam;
    WriteRetryCount = 0;
    ParamRecord &record = model_.ParamTable[CurrentParam];
    // A value that was changed again meanwhile is not the one that the drive has taken.
    if (record.Value == rawValueSent_) {
        record.WriteFlag = WriteState::None;
        Q_EMIT WriteTaken(CurrentParam);
    }
    ++CurrentParam;
    if (CurrentParam <= model_.LastParam) {
        QUORVIK_LINK_TRACE() << " Call Write Next";
        WriteNext();
    } else {
        QUORVIK_LINK_TRACE() << " Finished Writing";
        ArmSerialCommTimer();
    }
    // Whether or not the write just acknowledged was the edited parameter's.
    model_.RefreshDependentParams(model_.EditParamNumber);
}

void DriveLink::RefuseWrite()
{
    WriteRetryCount = ToByte(WriteRetryCount + 1);
    if (WriteRetryCount >= RefusalsInARow) {
        ParamRecord &record = model_.ParamTable[CurrentParam];
        const std::int32_t rawValue = record.Value;
        record.WriteFlag = WriteState::None;
        bool told = false;
        Q_EMIT WriteRefused(CurrentParam, rawValue, &told);
        if (!told)
            asker_.MsgBox(
                QStringLiteral("Could not write value of %1 to (%2) ").arg(rawValue).arg(CurrentParam) +
                    record.Name,
                MsgButtons::Ok, MsgIcon::Exclamation, QStringLiteral("Write Error"));
        ++CurrentParam;
        WriteRetryCount = 0;
    }
    ArmSerialCommTimer();
}

void DriveLink::ReadProps(std::int16_t paramNumber)
{
    QUORVIK_LINK_TRACE() << " ReadProp[" << paramNumber;
    SendRequest(BuildPacket(Wire::Command::ReadProperties, paramNumber, 0, false),
                Wire::PropertiesReplyLength);
}

void DriveLink::ParseReadPropPacket(const QByteArray &packet)
{
    QUORVIK_LINK_TRACE() << "ParseReadPropPacket";
    if (!IsBccGood(packet)) {
        QUORVIK_LINK_TRACE() << " Invalid BCC for Read Properties";
        HandleBCCErrors();
        // The engine stands still from here on until the user takes the link down: the size of the drive's
        // table is in doubt.
        return;
    }
    BCCErrorCount = 0;
    const bool isUnsigned = IsUnsigned(std::exchange(ReadPropsIndex, std::int16_t(0)));
    std::int32_t *const fields[] = {&PropMin, &PropMax, &PropAttrib, &PropPreset, &PropValue};
    int at = 2;
    for (std::int32_t *field : fields) {
        *field = RetrieveData(packet.at(at), packet.at(at + 1), isUnsigned);
        at += 2;
    }
    ArmSerialCommTimer();
}

void DriveLink::ServeDriveCommand()
{
    QUORVIK_LINK_TRACE() << (DriveCommand == 1 ? " REINITIALIZE" : " RESET");
    // No reply: the drive restarts at once.
    MSComm1.SetRThreshold(0);
    MSComm1.Output(BuildPacket(Wire::Command::Write, Param::OneShotCommand, DriveCommand,
                               IsUnsigned(Param::OneShotCommand)));
    DriveCommand = 0;
    GoOffLine(2);
}

void DriveLink::BeginScanAnew()
{
    CurrentParam = 0;
    if (!SerialCommTimeout.isActive())
        return;
    SerialCommTimeout.stop();
    ArmSerialCommTimer();
}

void DriveLink::SetAllReadFlags(int delta)
{
    if (!model_.SetAllReadFlags(delta))
        asker_.MsgBox(QStringLiteral("Invalid value of NewState in Sub SetAllReadFlags."), MsgButtons::Ok,
                      MsgIcon::Critical, QStringLiteral("Error"));
}

} // namespace quorvik
