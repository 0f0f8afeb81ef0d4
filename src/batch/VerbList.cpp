#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/NamedSet.h"
#include "batch/Verbs.h"
#include "model/ShownText.h"

namespace quorvik
{

void AddListOptions(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("changed"), QStringLiteral("Prints what differs from the factory value only.")});
}

ExitCode RunList(BatchRun &run)
{
    if (run.Arguments().size() != 1)
        return run.UsageFailure(QStringLiteral("Name one set: a settings file, \"drive\" or \"factory\"."));
    ParameterSet set;
    const ExitCode code = SetNamed(run, run.Arguments().front(), set);
    if (code != ExitCode::Done && code != ExitCode::Differs)
        return code;
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    QList<OutputColumn> columns{{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                                {QStringLiteral("name"), QStringLiteral("Name"), 28},
                                {QStringLiteral("preset"), QStringLiteral("Preset"), 16, true},
                                {QStringLiteral("text"), QStringLiteral("Value"), 16, true}};
    if (!isText)
        columns << OutputColumn{QStringLiteral("raw_preset"), QStringLiteral("Raw preset")}
                << OutputColumn{QStringLiteral("raw"), QStringLiteral("Raw")}
                << OutputColumn{QStringLiteral("changed"), QStringLiteral("Changed")};
    run.Output().Begin(QStringLiteral("listed"), columns);
    for (int p = 0; p <= set.LastParam(); ++p) {
        const ParamRecord &record = set.records[p];
        const bool isChanged =
            (record.Attributes & Attr::ReadOnly) == 0 && set.Knows(p) && record.Value != record.Preset;
        if (run.Options().isSet(QStringLiteral("changed")) && !isChanged)
            continue;
        const QVariant shown = ShownValue(set, p);
        QVariantList fields{p, record.Name, ShownText(record.Preset, record.Attributes),
                            shown.isNull() && isText ? QVariant(QStringLiteral("not read")) : shown};
        if (!isText)
            fields << record.Preset << RawValue(set, p) << (set.Knows(p) ? QVariant(isChanged) : QVariant());
        run.Output().Row(fields);
    }
    return code;
}

} // namespace quorvik
