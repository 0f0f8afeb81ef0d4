#include "batch/BatchRun.h"
#include "batch/NamedSet.h"
#include "batch/Verbs.h"
#include "compare/Differences.h"

#include <algorithm>

namespace quorvik
{

namespace
{

QVariant Number(const std::optional<std::int32_t> &raw)
{
    return raw ? QVariant(*raw) : QVariant();
}

QVariant Text(const SetValue &value, bool isText)
{
    return value.raw || isText ? QVariant(value.text) : QVariant();
}

void PrintRows(BatchRun &run, const std::vector<DifferenceRow> &rows, const DifferenceFilter &filter)
{
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    QList<OutputColumn> columns{{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                                {QStringLiteral("name"), QStringLiteral("Name"), 28},
                                {QStringLiteral("text_a"), QStringLiteral("A"), 16, true},
                                {QStringLiteral("text_b"), QStringLiteral("B"), 16, true}};
    if (!isText)
        columns << OutputColumn{QStringLiteral("raw_a"), QStringLiteral("Raw A")}
                << OutputColumn{QStringLiteral("raw_b"), QStringLiteral("Raw B")}
                << OutputColumn{QStringLiteral("kind"), QStringLiteral("Kind")}
                << OutputColumn{QStringLiteral("differs"), QStringLiteral("Differs")};
    columns << OutputColumn{QStringLiteral("difference"), QStringLiteral("B - A"), 12, true};
    run.Output().Begin(QStringLiteral("difference"), columns);
    for (const DifferenceRow &row : rows) {
        if (!filter.Shows(row))
            continue;
        const SetValue &a = row.sides[0];
        const SetValue &b = row.sides[1];
        QVariantList fields{row.param, row.name, Text(a, isText), Text(b, isText)};
        if (!isText)
            fields << Number(a.raw) << Number(b.raw) << KindText(row.kind)
                   << (row.isIncomplete ? QVariant() : QVariant(row.differs));
        run.Output().Row(fields << (row.differences[1].isEmpty() ? QVariant() : row.differences[1]));
    }
}

} // namespace

void AddCompareOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("all"),
                      QStringLiteral("Prints every parameter, and counts what is no setting as well.")});
}

ExitCode RunCompare(BatchRun &run)
{
    const QStringList words = run.Arguments();
    if (words.size() != 2)
        return run.UsageFailure(
            QStringLiteral("Name two sets: a settings file, \"drive\" or \"factory\" each."));
    ParameterSet a;
    ParameterSet b;
    for (const auto &[word, set] : {std::pair(words[0], &a), std::pair(words[1], &b)})
        if (const ExitCode code = SetNamed(run, word, *set);
            code != ExitCode::Done && code != ExitCode::Differs)
            return code;
    const ParameterSet *const both[] = {&a, &b};
    for (const QString &sentence : Mismatches(both))
        run.Output().Complain(sentence);
    const bool isAll = run.Options().isSet(QStringLiteral("all"));
    const std::vector<DifferenceRow> rows = Compare(both);
    DifferenceFilter differing{.kinds = {true, isAll, isAll, isAll, isAll}};
    DifferenceFilter shown = differing;
    shown.onlyDiffering = !isAll;
    PrintRows(run, rows, shown);
    const auto count =
        std::ranges::count_if(rows, [&differing](const DifferenceRow &row) { return differing.Shows(row); });
    run.Output().Say(QStringLiteral("%1 of %2 differ.").arg(count).arg(rows.size()));
    return count == 0 ? ExitCode::Done : ExitCode::Differs;
}

} // namespace quorvik
