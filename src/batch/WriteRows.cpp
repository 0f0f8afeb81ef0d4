#include "batch/WriteRows.h"

#include "batch/BatchRun.h"
#include "model/ShownText.h"

namespace quorvik
{

namespace
{

/** What became of a value, as scripts know it. */
QString ArrivalWord(Arrival arrival)
{
    switch (arrival) {
    case Arrival::NotSent:
        return QStringLiteral("not_sent");
    case Arrival::Sent:
        return QStringLiteral("sent");
    case Arrival::Refused:
        return QStringLiteral("refused");
    case Arrival::Verified:
        return QStringLiteral("verified");
    case Arrival::Differs:
        return QStringLiteral("differs");
    case Arrival::Given:
        break;
    }
    return QStringLiteral("given");
}

QVariant Shown(const std::optional<std::int32_t> &raw, std::int32_t attributes)
{
    return raw ? QVariant(ShownText(*raw, attributes)) : QVariant();
}

} // namespace

void AddSaveOption(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("save"),
                      QStringLiteral("Has the drive save its parameters in its memory afterwards.")});
}

void PrintReport(BatchRun &run, bool onlyNews)
{
    const WriteReport &report = run.Eng().safeWrites.Report();
    const ParameterTable &table = run.Eng().table;
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    QList<OutputColumn> columns{{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                                {QStringLiteral("name"), QStringLiteral("Name"), 28},
                                {QStringLiteral("before"), QStringLiteral("Before"), 14, true},
                                {QStringLiteral("text"), QStringLiteral("Written"), 14, true}};
    if (!isText)
        columns << OutputColumn{QStringLiteral("raw"), QStringLiteral("Raw")}
                << OutputColumn{QStringLiteral("raw_before"), QStringLiteral("Raw before")}
                << OutputColumn{QStringLiteral("raw_found"), QStringLiteral("Raw found")}
                << OutputColumn{QStringLiteral("result"), QStringLiteral("Result")};
    columns << OutputColumn{QStringLiteral("what"), QStringLiteral("Result")};
    run.Output().Begin(QStringLiteral("write"), columns);
    const auto number = [](const std::optional<std::int32_t> &raw) {
        return raw ? QVariant(*raw) : QVariant();
    };
    for (const WrittenRow &row : report.rows) {
        const int p = row.value.param;
        // Of a whole set people want to see what is another value now, or has not arrived.
        if (isText && onlyNews && row.arrival == Arrival::Verified && row.rawBefore == row.value.rawValue)
            continue;
        const bool isInTable = p <= table.LastParam;
        const std::int32_t attributes = isInTable ? table[p].Attributes : 0;
        QVariantList fields{p, isInTable ? QVariant(table[p].Name) : QVariant(),
                            Shown(row.rawBefore, attributes), ShownText(row.value.rawValue, attributes)};
        if (!isText)
            fields << row.value.rawValue << number(row.rawBefore) << number(row.rawFound)
                   << ArrivalWord(row.arrival);
        run.Output().Row(fields << (isInTable ? WriteReport::ArrivalText(row, table)
                                              : QStringLiteral("The drive has no such parameter")));
    }
    if (!report.backupPath.isEmpty())
        run.Output().Say(QStringLiteral("The drive's set of before: %1").arg(report.backupPath));
    run.Output().Say(report.Summary() + u'.');
}

ExitCode SaveWhereWanted(BatchRun &run, ExitCode code)
{
    if (!run.Options().isSet(QStringLiteral("save")) ||
        (code != ExitCode::Done && code != ExitCode::Differs) || run.IsInterrupted())
        return code;
    const OperationResult saved = run.Eng().drive.SaveInMemory();
    if (saved.IsDone()) {
        run.Output().Say(QStringLiteral("The drive has saved its parameters in its memory."));
        return code;
    }
    return saved.outcome == Outcome::LinkLost ? ExitCode::NoLink : ExitCode::Differs;
}

} // namespace quorvik
