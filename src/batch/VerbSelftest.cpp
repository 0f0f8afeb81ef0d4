#include "batch/BatchRun.h"
#include "batch/Verbs.h"
#include "compare/Differences.h"
#include "model/ParameterNumbers.h"
#include "model/ShownText.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace quorvik
{

namespace
{

constexpr int WaitMs = 10000;

/** The simulated drive as a process, in a folder of its own. It ends with its standard input, so it is gone
 * also where this program is killed. */
class OwnDrive
{
public:
    OwnDrive(const QString &program, const QString &link, const QString &presets)
    {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(program, {QStringLiteral("--frozen"), QStringLiteral("--end-with-input"),
                                 QStringLiteral("--link"), link, QStringLiteral("--presets"), presets});
        QElapsedTimer waiting;
        waiting.start();
        while (!process_.canReadLine() && waiting.elapsed() < WaitMs && process_.waitForReadyRead(WaitMs))
            ;
        isReady_ = process_.readLine().startsWith("ready");
    }
    ~OwnDrive()
    {
        process_.closeWriteChannel();
        if (process_.state() != QProcess::NotRunning && !process_.waitForFinished(WaitMs)) {
            process_.kill();
            process_.waitForFinished(WaitMs);
        }
    }
    OwnDrive(const OwnDrive &) = delete;
    OwnDrive &operator=(const OwnDrive &) = delete;

    bool IsReady() const { return isReady_; }

private:
    QProcess process_;
    bool isReady_ = false;
};

/** Settings that are not the same on both sides, or not known on one. */
int DifferentSettings(const ParameterSet &a, const ParameterSet &b)
{
    const std::array<const ParameterSet *, 2> sets{&a, &b};
    const std::vector<DifferenceRow> rows = Compare(sets);
    return int(std::ranges::count_if(rows, [](const DifferenceRow &row) {
        return row.kind == RowKind::Setting && (row.differs || row.isIncomplete);
    }));
}

/** The steps one after the other, each with the engines that a user's command would take. */
class SelfTest
{
public:
    SelfTest(BatchRun &run, const QString &folder)
        : run_(run)
        , folder_(folder)
        , settings_(folder + QStringLiteral("/Quorvik.ini"))
        , engines_({.settings = settings_,
                    .programFolder = run.Places().programFolder,
                    .dataFolder = folder,
                    .keepsRecoveryCopy = false},
                   run.TheAsker())
    {
    }

    ExitCode Run(const QString &program)
    {
        const QString link = folder_ + QStringLiteral("/drive");
        const OwnDrive drive(program, link, run_.Places().programFolder + QStringLiteral("/Presets.fil"));
        if (!Step(QStringLiteral("start"), drive.IsReady(), program))
            return ExitCode::Differs;
        const bool isGood = GoesOnLine(link) && ReadsAll() && Writes() && Restores() && Compares();
        engines_.document.DriveModified = false;
        engines_.drive.GoOffLine(OffLineReason::User);
        if (run_.IsInterrupted())
            return ExitCode::Interrupted;
        return isGood ? ExitCode::Done : ExitCode::Differs;
    }

private:
    bool Step(const QString &name, bool isPassed, const QString &detail)
    {
        run_.Output().Row({name, isPassed, detail});
        return isPassed && !run_.IsInterrupted();
    }

    bool GoesOnLine(const QString &link)
    {
        const QString failure = engines_.InitGlobals(run_.Places().programFolder);
        if (!Step(QStringLiteral("factory table"), failure.isEmpty(), failure))
            return false;
        engines_.link.MSComm1.SetCommPort(0);
        engines_.link.MSComm1.DeviceOf = [link](int) { return link; };
        return Step(QStringLiteral("connect"), engines_.drive.GoOnLineAside().IsDone(), link);
    }

    bool ReadsAll()
    {
        const OperationResult result = engines_.snapshots.ReadDrive(before_);
        return Step(QStringLiteral("read"), result.IsDone(),
                    QStringLiteral("%1 parameters").arg(before_.LastParam() + 1));
    }

    bool Writes()
    {
        const ParamRecord &record = before_.records[Probe];
        const std::int32_t raw = record.Value < record.Max ? record.Value + 1 : record.Value - 1;
        const bool isDone = engines_.safeWrites.Write({{Probe, raw}}, before_).IsDone();
        const QString shown = ShownText(raw, record.Attributes);
        if (!Step(QStringLiteral("write and verify"), isDone && Holds(raw),
                  QStringLiteral("(%1) set to %2").arg(Probe).arg(shown)))
            return false;
        const QString &path = engines_.safeWrites.Report().backupPath;
        QString failure;
        backup_ = ParameterSet::FromFile(path, engines_.table, failure);
        return Step(QStringLiteral("backup"), failure.isEmpty() && DifferentSettings(before_, backup_) == 0,
                    failure.isEmpty() ? QDir(folder_).relativeFilePath(path) : failure);
    }

    bool Restores()
    {
        const std::int32_t raw = backup_.Value(Probe);
        const bool isDone = engines_.safeWrites.Write({{Probe, raw}}, backup_).IsDone();
        return Step(QStringLiteral("restore"), isDone && Holds(raw),
                    QStringLiteral("(%1) set to %2")
                        .arg(Probe)
                        .arg(ShownText(raw, backup_.records[Probe].Attributes)));
    }

    bool Compares()
    {
        ParameterSet after;
        const bool isRead = engines_.snapshots.ReadDrive(after).IsDone();
        const int count = DifferentSettings(before_, after);
        return Step(QStringLiteral("compare"), isRead && count == 0,
                    QStringLiteral("%1 settings differ").arg(count));
    }

    /** What the drive itself says, not what a write believed. */
    bool Holds(std::int32_t raw)
    {
        const std::map<int, std::int32_t> values = engines_.snapshots.ReadFresh({Probe});
        const auto found = values.find(Probe);
        return found != values.end() && found->second == raw;
    }

    static constexpr int Probe = Param::FwdAccelA; ///< nothing else hangs on it

    BatchRun &run_;
    QString folder_;
    SettingsStore settings_;
    Engines engines_;
    ParameterSet before_;
    ParameterSet backup_;
};

} // namespace

void AddSelftestOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("drive-program"),
                      QStringLiteral("The simulated drive's program; else sarvex-drive beside this one or in "
                                     "the PATH."),
                      QStringLiteral("file")});
}

ExitCode RunSelftest(BatchRun &run)
{
    if (!run.Arguments().isEmpty())
        return run.UsageFailure(QStringLiteral("selftest takes no arguments."));
    const QString name = QStringLiteral("sarvex-drive");
    QString program = run.Options().value(QStringLiteral("drive-program"));
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(name, {run.Places().programFolder});
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(name);
    if (program.isEmpty()) {
        run.Output().Complain(QStringLiteral("The simulated drive, sarvex-drive, is not installed."));
        return ExitCode::File;
    }
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        run.Output().Complain(folder.errorString());
        return ExitCode::File;
    }
    run.Output().Begin(QStringLiteral("selftest"), {{QStringLiteral("step"), QStringLiteral("Step"), 18},
                                                    {QStringLiteral("passed"), QStringLiteral("Passed"), 8},
                                                    {QStringLiteral("detail"), QStringLiteral("Detail")}});
    return SelfTest(run, folder.path()).Run(program);
}

} // namespace quorvik
