#include "batch/BatchRun.h"
#include "batch/Verbs.h"
#include "settings/Conversion.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <map>

namespace quorvik
{

namespace
{

QString Force()
{
    return QStringLiteral("force");
}

QString Recursive()
{
    return QStringLiteral("recursive");
}

QString ResultText(ConversionResult result)
{
    switch (result) {
    case ConversionResult::Converted:
        return QStringLiteral("converted");
    case ConversionResult::LeftAlone:
        return QStringLiteral("left alone");
    case ConversionResult::Failed:
        break;
    }
    return QStringLiteral("failed");
}

/** Null where there is nothing to say. */
QVariant TextOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

void Print(BatchOutput &output, const Conversion &conversion)
{
    output.Row({conversion.from, ResultText(conversion.result),
                TextOrNull(conversion.result == ConversionResult::Converted ? conversion.to : QString()),
                TextOrNull(conversion.sentence)});
}

ExitCode ConvertFolder(BatchRun &run, const QString &from, const QString &to)
{
    const std::vector<Conversion> plan = PlanConversions(from, to, run.Options().isSet(Recursive()));
    const bool overwrites = run.Options().isSet(Force());
    std::map<ConversionResult, int> counts;
    int done = 0;
    for (const Conversion &planned : plan) {
        // Lets a Ctrl+C in, which ends the run between two files.
        QCoreApplication::processEvents();
        if (run.IsInterrupted()) {
            run.Output().EndProgress();
            run.Output().Complain(QStringLiteral("Interrupted before \"%1\": %2 of %3 files were done.")
                                      .arg(planned.from)
                                      .arg(done)
                                      .arg(plan.size()));
            return ExitCode::Interrupted;
        }
        run.Output().ShowProgress(QStringLiteral("File %1 of %2").arg(++done).arg(plan.size()));
        const Conversion conversion =
            planned.to.isEmpty() ? planned : ConvertSettings(planned.from, planned.to, overwrites);
        ++counts[conversion.result];
        run.Output().EndProgress();
        Print(run.Output(), conversion);
    }
    run.Output().Say(QStringLiteral("%1 converted, %2 left alone, %3 failed.")
                         .arg(counts[ConversionResult::Converted])
                         .arg(counts[ConversionResult::LeftAlone])
                         .arg(counts[ConversionResult::Failed]));
    return counts[ConversionResult::Failed] == 0 ? ExitCode::Done : ExitCode::Differs;
}

} // namespace

void AddConvertOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {Force(), QStringLiteral("Replaces files that are there already; older files stay as they are.")},
        {{QStringLiteral("r"), Recursive()}, QStringLiteral("Takes the files of folders within, too.")},
    });
}

ExitCode RunConvert(BatchRun &run)
{
    const QStringList arguments = run.Arguments();
    if (arguments.size() != 2)
        return run.UsageFailure(QStringLiteral("convert needs an older file and a new one, or two folders."));
    const QFileInfo from(arguments[0]);
    const QFileInfo to(arguments[1]);
    if (!from.exists())
        return run.UsageFailure(QStringLiteral("There is no file or folder \"%1\".").arg(arguments[0]));
    if (from.isDir() && to.exists() && !to.isDir())
        return run.UsageFailure(QStringLiteral("\"%1\" is not a folder.").arg(arguments[1]));
    if (!from.isDir() && to.isDir())
        return run.UsageFailure(QStringLiteral("\"%1\" is a folder: name the new file.").arg(arguments[1]));
    if (!from.isDir() && run.Options().isSet(Recursive()))
        return run.UsageFailure(QStringLiteral("--recursive is for folders."));
    run.Output().Begin(QStringLiteral("conversion"),
                       {{QStringLiteral("file"), QStringLiteral("File"), 36},
                        {QStringLiteral("result"), QStringLiteral("Result"), 10},
                        {QStringLiteral("to"), QStringLiteral("New file"), 36},
                        {QStringLiteral("reason"), QStringLiteral("Reason")}});
    if (from.isDir())
        return ConvertFolder(run, arguments[0], arguments[1]);
    const Conversion conversion = ConvertSettings(arguments[0], arguments[1], run.Options().isSet(Force()));
    Print(run.Output(), conversion);
    return conversion.result == ConversionResult::Converted ? ExitCode::Done : ExitCode::File;
}

} // namespace quorvik
