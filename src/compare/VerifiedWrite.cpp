#include "compare/VerifiedWrite.h"

#include "compare/Backups.h"
#include "compare/DriveSet.h"
#include "compare/WriteOrder.h"
#include "link/DriveLink.h"
#include "model/FullNames.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "platform/RuntimeFailure.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostNamed = 6;

/** Whether a value that nobody writes stays what it is. */
bool IsSteady(int p, const ParameterSet &set)
{
    const bool isCommand = Param::ClearsItself(p) || p == Param::Run || p == Param::Stop || p == Param::Jog;
    return !isCommand && !Param::IsClock(p) && (set.records[p].Attributes & Attr::ReadOnly) == 0 &&
           DrivenBy(p, set) == 0;
}

} // namespace

VerifiedWrite::VerifiedWrite(ParameterTable &table, DriveLink &link, const Backups &backups)
    : table_(table)
    , link_(link)
    , backups_(backups)
{
    On(&link_, &DriveLink::Fetched, this, [this](int p, std::int32_t rawValue) { OnFetched(p, rawValue); });
    On(&link_, &DriveLink::StoreSent, this, [this](int p) {
        if (WrittenRow *row = RowOf(p); row && phase_ == Phase::Writing) {
            row->arrival = Arrival::Sent;
            sent_.insert(p);
        }
    });
    On(&link_, &DriveLink::Stored, this, [this](int p, bool isTaken) { OnStored(p, isTaken); });
    On(&link_, &DriveLink::ScanProgress, this, [this](int count) { OnScanProgress(count); });
    On(&link_, &DriveLink::ScanFinished, this, [this](const ScanResult &result) {
        try {
            OnScanFinished(result);
        } catch (const RuntimeFailure &failure) {
            // Somebody waits for the end.
            report_.failure = failure.Sentence();
            Finish(report_.backupPath.isEmpty() ? WriteReport::End::NoBackup : WriteReport::End::Cancelled);
            throw;
        }
    });
}

WrittenRow *VerifiedWrite::RowOf(int p)
{
    const auto found = std::find_if(report_.rows.begin(), report_.rows.end(),
                                    [p](const WrittenRow &row) { return row.value.param == p; });
    return found == report_.rows.end() ? nullptr : &*found;
}

void VerifiedWrite::Begin(const std::vector<ParamValue> &values)
{
    report_ = {};
    before_ = {};
    for (const ParamValue &value : InWriteOrder(values, table_))
        // What the drive's table does not reach is as good as refused.
        report_.rows.push_back(
            {.value = value,
             .arrival = value.param <= table_.LastParam ? Arrival::NotSent : Arrival::Refused});
    begunAt_ = QDateTime::currentSecsSinceEpoch();
    isResumed_ = false;
    BeginReading();
}

void VerifiedWrite::Resume(bool acceptsChanged)
{
    isResumed_ = true;
    acceptsChanged_ = acceptsChanged;
    BeginReading();
}

void VerifiedWrite::RetryRefused()
{
    // What the drive's table does not reach would not even be answered.
    for (WrittenRow &row : report_.rows)
        if (row.arrival == Arrival::Refused && row.value.param <= table_.LastParam)
            row = {.value = row.value};
    Resume(true);
}

UnfinishedWrite VerifiedWrite::Unfinished() const
{
    UnfinishedWrite unfinished{.report = report_, .rawBefore = {}, .begunAt = begunAt_};
    for (int p = 0; p <= before_.LastParam(); ++p)
        if (before_.Knows(p))
            unfinished.rawBefore[p] = before_.Value(p);
    return unfinished;
}

void VerifiedWrite::TakeUp(const UnfinishedWrite &unfinished)
{
    report_ = unfinished.report;
    // Limits and access are the factory's until the drive's own selectors are in force.
    std::map<int, std::int32_t> values = unfinished.rawBefore;
    std::erase_if(values, [this](const auto &value) { return value.first > table_.LastParam; });
    before_ = SetOfDrive(values, table_, {});
    begunAt_ = unfinished.begunAt;
}

