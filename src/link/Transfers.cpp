// Values that go beside the table: read for a snapshot, or written from a list.

#include "link/DriveLink.h"
#include "link/PacketLayer.h"
#include "link/Trace.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"

#include <utility>

namespace quorvik
{

void DriveLink::StartFetch(const std::set<int> &params)
{
    const bool isIdle = IsIdle();
    StartScan(WholeScan::Fetching);
    wholeRead_.Begin(params);
    BeginSoon(isIdle);
}

void DriveLink::StartStore(std::vector<ParamValue> values)
{
    const bool isIdle = IsIdle();
    StartScan(WholeScan::Storing);
    stores_.Begin(std::move(values));
    BeginSoon(isIdle);
}

bool DriveLink::IsIdle() const
{
    // After a failure the pause is for what may still arrive.
    return SerialCommTimer.isActive() && NoResponseCount + PacketSizeErrorCount + BCCErrorCount == 0;
}

void DriveLink::BeginSoon(bool isIdle)
{
    if (!PortOpen()) {
        EndScan(ScanResult::End::LinkLost);
        return;
    }
    // Whatever else is under way ends by arming the timer, and the tick begins it then.
    if (isIdle)
        ArmSerialCommTimer(0);
}

void DriveLink::Scanned(int p)
{
    if (!isScanning_)
        return;
    if (wholeRead_.IsOfRows())
        Q_EMIT ScanProgress(wholeRead_.ReadCount());
    else if (stores_.IsUnderWay())
        Q_EMIT ScanProgress(stores_.TakenCount());
    else
        Q_EMIT ScanProgress(p);
}

void DriveLink::StoreNext()
{
    isStoring_ = true;
    if (const std::optional<int> first = FirstWrite()) {
        SendWrite(*first, true);
        return;
    }
    if (IsRoundDue()) {
        BeginRound(AfterSamples::Storing);
        return;
    }
    if (stores_.IsStopping()) {
        Pause();
        EndScan(ScanResult::End::Cancelled);
        return;
    }
    if (stores_.IsRoundOver()) {
        Pause();
        if (stores_.BeginRound())
            return;
        for (const ParamValue &value : stores_.RefusedOnes()) {
            scanRefused_.insert(value.param);
            Q_EMIT Stored(value.param, false);
        }
        EndScan(ScanResult::End::Complete);
        return;
    }
    const ParamValue value = stores_.Next();
    QUORVIK_LINK_TRACE() << " Store Param[" << value.param << "]=" << value.rawValue;
    QByteArray packet;
    try {
        packet =
            BuildPacket(Wire::Command::Write, ToInt16(value.param), value.rawValue, IsUnsigned(value.param));
    } catch (const RuntimeFailure &failure) {
        // As good as refused: no packet can carry it.
        stores_.Refused();
        throw failure.About(table_.FullName(value.param));
    }
    isStoreSent_ = true;
    Q_EMIT StoreSent(value.param);
    SendRequest(packet, Wire::WriteReplyLength);
}

void DriveLink::TakeStoreAnswer(bool isTaken)
{
    isStoreSent_ = false;
    // Cancelled, or over, while the answer was on its way.
    if (stores_.IsUnderWay()) {
        const int p = stores_.Next().param;
        if (isTaken) {
            stores_.Taken();
            ++scanTaken_;
            Q_EMIT Stored(p, true);
        } else {
            stores_.Refused();
        }
        Scanned(p);
    }
    GoOnScanning();
}

} // namespace quorvik
