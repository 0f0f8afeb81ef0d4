// A whole set on its way to the drive: what is asked before the first value leaves.

#include "compare/ParameterSet.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "operations/DriveOperations.h"
#include "operations/Guards.h"
#include "operations/Snapshots.h"
#include "operations/WriteHold.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace quorvik
{

namespace
{

/** What a write of the whole set sends, up to the drive's last parameter. */
std::vector<ParamValue> ValuesOf(const ParameterSet &set, int lastParam)
{
    std::vector<ParamValue> values;
    for (int p = 0; p <= std::min(set.LastParam(), lastParam); ++p) {
        const ParamRecord &record = set.records[p];
        // A memory command that nobody gave now is not given by a set.
        const bool isOld = Param::IsCommand(p) && record.WriteFlag != WriteState::Queued;
        if (set.Knows(p) && !Param::IsClock(p) && !isOld && (record.Attributes & Attr::ReadOnly) == 0)
            values.push_back({p, record.Value});
    }
    return values;
}

} // namespace

OperationResult DriveOperations::GoOnLineAside()
{
    WriteHold hold(table_);
    OperationResult online = GoOnLine();
    if (online.IsDone()) {
        hold.Stay();
        Q_EMIT WentOnLineAside();
    }
    return online;
}

bool DriveOperations::IsAside() const
{
    for (int p = 0; p <= table_.LastParam; ++p)
        if (table_[p].WriteFlag == WriteState::Held)
            return true;
    return false;
}

bool DriveOperations::AsksFirst() const
{
    return guards_.Asking;
}

OperationResult DriveOperations::QueueOpenSet()
{
    if (!AsksFirst()) {
        if (OperationResult online = GoOnLine(); !online.IsDone())
            return online;
        table_.SetAllWriteFlags(WriteState::Queued);
        return {};
    }
    // Before the link is up: polling puts the drive's model over the set's.
    const ParameterSet set = ParameterSet::Of(table_, FileTitle(document_.FileName));
    LeftOut leftOut;
    {
        WriteHold hold(table_);
        if (OperationResult online = GoOnLine(); !online.IsDone())
            return online;
        OperationResult allowed = MaySendAll(set, leftOut);
        if (allowed.outcome == Outcome::Refused)
            hold.Stay();
        if (allowed.outcome == Outcome::Cancelled) {
            // The drive was given nothing that it could have to save.
            const QScopedValueRollback nothingToSave(document_.DriveModified, false);
            GoOffLine(OffLineReason::CommandEnded);
        }
        if (!allowed.IsDone())
            return allowed;
    }
    table_.SetAllWriteFlags(WriteState::Queued);
    LeaveOut(leftOut);
    return {};
}

OperationResult DriveOperations::MaySendAll(const ParameterSet &set, LeftOut &leftOut)
{
    const std::map<int, std::int32_t> drive = snapshots_.ReadFresh(Guards::KnownBeforeWriting());
    if (!link_.PortOpen())
        return {Outcome::LinkLost};
    const std::optional<std::set<int>> commands =
        guards_.BeforeWriting(ValuesOf(set, table_.LastParam), set, drive, true);
    if (!link_.PortOpen())
        return {Outcome::LinkLost};
    if (!commands)
        return {Guards::Forbids(drive) ? Outcome::Refused : Outcome::Cancelled};
    for (const int p : *commands) {
        const auto known = drive.find(p);
        leftOut[p] = known == drive.end() ? std::nullopt : std::optional(known->second);
    }
    return {};
}

void DriveOperations::LeaveOut(const LeftOut &leftOut)
{
    for (const auto &[p, inDrive] : leftOut) {
        table_.Row(p).WriteFlag = WriteState::None;
        if (inDrive)
            table_.SetValue(p, *inDrive, ChangeCause::Drive);
        else
            table_.DropCommand(p);
    }
}

} // namespace quorvik