void VerifiedWrite::Cancel()
{
    if (IsUnderWay())
        link_.CancelScan();
}

void VerifiedWrite::BeginReading()
{
    phase_ = Phase::KeepingBackup;
    endOfWriting_ = WriteReport::End::Complete;
    doneBefore_ = 0;
    fetched_.clear();
    sent_.clear();
    report_.failure.clear();
    report_.changed.clear();
    std::set<int> all;
    for (int p = 0; p <= table_.LastParam; ++p)
        all.insert(p);
    allInPhase_ = int(all.size());
    link_.StartFetch(all);
}

void VerifiedWrite::OnFetched(int p, std::int32_t rawValue)
{
    if (IsUnderWay())
        fetched_[p] = rawValue;
}

void VerifiedWrite::OnStored(int p, bool isTaken)
{
    WrittenRow *row = RowOf(p);
    if (phase_ != Phase::Writing || !row)
        return;
    if (!isTaken)
        row->arrival = Arrival::Refused;
    else
        TakeIntoTable(p, Param::ClearsItself(p) ? 0 : row->value.rawValue);
    if (isTaken && Param::ClearsItself(p) && row->value.rawValue != 0)
        row->arrival = Arrival::Given;
    if (isTaken)
        Q_EMIT Taken(p);
}

void VerifiedWrite::OnScanProgress(int count)
{
    const int rows = int(report_.rows.size());
    if (IsUnderWay())
        Q_EMIT Progressed(doneBefore_ + count, table_.LastParam + 1 + 2 * rows, count, allInPhase_);
}

void VerifiedWrite::OnScanFinished(const ScanResult &result)
{
    switch (phase_) {
    case Phase::Idle:
        break;
    case Phase::KeepingBackup:
        TakeBackup(result);
        break;
    case Phase::Writing:
        if (result.end == ScanResult::End::LinkLost) {
            Finish(WriteReport::End::LinkLost);
            break;
        }
        if (result.end == ScanResult::End::Cancelled)
            endOfWriting_ = WriteReport::End::Cancelled;
        BeginReadingBack();
        break;
    case Phase::ReadingBack:
        TakeReadBack(result);
        break;
    }
}

void VerifiedWrite::TakeBackup(const ScanResult &result)
{
    using End = WriteReport::End;
    if (result.end != ScanResult::End::Complete) {
        Finish(result.end == ScanResult::End::LinkLost ? End::LinkLost : End::Cancelled);
        return;
    }
    if (!result.missing.empty() || result.isInDoubt) {
        report_.failure = result.missing.empty()
                              ? QStringLiteral("The drive's answers came out of step with the questions.")
                              : MissingText(result.missing);
        Finish(End::NoBackup);
        return;
    }
    if (TakeSet())
        BeginWriting();
}

QString VerifiedWrite::MissingText(const std::set<int> &missing) const
{
    return QStringLiteral("These parameters could not be read: %1.")
        .arg(FullNames(table_, {missing.begin(), missing.end()}, MostNamed, QStringLiteral(", ")));
}

