#include "operations/SafeWrites.h"

#include "model/Document.h"
#include "model/FullNames.h"
#include "model/ParameterTable.h"
#include "operations/DriveOperations.h"
#include "operations/Guards.h"
#include "operations/Snapshots.h"
#include "platform/Progress.h"
#include "platform/Waiting.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int WorkShare = 5; ///< in per cent: before so much is done, nobody can say how long it takes
constexpr int MostNamed = 8;

QString PhaseText(VerifiedWrite::Phase phase)
{
    switch (phase) {
    case VerifiedWrite::Phase::KeepingBackup:
        return QStringLiteral("Keeping the drive's set");
    case VerifiedWrite::Phase::Writing:
        return QStringLiteral("Writing");
    case VerifiedWrite::Phase::ReadingBack:
    case VerifiedWrite::Phase::Idle:
        break;
    }
    return QStringLiteral("Reading back");
}

/** "Writing: 86 of 273, about 2 s left". */
QString DoingText(const QString &counted, int done, int all, qint64 elapsedMs)
{
    QString text = counted;
    if (done * 100 >= all * WorkShare)
        text += QStringLiteral(", about %1 s left")
                    .arg(std::ceil(double(elapsedMs) * (all - done) / done / 1000.0), 0, 'f', 0);
    return text;
}

/** Whether the drive, and so the table, holds other values than were written, beside those that its inputs
 * set all the time. */
bool HoldsOthers(const WriteReport &report)
{
    return std::any_of(report.rows.begin(), report.rows.end(), [](const WrittenRow &row) {
        return row.rawFound && *row.rawFound != row.value.rawValue && row.drivenBy == 0;
    });
}

} // namespace

SafeWrites::SafeWrites(ParameterTable &table, Document &document, VerifiedWrite &writing,
                       DriveOperations &drive, Snapshots &snapshots, Guards &guards, Asker &asker)
    : table_(table)
    , document_(document)
    , writing_(writing)
    , drive_(drive)
    , snapshots_(snapshots)
    , guards_(guards)
    , asker_(asker)
{
}

OperationResult SafeWrites::EnsureOnLine()
{
    return table_.PortOpen() ? OperationResult{} : drive_.GoOnLineAside();
}

OperationResult SafeWrites::WriteOpenSet()
{
    // What the drive tells as soon as the link is up is not the set that is to be written.
    const ParameterSet set = ParameterSet::Of(table_, QStringLiteral("open set"));
    if (OperationResult online = EnsureOnLine(); !online.IsDone())
        return online;
    std::vector<ParamValue> values;
    for (int p = 0; p <= std::min<int>(table_.LastParam, set.LastParam()); ++p)
        if ((set.records[p].Attributes & Attr::ReadOnly) == 0 && !Param::IsClock(p) && !Param::IsCommand(p))
            values.push_back({p, set.Value(p)});
    return WriteGuarded(values, set, true, true);
}

OperationResult SafeWrites::Write(const std::vector<ParamValue> &values, const ParameterSet &from)
{
    return table_.PortOpen() ? WriteGuarded(values, from, false, false) : OperationResult{Outcome::Refused};
}

OperationResult SafeWrites::WriteWholeSet(const std::vector<ParamValue> &values, const ParameterSet &from)
{
    return table_.PortOpen() ? WriteGuarded(values, from, true, false) : OperationResult{Outcome::Refused};
}

OperationResult SafeWrites::WriteGuarded(const std::vector<ParamValue> &values, const ParameterSet &from,
                                         bool isWhole, bool isOpenSet)
{
    std::vector<ParamValue> chosen = values;
    if (guards_.Asking) {
        const std::map<int, std::int32_t> fresh = snapshots_.ReadFresh(Guards::KnownBeforeWriting());
        if (!table_.PortOpen())
            return {Outcome::LinkLost};
        const std::optional<std::set<int>> leftOut = guards_.BeforeWriting(values, from, fresh, isWhole);
        if (!leftOut)
            return {isWhole && Guards::Forbids(fresh) ? Outcome::Refused : Outcome::Cancelled};
        std::erase_if(chosen, [&leftOut](const ParamValue &value) { return leftOut->contains(value.param); });
    }
    isOpenSet_ = isOpenSet;
    return Run([&] { writing_.Begin(chosen); });
}

