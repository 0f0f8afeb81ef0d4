#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/Verbs.h"
#include "report/CommissioningPlace.h"
#include "report/MakeReport.h"
#include "report/PdfProgram.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>

namespace quorvik
{

namespace
{

/** The options that name a field of the place. */
struct PlaceOption {
    QString name;
    QString description;
    QString CommissioningPlace::*text;
};

const std::array<PlaceOption, 4> &PlaceOptions()
{
    static const std::array<PlaceOption, 4> options = {
        {{QStringLiteral("site"), QStringLiteral("Where the machine stands; else as the set's notes say."),
          &CommissioningPlace::site},
         {QStringLiteral("machine"), QStringLiteral("Which machine it is; else as the notes say."),
          &CommissioningPlace::machine},
         {QStringLiteral("customer"), QStringLiteral("Whose machine it is; else as the notes say."),
          &CommissioningPlace::customer},
         {QStringLiteral("person"), QStringLiteral("Who has commissioned it; else as the notes say."),
          &CommissioningPlace::person}}};
    return options;
}

QString Text(BatchRun &run, const char *option)
{
    return run.Options().value(QString::fromLatin1(option));
}

bool IsSet(BatchRun &run, const char *option)
{
    return run.Options().isSet(QString::fromLatin1(option));
}

/** What the report is to be, and where it goes. */
struct Wanted {
    ReportChoices choices = {};
    PdfWish pdf = {}; ///< its path is empty for no file
    bool isWithDrive = false;
};

/** @return why an option means nothing; empty where all do. */
QString Read(BatchRun &run, Wanted &wanted)
{
    if (!run.Arguments().isEmpty())
        return QStringLiteral("report takes options only.");
    const bool isJson = run.Output().CurrentFormat() == BatchOutput::Format::Json;
    wanted.pdf.path = Text(run, "out");
    if (wanted.pdf.path.isEmpty() && !isJson)
        return QStringLiteral("Name the PDF with --out, or print the report's content with --json.");
    wanted.pdf.paper = IsSet(run, "paper") ? Text(run, "paper").toLower() : UsualPaperName();
    if (wanted.pdf.paper != QLatin1String("a4") && wanted.pdf.paper != QLatin1String("letter"))
        return QStringLiteral("--paper takes a4 or letter.");
    wanted.pdf.presets = run.Places().programFolder + QStringLiteral("/Presets.fil");
    wanted.pdf.isUnwanted = [&run] { return run.IsInterrupted(); };
    wanted.choices.journalDay =
        IsSet(run, "day") ? QDate::fromString(Text(run, "day"), Qt::ISODate) : QDate::currentDate();
    if (!wanted.choices.journalDay.isValid())
        return QStringLiteral("\"%1\" is no day such as 2026-11-22.").arg(Text(run, "day"));
    wanted.choices.recordings = run.Options().values(QStringLiteral("recording"));
    // A file alone is a report of the file: a port that is set up for the windows asks no drive for it.
    wanted.isWithDrive = !IsSet(run, "file") || IsSet(run, "port");
    return {};
}

ExitCode ReadFile(BatchRun &run, ReportSource &source)
{
    const QString path = Text(run, "file");
    QString failure;
    source.set = ReportedSet(ParameterSet::FromFile(path, run.Eng().table, failure), false);
    StoredSet stored;
    if (failure.isEmpty())
        failure = ReadStoredSet(path, stored);
    if (!failure.isEmpty()) {
        run.Output().Complain(failure);
        return ExitCode::File;
    }
    const QFileInfo file(path);
    source.setName = file.fileName();
    source.setPath = file.absoluteFilePath();
    source.notes = stored.notes;
    source.set.name = QStringLiteral("file ") + source.setName;
    return ExitCode::Done;
}

/** Reads the drive, and holds the file's set against it or takes the drive's as the set. */
ExitCode ReadDrive(BatchRun &run, bool hasFile, ReportSource &source, DriveVerification &verification)
{
    ExitCode code = run.GoOnLine();
    if (code != ExitCode::Done)
        return code;
    ParameterSet drive;
    code = ReadWholeDrive(run, drive);
    const QDateTime readAt = QDateTime::currentDateTime();
    run.GoOffLine();
    if (code != ExitCode::Done && (code != ExitCode::Differs || !IdentityIn(drive)))
        return code;
    drive.name = QStringLiteral("drive");
    if (hasFile) {
        verification = VerifySet(source.set, drive, readAt);
    } else {
        source.setName = QStringLiteral("the drive's own settings");
        source.setPath = Document::Unnamed();
        source.set = drive;
        verification = VerifyReading(drive, readAt);
    }
    return ExitCode::Done;
}

void Print(BatchRun &run, const CommissioningReport &report, const QString &path)
{
    const QVariant file = path.isEmpty() ? QVariant() : QVariant(path);
    QList<OutputColumn> columns{{QStringLiteral("file"), QStringLiteral("File"), 30}};
    QVariantList fields{file};
    if (run.Output().CurrentFormat() == BatchOutput::Format::Json) {
        const QJsonObject object = QJsonDocument::fromJson(ToJson(report)).object();
        for (auto member = object.begin(); member != object.end(); ++member) {
            columns << OutputColumn{member.key(), member.key()};
            fields << member.value().toVariant();
        }
    } else {
        columns << OutputColumn{QStringLiteral("verification"), QStringLiteral("Verification"), 14}
                << OutputColumn{QStringLiteral("verification_text"), QStringLiteral("Text")};
        fields << WordOf(report.verification) << report.verificationText;
    }
    run.Output().Begin(QStringLiteral("report"), columns);
    run.Output().Row(fields);
}

/** Whether all recordings could be read; tells why not. */
bool HasRecordings(BatchRun &run, const CommissioningReport &report)
{
    bool hasAll = true;
    for (const CommissioningRecording &recording : report.recordings)
        if (recording.figures.heads.isEmpty()) {
            run.Output().Complain(recording.figures.remark);
            hasAll = false;
        }
    return hasAll;
}

} // namespace

void AddReportOptions(QCommandLineParser &parser)
{
    parser.addOptions(
        {{QStringLiteral("file"),
          QStringLiteral("Reports this settings file; with --port compared with the drive there. Without it "
                         "the drive is reported."),
          QStringLiteral("file")},
         {QStringLiteral("out"), QStringLiteral("The PDF that is written."), QStringLiteral("file")},
         {QStringLiteral("force"), QStringLiteral("Replaces a PDF that is there already.")},
         {QStringLiteral("paper"), QStringLiteral("a4 or letter; the country's usual one unless told."),
          QStringLiteral("size")},
         {QStringLiteral("day"),
          QStringLiteral("The day whose changes are listed, such as 2026-11-22; today unless told."),
          QStringLiteral("day")},
         {QStringLiteral("recording"),
          QStringLiteral("A recording that is shown, with the figures of its steps; may be given again."),
          QStringLiteral("file")}});
    for (const PlaceOption &option : PlaceOptions())
        parser.addOption({option.name, option.description, QStringLiteral("text")});
}

ExitCode RunReport(BatchRun &run)
{
    Wanted wanted;
    if (const QString failure = Read(run, wanted); !failure.isEmpty())
        return run.UsageFailure(failure);
    const QString &path = wanted.pdf.path;
    if (!path.isEmpty() && QFileInfo::exists(path) && !IsSet(run, "force")) {
        run.Output().Complain(QStringLiteral("%1 is there already. --force replaces it.").arg(path));
        return ExitCode::Guard;
    }
    const bool hasFile = IsSet(run, "file");
    ReportSource source;
    DriveVerification verification = NotVerified(QStringLiteral(
        "No drive was asked: the settings of this report are those of a file, and were not compared."));
    ExitCode code = hasFile ? ReadFile(run, source) : ExitCode::Done;
    if (code == ExitCode::Done && wanted.isWithDrive)
        code = ReadDrive(run, hasFile, source, verification);
    if (code != ExitCode::Done) {
        run.Output().Complain(QStringLiteral("No report was made."));
        return code;
    }
    wanted.choices.place = PlaceIn(source.notes);
    for (const PlaceOption &option : PlaceOptions())
        if (run.Options().isSet(option.name))
            wanted.choices.place.*option.text = run.Options().value(option.name);
    const CommissioningReport report = MakeReport(run.Eng(), std::move(source), wanted.choices, verification);
    if (!HasRecordings(run, report))
        return ExitCode::File;
    if (!path.isEmpty())
        if (const QString failure = WritePdf(report, wanted.pdf); !failure.isEmpty()) {
            run.Output().Complain(failure);
            return run.IsInterrupted() ? ExitCode::Interrupted : ExitCode::File;
        }
    Print(run, report, path);
    return wanted.isWithDrive && report.verification != Verification::Same ? ExitCode::Differs
                                                                           : ExitCode::Done;
}

} // namespace quorvik
