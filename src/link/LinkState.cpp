#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

QString DriveLink::Open()
{
    if (QString failure = MSComm1.SetPortOpen(true); !failure.isEmpty())
        return failure;
    replyTime_.Begin(onWire_.replyTimeout, MSComm1.RoundTripMs());
    timings_ = WithReplyTime(onWire_, replyTime_);
    SerialCommTimeout.setInterval(timings_.replyTimeout);
    timerDelay_.setInterval(timings_.sizeErrorPause);
    // What was left undone when the link was up before must not strike now.
    OffLineRequested = endsRun_ = isSampleSent_ = false;
    DriveCommand = Restart::None;
    NoResponseCount = PacketSizeErrorCount = BCCErrorCount = WriteRetryCount = 0;
    refusals_.clear();
    isJogUnsettled_ = true;
    // A button that was pressed before is no command for now.
    for (const int p : {Param::Run, Param::Stop, Param::Jog})
        if (p <= table_.LastParam)
            table_.Row(p).WriteFirst = false;
    table_.DriveStateUnread = true;
    isSizeUnknown_ = true;
    SerialCommTimer.setInterval(timings_.scanPause);
    OnComStatusChange();

    PropMax = 0;
    // The highest value of the first selector is the drive's last parameter.
    ReadPropsIndex = Param::FirstSelector;
    SerialCommTimer.start();
    return {};
}

bool DriveLink::TakeSize()
{
    ReadPropsIndex = 0;
    isSizeUnknown_ = false;
    if (PropMax < Param::FirstSelector)
        return false;
    table_.LastParam = std::int16_t(std::min<std::int32_t>(PropMax, table_.FileLastParam));
    return true;
}

void DriveLink::Close()
{
    MSComm1.SetPortOpen(false);
    OnComStatusChange();
}

void DriveLink::BreakOff()
{
    if (!PortOpen())
        return;
    Q_EMIT BreakingOff();
    if (PortOpen())
        Close();
}

void DriveLink::OnComStatusChange()
{
    table_.SetPortOpen(PortOpen());
    if (PortOpen()) {
        SerialCommTimer.start();
    } else {
        SerialCommTimer.stop();
        SerialCommTimeout.stop();
        timerDelay_.stop();
        table_.LastParam = table_.FileLastParam;
        table_.DriveStateUnread = false;
        ReadPropsIndex = 0;
        isSizeUnknown_ = false;
        isSampleSent_ = isRetryPending_ = false;
        quietLeft_ = 0;
    }
    Q_EMIT ComStatusChanged();
    if (!PortOpen())
        EndScan(ScanResult::End::LinkLost);
}

void DriveLink::StartScan(WholeScan kind)
{
    ScanKind = kind;
    isScanning_ = true;
    scanRefused_.clear();
    scanTaken_ = stopOnlyRefused_ = 0;
    wholeRead_ = {};
    if (kind == WholeScan::Reading) {
        scanLast_ = table_.LastParam;
        table_.SetAllReadFlags(1);
        wholeRead_.Begin();
    }
    BeginScanAnew();
}

void DriveLink::BeginScanAnew()
{
    CurrentParam = 0;
    if (IsSamplingInPause()) {
        // The tick comes as soon as the sample is there.
        tickDueUs_ = 0;
        return;
    }
    // A reply that is still awaited could not be told from the scan's: the scan begins after the pause.
    if (!SerialCommTimeout.isActive())
        return;
    SerialCommTimeout.stop();
    if (MSComm1.RThreshold() == Wire::ReadReplyLength)
        Send(QByteArray(1, Wire::Eot));
    PauseForLate();
}

void DriveLink::CancelScan()
{
    if (stores_.IsUnderWay() && SerialCommTimeout.isActive()) {
        stores_.Stop();
        return;
    }
    if (isScanning_ && ScanKind == WholeScan::Writing)
        Guarded([this] { table_.SetAllWriteFlags(WriteState::None); });
    // The table is not to get what was asked for beside it.
    if (wholeRead_.IsOfRows())
        BeginScanAnew();
    EndScan(ScanResult::End::Cancelled);
}

void DriveLink::EndScan(ScanResult::End end)
{
    if (!std::exchange(isScanning_, false))
        return;
    wholeRead_.End();
    stores_.End();
    ScanResult result{.kind = ScanKind, .end = end, .missing = scanRefused_, .taken = scanTaken_};
    if (ScanKind == WholeScan::Reading || ScanKind == WholeScan::Fetching) {
        result.missing = wholeRead_.UnreadRows();
        result.hasRead = wholeRead_.HasRead();
        result.isInDoubt = wholeRead_.IsInDoubt();
    }
    if (ScanKind == WholeScan::Reading) {
        // The interest is given back for what it was raised for: a link that broke has changed LastParam
        // since.
        Guarded([this] {
            for (int i = 0; i <= scanLast_; ++i)
                table_.RemoveReadInterest(i);
        });
    }
    Q_EMIT ScanFinished(result);
}

} // namespace quorvik
