#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/Verbs.h"
#include "batch/WritePlan.h"
#include "batch/WriteRows.h"
#include "compare/Differences.h"
#include "compare/WriteReportFile.h"
#include "platform/Guard.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Where a write to this port is kept until it is through. */
QString UnfinishedPath(const BatchRun &run)
{
    return run.Places().dataFolder + QStringLiteral("/unfinished/") +
           QString::fromLatin1(QUrl::toPercentEncoding(run.PortDevice())) + QStringLiteral(".json");
}

/** Keeps the write that runs on disk while there is something of it to be gone on with. */
class UnfinishedKeeper : public QObject
{
public:
    UnfinishedKeeper(BatchRun &run, const QString &what)
        : run_(run)
        , path_(UnfinishedPath(run))
        , what_(what)
    {
        // Before the first value leaves: a computer that loses its power says nothing afterwards.
        On(&run.Eng().verifiedWrite, &VerifiedWrite::WritingBegins, this, [this] { Save(); });
    }

    /** The write is over: keeps it, or lets go of it. */
    void Settle()
    {
        const WriteReport &report = run_.Eng().safeWrites.Report();
        if (report.end == WriteReport::End::Complete)
            QFile::remove(path_);
        else if (report.CanResume() && !report.backupPath.isEmpty() &&
                 report.end != WriteReport::End::OtherDrive && report.end != WriteReport::End::Changed)
            Tell(report);
        else if (report.Count(Arrival::NotSent) == int(report.rows.size()))
            run_.Output().Complain(QStringLiteral("Nothing was written."));
    }

private:
    bool Save()
    {
        const QString failure = SaveWrite(path_, {what_, run_.Eng().verifiedWrite.Unfinished()});
        if (!failure.isEmpty())
            run_.Output().Complain(failure);
        return failure.isEmpty();
    }

    void Tell(const WriteReport &report)
    {
        const auto isSent = [](const WrittenRow &row) { return row.arrival != Arrival::NotSent; };
        const auto sent = std::ranges::count_if(report.rows, isSent);
        QString sentence = QStringLiteral("Ended before all was written: %1 of %2 were sent")
                               .arg(sent)
                               .arg(report.rows.size());
        const auto last = std::find_if(report.rows.rbegin(), report.rows.rend(), isSent);
        if (last != report.rows.rend())
            sentence += QStringLiteral(", the last one %1").arg(run_.Eng().table.FullName(last->value.param));
        run_.Output().Complain(sentence + u'.');
        if (Save())
            run_.Output().Complain(
                QStringLiteral("The same verb with --resume and --yes at the same port goes on with it."));
    }

    BatchRun &run_;
    QString path_;
    QString what_;
};

ExitCode EndOfWrite(BatchRun &run, UnfinishedKeeper &keeper, const OperationResult &result)
{
    const ExitCode code = run.CodeOf(result);
    if (code == ExitCode::Guard) {
        run.Output().Complain(QStringLiteral("Nothing was written."));
        return code;
    }
    PrintReport(run, true);
    keeper.Settle();
    if (run.Eng().safeWrites.Report().end == WriteReport::End::OtherDrive)
        return ExitCode::Guard;
    return SaveWhereWanted(run, code);
}

bool IsSameDrive(const ParameterSet &set, const ParameterSet &drive)
{
    // How long ago the set was read is not known; the meter must not have gone back.
    constexpr double anyHours = 1e9;
    if (set.LastParam() < Param::OperatingHours)
        return false;
    const auto identity = [](const ParameterSet &of) {
        return DriveIdentity::Of([&of](int p) { return of.Value(p); }, of.LastParam());
    };
    return identity(drive).IsSameAs(identity(set), anyHours);
}

Question AskForOtherDrive(const ParameterSet &set, const ParameterSet &drive)
{
    return {.text = QStringLiteral("Restore a set that is not known to be this drive's?"),
            .title = QStringLiteral("Restore"),
            .explanation = QStringLiteral("The set: %1\nThe drive: %2").arg(ModelLine(set), ModelLine(drive)),
            .choices = {{MsgAnswer::Yes, QStringLiteral("Restore")}, {MsgAnswer::Cancel}},
            .safe = MsgAnswer::Cancel,
            .word = QStringLiteral("other-drive")};
}