bool VerifiedWrite::TakeSet()
{
    using End = WriteReport::End;
    const ParameterSet now = SetOfDrive(fetched_, table_, QStringLiteral("drive"));
    const DriveIdentity drive = DriveIdentity::Of([&now](int p) { return now.Value(p); }, table_.LastParam);
    if (report_.backupPath.isEmpty()) {
        report_.drive = drive;
        before_ = now;
        const QDateTime time = QDateTime::currentDateTime();
        report_.failure = backups_.Keep(now, table_, time, report_.backupPath);
        if (!report_.failure.isEmpty()) {
            Finish(End::NoBackup);
            return false;
        }
    } else if (const double hours = double(QDateTime::currentSecsSinceEpoch() - begunAt_) / SecondsPerHour;
               !drive.IsSameAs(report_.drive, hours)) {
        report_.failure = drive.Text();
        Finish(End::OtherDrive);
        return false;
    }
    for (WrittenRow &row : report_.rows)
        if (now.Knows(row.value.param))
            row.rawBefore = now.Value(row.value.param);
    if (!isResumed_)
        return true;
    for (int p = 0; p <= now.LastParam(); ++p)
        if (!RowOf(p) && IsSteady(p, now) && IsSteady(p, before_) && now.Value(p) != before_.Value(p))
            report_.changed.push_back(p);
    if (!report_.changed.empty() && !acceptsChanged_) {
        Finish(End::Changed);
        return false;
    }
    for (WrittenRow &row : report_.rows) {
        if (row.arrival == Arrival::Given || row.arrival == Arrival::Refused)
            continue;
        // A drive that was switched off meanwhile has lost what was not in its memory.
        const std::int32_t rawFound = now.Value(row.value.param);
        row.arrival = rawFound == row.value.rawValue ? Arrival::Verified : Arrival::NotSent;
        row.rawFound.reset();
        if (row.arrival == Arrival::Verified)
            row.rawFound = rawFound;
    }
    return true;
}

void VerifiedWrite::BeginWriting()
{
    phase_ = Phase::Writing;
    doneBefore_ += table_.LastParam + 1;
    std::vector<ParamValue> values;
    for (const WrittenRow &row : report_.rows)
        if (row.arrival == Arrival::NotSent)
            values.push_back(row.value);
    allInPhase_ = int(values.size());
    Q_EMIT WritingBegins();
    link_.StartStore(std::move(values));
}

void VerifiedWrite::BeginReadingBack()
{
    phase_ = Phase::ReadingBack;
    doneBefore_ += int(report_.rows.size());
    fetched_.clear();
    std::set<int> params;
    for (const int p : sent_)
        if (RowOf(p)->arrival != Arrival::Given)
            params.insert(p);
    allInPhase_ = int(params.size());
    link_.StartFetch(params);
}

void VerifiedWrite::TakeReadBack(const ScanResult &result)
{
    using End = WriteReport::End;
    // What was read before the line broke, or out of step, proves nothing.
    if (result.end == ScanResult::End::Complete && !result.isInDoubt) {
        std::map<int, std::int32_t> values;
        for (int p = 0; p <= before_.LastParam(); ++p)
            values[p] = before_.Value(p);
        for (const auto &[p, rawFound] : fetched_)
            values[p] = rawFound;
        const ParameterSet after = SetOfDrive(values, table_, {});
        for (const auto &[p, rawFound] : fetched_) {
            WrittenRow *row = RowOf(p);
            if (!row || result.missing.contains(p))
                continue;
            row->rawFound = rawFound;
            if (rawFound == row->value.rawValue) {
                row->arrival = Arrival::Verified;
            } else if (row->arrival != Arrival::Refused) {
                row->arrival = Arrival::Differs;
                row->drivenBy = DrivenBy(p, after);
            }
        }
    }
    FollowInTable();
    if (result.end == ScanResult::End::LinkLost)
        Finish(End::LinkLost);
    else if (result.end == ScanResult::End::Cancelled)
        Finish(End::Cancelled);
    else
        Finish(endOfWriting_);
}

void VerifiedWrite::TakeIntoTable(int p, std::int32_t rawValue)
{
    // An edit that waits to be sent is newer.
    if (table_[p].WriteFlag == WriteState::Queued)
        return;
    table_.Row(p).WriteFlag = WriteState::None;
    table_.SetValue(p, rawValue, ChangeCause::Transfer);
}

void VerifiedWrite::FollowInTable()
{
    for (const WrittenRow &row : report_.rows)
        if (row.arrival == Arrival::Verified && LeadsOthers(row.value.param, table_))
            Guarded([&] { table_.RefreshDependentParams(row.value.param); });
    for (const WrittenRow &row : report_.rows)
        if (row.rawFound)
            TakeIntoTable(row.value.param, *row.rawFound);
}

void VerifiedWrite::Finish(WriteReport::End end)
{
    phase_ = Phase::Idle;
    report_.end = end;
    Q_EMIT Finished();
}

} // namespace quorvik
