#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"
#include "platform/Clock.h"

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
    if (!PortOpen())
        return;
    MSComm1.SetRThreshold(replyLength);
    Send(request);
    sentUs_ = MicrosecondsUp();
    SerialCommTimeout.start();
}

bool DriveLink::IsUnsigned(int paramNumber) const
{
    return table_.AttrBit(Attr::Long, paramNumber);
}

void DriveLink::BeginReadScan()
{
    if (wholeRead_.IsUnderWay() && !wholeRead_.BeginPass()) {
        ArmSerialCommTimer();
        EndScan(ScanResult::End::Complete);
        return;
    }
    CurrentParam = 0;
    isReadScan_ = true;
    ReadNext();
}

bool DriveLink::IsWanted(int p) const
{
    // A Jog from before must not go on because nobody looks.
    const bool isJog = p == Param::Jog && isJogUnsettled_ && !wholeRead_.IsUnderWay();
    return isJog || ((table_[p].ReadFlag > 0 || wholeRead_.IsOfRows()) && wholeRead_.Wants(p));
}

void DriveLink::ReadNext()
{
    if (const std::optional<int> first = WriteBeforeRead()) {
        SendWrite(*first, true);
        return;
    }
    if (IsRoundDue()) {
        BeginRound(AfterSamples::Reading);
        return;
    }
    CurrentParam = Seek(CurrentParam, table_.LastParam, [this](int p) {
        return (table_[p].WriteFlag == WriteState::None || wholeRead_.IsOfRows()) && IsWanted(p);
    });
    if (CurrentParam > table_.LastParam) {
        QUORVIK_LINK_TRACE() << " ReadScanComplete";
        wholeRead_.EndPass();
        // Nothing is asked for before the account of a reading is closed: what was answered too much must
        // show.
        if (wholeRead_.IsOfRows())
            ArmSerialCommTimer(std::min(timings_.quiet, timings_.scanPause));
        else if (wholeRead_.IsUnderWay())
            ArmSerialCommTimer();
        else
            Pause();
        // There was nothing to write.
        EndWriting();
        return;
    }
    QUORVIK_LINK_TRACE() << " Read Param[" << CurrentParam << "]";
    AskFor(CurrentParam, BuildPacket(Wire::Command::Read, ToInt16(CurrentParam), 0, false));
}

void DriveLink::AskFor(int p, const QByteArray &request)
{
    paramAsked_ = p;
    Q_EMIT Asked(p);
    askedUs_ = MicrosecondsUp();
    SendRequest(request, Wire::ReadReplyLength);
}

void DriveLink::ParseReadPacket(const QByteArray &packet)
{
    QUORVIK_LINK_TRACE() << "ParseReadPacket";
    const int p = paramAsked_;
    const bool isOfScan = !isSampleSent_;
    const bool isAlone = isOfScan && wholeRead_.IsSettling();
    if (!IsBccGood(packet)) {
        QUORVIK_LINK_TRACE() << " Invalid BCC for p[" << p;
        if (isOfScan)
            wholeRead_.RowFailed(p);
        HandleBCCErrors();
    } else {
        BCCErrorCount = 0;
        const ParamRecord &record = table_[p];
        const std::int32_t rawValue = RetrieveData(packet.at(2), packet.at(3), IsUnsigned(p));
        const bool isBeside = isOfScan && wholeRead_.IsOfRows();
        if (isOfScan)
            wholeRead_.RowRead(p);
        if (isBeside)
            Q_EMIT Fetched(p, rawValue);
        // The program's own value is the newer one while its write is pending.
        if (record.WriteFlag == WriteState::None && (!isBeside || record.ReadFlag > 0))
            TakeValue(p, rawValue);
        Q_EMIT Confirmed(p, rawValue);
        QUORVIK_LINK_TRACE() << " Param[" << p << "] = " << record.Value;
        Q_EMIT ValueRead(p);
    }
    if (!isOfScan) {
        GoOnSampling();
        return;
    }

    ++CurrentParam;
    Scanned(CurrentParam);
    if (isAlone) {
        QUORVIK_LINK_TRACE() << " Alone (EOT Sent)";
        Send(QByteArray(1, Wire::Eot));
        ArmSerialCommTimer();
        return;
    }
    const bool isEnd = CurrentParam > table_.LastParam;
    if (!isEnd && IsWanted(CurrentParam) && !WriteBeforeRead() && !IsRoundDue()) {
        QUORVIK_LINK_TRACE() << " ACK Sent";
        AskFor(CurrentParam, QByteArray(1, Wire::Ack));
        return;
    }
    QUORVIK_LINK_TRACE() << (isEnd ? " EndofScan (EOT Sent)" : " Discontinuous (EOT Sent)");
    Send(QByteArray(1, Wire::Eot));
    ReadNext();
}