OperationResult SafeWrites::Resume()
{
    if (OperationResult online = EnsureOnLine(); !online.IsDone())
        return online;
    OperationResult result = Run([this] { writing_.Resume(false); });
    const WriteReport &report = Report();
    if (report.end != WriteReport::End::Changed)
        return result;
    const Question question{
        .text = QStringLiteral("Resume with this drive? It may be another one: settings that were not to be "
                               "written are other ones than when the write was begun."),
        .title = QStringLiteral("Resume Write"),
        .icon = MsgIcon::Exclamation,
        .explanation = FullNames(table_, report.changed, MostNamed, QStringLiteral("\r\n")),
        .choices = {{MsgAnswer::Yes, QStringLiteral("&Resume")}, {MsgAnswer::Cancel}},
        .safe = MsgAnswer::Cancel,
        .word = QStringLiteral("changed-drive")};
    if (asker_.Ask(question) != MsgAnswer::Yes)
        return {Outcome::Cancelled};
    if (!table_.PortOpen())
        return {Outcome::LinkLost};
    return Run([this] { writing_.Resume(true); });
}

OperationResult SafeWrites::RetryRefused()
{
    if (OperationResult online = EnsureOnLine(); !online.IsDone())
        return online;
    return Run([this] { writing_.RetryRefused(); });
}

OperationResult SafeWrites::Run(const std::function<void()> &begin)
{
    if (writing_.IsUnderWay())
        return {Outcome::Refused};
    Intent intent(table_, Origin::Compare, QStringLiteral("Write and verify"));
    Progress progress(QStringLiteral("Writing and Verifying"), int(WholeScan::Storing), 0);
    QElapsedTimer clock;
    clock.start();
    bool hasChangedTable = false;
    connect(&table_.Signals(), &TableSignals::Changed, &progress, [&](const ParamChange &change) {
        hasChangedTable = hasChangedTable || change.cause == ChangeCause::Transfer;
    });
    connect(&writing_, &VerifiedWrite::Progressed, &progress,
            [&](int done, int all, int inPhase, int allInPhase) {
                progress.SetSteps(all);
                progress.Advance(done);
                const QString counted = QStringLiteral("%1: %2 of %3")
                                            .arg(PhaseText(writing_.CurrentPhase()))
                                            .arg(inPhase)
                                            .arg(allInPhase);
                progress.Say(DoingText(counted, done, all, clock.elapsed()));
            });
    // At once: a line that breaks meanwhile warns of what the drive has not saved.
    connect(&writing_, &VerifiedWrite::Taken, &progress,
            [this](int p) { document_.DriveModified = p != Param::SaveParameters; });
    connect(&writing_, &VerifiedWrite::Finished, &progress, &Progress::End);
    connect(&progress, &Progress::CancelWanted, &writing_, &VerifiedWrite::Cancel);
    begin();
    asker_.ShowProgress(progress);
    // After a Cancel, what was sent is still read back.
    PumpWhile([this] { return writing_.IsUnderWay(); });
    if (isOpenSet_ ? HoldsOthers(Report()) : hasChangedTable)
        document_.MarkFile(true);
    intent.Note(QStringLiteral("Write and verify: %1").arg(Report().Summary()));
    const WriteReport::End end = Report().end;
    // What was held so that nothing is put over the set has arrived, or stands in the report.
    if (isOpenSet_ && end == WriteReport::End::Complete)
        for (int p = 0; p <= table_.LastParam; ++p)
            if (table_[p].WriteFlag == WriteState::Held)
                table_.Row(p).WriteFlag = WriteState::None;
    if (end == WriteReport::End::NoBackup)
        asker_.MsgBox(
            QStringLiteral("Nothing was written: the drive's present set could not be kept.\r\n\r\n") +
                Report().failure,
            MsgButtons::Ok, MsgIcon::Exclamation, QStringLiteral("Write and Verify"));
    else if (end == WriteReport::End::OtherDrive)
        asker_.MsgBox(QStringLiteral("Nothing was written: this is not the drive with which the write was "
                                     "begun.\r\n\r\nBegun with: %1\r\nNow: %2")
                          .arg(Report().drive.Text(), Report().failure),
                      MsgButtons::Ok, MsgIcon::Exclamation, QStringLiteral("Resume Write"));
    Q_EMIT Reported();
    return ResultOfReport();
}

OperationResult SafeWrites::ResultOfReport() const
{
    const WriteReport &report = Report();
    OperationResult result;
    for (const WrittenRow &row : report.rows)
        if (row.arrival != Arrival::Verified && row.arrival != Arrival::Given)
            result.missing.push_back(row.value.param);
    std::sort(result.missing.begin(), result.missing.end());
    switch (report.end) {
    case WriteReport::End::Complete:
        result.outcome = result.missing.empty() ? Outcome::Done : Outcome::Partial;
        break;
    case WriteReport::End::Cancelled:
    case WriteReport::End::Changed:
        result.outcome = Outcome::Cancelled;
        break;
    case WriteReport::End::LinkLost:
        result.outcome = Outcome::LinkLost;
        break;
    case WriteReport::End::NoBackup:
    case WriteReport::End::OtherDrive:
        result.outcome = Outcome::Refused;
        break;
    }
    return result;
}

} // namespace quorvik
