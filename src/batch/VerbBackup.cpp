#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/Verbs.h"
#include "compare/DriveSet.h"

#include <QDateTime>
#include <QFileInfo>

namespace quorvik
{

void AddBackupOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("force"), QStringLiteral("Replaces a file that is there already.")});
}

ExitCode RunBackup(BatchRun &run)
{
    if (run.Arguments().size() != 1)
        return run.UsageFailure(QStringLiteral("Name one file for the backup."));
    const QString path = run.Arguments().front();
    Engines &engines = run.Eng();
    if (const QString refusal = engines.saving.RefusalOf(path); !refusal.isEmpty())
        return run.UsageFailure(refusal);
    if (QFileInfo::exists(path) && !run.Options().isSet(QStringLiteral("force"))) {
        run.Output().Complain(QStringLiteral("%1 is there already. --force replaces it.").arg(path));
        return ExitCode::Guard;
    }
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    ParameterSet set;
    if (const ExitCode code = ReadWholeDrive(run, set); code != ExitCode::Done) {
        run.Output().Complain(QStringLiteral("No file was written."));
        return code;
    }
    const DriveIdentity drive =
        DriveIdentity::Of([&set](int p) { return set.Value(p); }, engines.table.LastParam);
    ParameterTable table = TableOf(set, engines.table);
    Document document(table);
    document.Notes =
        QStringLiteral("The set of %1, read on %2.")
            .arg(drive.Text(),
                 QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd 'at' HH:mm:ss")));
    if (const QString failure = SettingsFile(table, document).Save(path); !failure.isEmpty()) {
        run.Output().Complain(failure);
        return ExitCode::File;
    }
    run.Output().Begin(QStringLiteral("backup"),
                       {{QStringLiteral("drive"), QStringLiteral("Drive"), 70},
                        {QStringLiteral("parameters"), QStringLiteral("Parameters"), 10, true},
                        {QStringLiteral("file"), QStringLiteral("File")}});
    run.Output().Row({drive.Text(), set.LastParam() + 1, path});
    return ExitCode::Done;
}

} // namespace quorvik