void DriveLink::TakeValue(int p, std::int32_t rawValue)
{
    table_.SetValue(p, rawValue, ChangeCause::Drive);
    if (p == Param::DriveState)
        table_.DriveStateUnread = false;
    // A Jog from before the link broke, whose button is long let go of.
    if (p == Param::Jog && std::exchange(isJogUnsettled_, false) && rawValue != 0)
        table_.QueueWrite(Param::Jog, 0);
}

std::optional<int> DriveLink::FirstWrite() const
{
    for (const int p : {Param::Run, Param::Stop, Param::Jog}) {
        if (p > table_.LastParam)
            break;
        const ParamRecord &record = table_[p];
        if (record.WriteFlag == WriteState::Queued && record.WriteFirst)
            return p;
    }
    return std::nullopt;
}

void DriveLink::WriteNext()
{
    if (const std::optional<int> first = FirstWrite()) {
        SendWrite(*first, true);
        return;
    }
    if (IsRoundDue()) {
        BeginRound(AfterSamples::Writing);
        return;
    }
    const auto isQueued = [this](int p) { return table_[p].WriteFlag == WriteState::Queued; };
    CurrentParam = Seek(CurrentParam, table_.LastParam, isQueued);
    if (CurrentParam > table_.LastParam) {
        QUORVIK_LINK_TRACE() << " WriteScanComplete";
        // What was changed behind the cursor during this scan is for the next one.
        table_.WritePending = Seek(0, table_.LastParam, isQueued) <= table_.LastParam;
        Pause();
        EndWriting();
        return;
    }
    SendWrite(CurrentParam, false);
}

void DriveLink::EndWriting()
{
    if (ScanKind == WholeScan::Writing)
        EndScan(ScanResult::End::Complete);
}

void DriveLink::SendWrite(int p, bool isFirst)
{
    ParamRecord &record = table_.Row(p);
    // A whole table brings no Jog along from another day.
    if (p == Param::Jog && isJogUnsettled_ && !record.WriteFirst)
        table_.SetValue(p, 0, ChangeCause::Command);
    QUORVIK_LINK_TRACE() << " Write Param[" << p << "]=" << record.Value;
    QByteArray packet;
    try {
        packet = BuildPacket(Wire::Command::Write, ToInt16(p), record.Value, IsUnsigned(p));
    } catch (const RuntimeFailure &failure) {
        // No packet can carry this value, now or later. Given up like a refused write, or no other write and
        // no read would ever get through again.
        record.WriteFlag = WriteState::None;
        throw failure.About(table_.FullName(p));
    }
    isStoreSent_ = false;
    paramSent_ = p;
    rawValueSent_ = record.Value;
    isFirstSent_ = isFirst;
    SendRequest(packet, Wire::WriteReplyLength);
}

void DriveLink::GoOnScanning()
{
    if (isReadScan_) {
        ReadNext();
    } else if (isStoring_) {
        StoreNext();
    } else if (CurrentParam <= table_.LastParam || FirstWrite()) {
        QUORVIK_LINK_TRACE() << " Call Write Next";
        WriteNext();
    } else {
        QUORVIK_LINK_TRACE() << " Finished Writing";
        Pause();
        EndWriting();
    }
}