ExitCode Resume(BatchRun &run, const QString &given)
{
    StoredWrite stored;
    if (const QString failure = LoadWrite(UnfinishedPath(run), stored); !failure.isEmpty()) {
        run.Output().Complain(QStringLiteral("There is nothing to resume at %1.").arg(run.PortDevice()));
        run.Output().Complain(failure);
        return ExitCode::File;
    }
    if (!given.isEmpty() && QFileInfo(given).absoluteFilePath() != stored.what)
        return run.UsageFailure(
            QStringLiteral("The write to be resumed is that of %1, not of %2.").arg(stored.what, given));
    Engines &engines = run.Eng();
    engines.verifiedWrite.TakeUp(stored.write);
    if (!run.Options().isSet(QStringLiteral("yes"))) {
        PrintReport(run);
        run.Output().Say(QStringLiteral("Of %1. Nothing was written: --yes goes on.").arg(stored.what));
        return ExitCode::Differs;
    }
    const std::map<int, std::int32_t> fresh = engines.snapshots.ReadFresh({Param::DriveState});
    if (!engines.link.PortOpen())
        return run.IsInterrupted() ? ExitCode::Interrupted : ExitCode::NoLink;
    if (fresh.empty() || Guards::Forbids(fresh)) {
        run.Output().Complain(QStringLiteral("Nothing was written, because the drive is not stopped."));
        return ExitCode::Guard;
    }
    UnfinishedKeeper keeper(run, stored.what);
    return EndOfWrite(run, keeper, engines.safeWrites.Resume());
}

ExitCode WriteSet(BatchRun &run, bool isRestore)
{
    const bool isResumed = run.Options().isSet(QStringLiteral("resume"));
    const QStringList arguments = run.Arguments();
    if (arguments.size() > 1 || (arguments.isEmpty() && !isResumed))
        return run.UsageFailure(QStringLiteral("Name one settings file."));
    const QString path = arguments.value(0);
    Engines &engines = run.Eng();
    ParameterSet set;
    if (!isResumed) {
        QString failure;
        set = ParameterSet::FromFile(path, engines.table, failure);
        if (!failure.isEmpty()) {
            run.Output().Complain(failure);
            return ExitCode::File;
        }
        set.name = path;
    }
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    if (isResumed)
        return Resume(run, path);
    ParameterSet drive;
    if (const ExitCode code = ReadWholeDrive(run, drive); code != ExitCode::Done)
        return code;
    const SetPlan plan = PlanOf(set, drive, engines.table);
    const bool isOtherDrive = isRestore && !IsSameDrive(set, drive);
    if (!run.Options().isSet(QStringLiteral("yes"))) {
        const ParameterSet *const both[] = {&set, &drive};
        for (const QString &sentence : Mismatches(both))
            run.Output().Complain(sentence);
        if (isOtherDrive)
            run.Output().Complain(AskForOtherDrive(set, drive).WholeText());
        PrintPlan(run, plan, set, drive);
        run.Output().Say(plan.IsEmpty() ? QStringLiteral("There is nothing to do.")
                                        : QStringLiteral("Nothing was written: --yes does it."));
        return plan.IsEmpty() ? ExitCode::Done : ExitCode::Differs;
    }
    if (isOtherDrive && run.TheAsker().Ask(AskForOtherDrive(set, drive)) != MsgAnswer::Yes) {
        run.Output().Complain(QStringLiteral("Nothing was written."));
        return ExitCode::Guard;
    }
    for (const RefusedRow &row : plan.leftOut)
        run.Output().Complain(QStringLiteral("Left out: (%1) %2 %3")
                                  .arg(row.value.param)
                                  .arg(NameIn(set, row.value.param).toString(), row.reason));
    const ExitCode best = plan.leftOut.empty() ? ExitCode::Done : ExitCode::Differs;
    if (plan.differing == 0) {
        run.Output().Say(QStringLiteral("The drive holds the set already."));
        return SaveWhereWanted(run, best);
    }
    UnfinishedKeeper keeper(run, QFileInfo(path).absoluteFilePath());
    const ExitCode code = EndOfWrite(run, keeper, engines.safeWrites.WriteWholeSet(plan.values, set));
    return code == ExitCode::Done ? best : code;
}

} // namespace

void AddWriteSetOptions(QCommandLineParser &parser)
{
    AddSaveOption(parser);
    parser.addOptions(
        {{QStringLiteral("yes"), QStringLiteral("Does it; else what would be done is printed.")},
         {QStringLiteral("resume"),
          QStringLiteral(
              "Goes on with the write at this port that ended early, with the same drive only.")}});
}

ExitCode RunRestore(BatchRun &run)
{
    return WriteSet(run, true);
}

ExitCode RunWriteSet(BatchRun &run)
{
    return WriteSet(run, false);
}

} // namespace quorvik