void DriveLink::ParseAckNak(const QByteArray &packet)
{
    QUORVIK_LINK_TRACE() << "ParseAckNak";
    if (isStoreSent_) {
        TakeStoreAnswer(packet.at(0) == Wire::Ack);
        return;
    }
    if (packet.at(0) != Wire::Ack) {
        QUORVIK_LINK_TRACE() << " ACK not received";
        RefuseWrite();
        return;
    }
    QUORVIK_LINK_TRACE() << " ACK received, p[" << paramSent_;
    TakeWrite();
    if (!isFirstSent_)
        ++CurrentParam;
    Scanned(CurrentParam);
    GoOnScanning();
    // Whether or not the write just acknowledged was the edited parameter's.
    try {
        table_.RefreshDependentParams(table_.EditParamNumber);
    } catch (const RuntimeFailure &failure) {
        // No fault of the line: the scan goes on.
        Report(failure);
    }
}

void DriveLink::TakeWrite()
{
    const int p = paramSent_;
    refusals_.erase(p);
    WriteRetryCount = 0;
    if (p == Param::Jog)
        isJogUnsettled_ = false;
    ParamRecord &record = table_.Row(p);
    // A value that was changed again meanwhile is not the one that the drive has taken.
    if (record.Value != rawValueSent_)
        return;
    record.WriteFlag = WriteState::None;
    // A command is given once. Where somebody polls it, the drive itself tells when it is done.
    if (Param::IsCommand(p) && record.ReadFlag == 0)
        table_.SetValue(p, 0, ChangeCause::Command);
    ++scanTaken_;
    Q_EMIT WriteTaken(p);
}

void DriveLink::RefuseWrite()
{
    const int p = paramSent_;
    ParamRecord &record = table_.Row(p);
    // It counts for the value that was sent only.
    WriteRetryCount = record.Value == rawValueSent_ ? ++refusals_[p] : refusals_[p] = 0;
    if (WriteRetryCount >= RefusalsInARow) {
        const std::int32_t rawValue = record.Value;
        record.WriteFlag = WriteState::None;
        if (!isFirstSent_)
            ++CurrentParam;
        refusals_.erase(p);
        WriteRetryCount = 0;
        if (isScanning_)
            scanRefused_.insert(p);
        bool isTold = false;
        Q_EMIT WriteRefused(p, rawValue, &isTold);
        Q_EMIT WriteGivenUp(p, rawValue, isTold);
        const bool isStopOnly = isScanning_ && ScanKind == WholeScan::Writing && table_.AttrBit(Attr::Icr, p);
        if (isStopOnly && ++stopOnlyRefused_ == StopOnlyRefusals)
            GiveUpStopOnly();
    }
    isRetryPending_ = true;
    earlierTickUs_ = 0;
    Pause();
}

void DriveLink::GiveUpStopOnly()
{
    std::vector<int> params;
    for (int i = 0; i <= table_.LastParam; ++i) {
        ParamRecord &record = table_.Row(i);
        if (record.WriteFlag != WriteState::Queued || !table_.AttrBit(Attr::Icr, i))
            continue;
        record.WriteFlag = WriteState::None;
        refusals_.erase(i);
        scanRefused_.insert(i);
        params.push_back(i);
    }
    if (!params.empty())
        Q_EMIT StopOnlyGivenUp(params);
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
    QUORVIK_LINK_TRACE() << (DriveCommand == Restart::ReInitialize ? " REINITIALIZE" : " RESET");
    // No reply: the drive restarts at once.
    MSComm1.SetRThreshold(0);
    Send(BuildPacket(Wire::Command::Write, Param::OneShotCommand, std::int32_t(DriveCommand),
                     IsUnsigned(Param::OneShotCommand)));
    DriveCommand = Restart::None;
    BreakOff();
}

} // namespace quorvik
