#include "batch/DriveReading.h"

#include "batch/BatchRun.h"
#include "compare/DriveSet.h"
#include "model/Conversions.h"
#include "model/FullNames.h"
#include "model/ShownText.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostNamed = 8;

/** Adds all that the limits of p hang on, as far as the values are known. */
void AddLeads(int p, const std::map<int, std::int32_t> &values, std::set<int> &leads)
{
    for (const int lead : ParameterTable::LeadsOf(p)) {
        if (!leads.insert(lead).second)
            continue;
        AddLeads(lead, values, leads);
        // A selector hands over the limits of the parameter that it stands at.
        if (const auto found = values.find(lead); found != values.end() && found->second >= 0)
            AddLeads(found->second, values, leads);
    }
}

/** A state by its word, as the status bar has it; of the table it is a number without a list. */
QString TextOf(int p, std::int32_t rawValue, std::int32_t attributes)
{
    if (p != Param::DriveState)
        return ShownText(rawValue, attributes);
    try {
        return DriveStateText(rawValue);
    } catch (const RuntimeFailure &) {
        return QString::number(rawValue);
    }
}

} // namespace

ExitCode ReadWholeDrive(BatchRun &run, ParameterSet &set)
{
    Engines &engines = run.Eng();
    const OperationResult result = engines.snapshots.ReadDrive(set);
    if (result.outcome == Outcome::Refused)
        run.Output().Complain(QStringLiteral("The drive's answers came out of step with the questions."));
    else if (result.outcome == Outcome::Partial)
        run.Output().Complain(
            QStringLiteral("These parameters could not be read: %1.")
                .arg(FullNames(engines.table, result.missing, MostNamed, QStringLiteral(", "))));
    return run.CodeOf(result);
}

ExitCode ReadParams(BatchRun &run, const std::set<int> &params, ParameterSet &set)
{
    Engines &engines = run.Eng();
    const int last = engines.table.LastParam;
    std::set<int> wanted;
    std::ranges::copy_if(params, std::inserter(wanted, wanted.end()), [last](int p) { return p <= last; });
    std::map<int, std::int32_t> values;
    std::set<int> asked;
    for (std::set<int> next = wanted; !next.empty() && !run.IsInterrupted();) {
        const std::map<int, std::int32_t> fresh = engines.snapshots.ReadFresh(next);
        if (!engines.link.PortOpen())
            return run.IsInterrupted() ? ExitCode::Interrupted : ExitCode::NoLink;
        if (fresh.empty())
            break;
        values.insert(fresh.begin(), fresh.end());
        asked.insert(next.begin(), next.end());
        std::set<int> leads;
        for (const int p : wanted)
            AddLeads(p, values, leads);
        next.clear();
        std::ranges::copy_if(leads, std::inserter(next, next.end()),
                             [&](int p) { return p <= last && !asked.contains(p); });
    }
    set = SetOfDrive(values, engines.table, QStringLiteral("drive"));
    if (run.IsInterrupted())
        return ExitCode::Interrupted;
    return std::ranges::all_of(params, [&set](int p) { return set.Knows(p); }) ? ExitCode::Done
                                                                               : ExitCode::Differs;
}

QVariant PlainValue(const ParameterSet &set, int p)
{
    if (!set.Knows(p))
        return {};
    const std::int32_t attributes = set.records[p].Attributes;
    using Form = ValueType::Form;
    switch (TypeOf(TypeCode(attributes)).form) {
    case Form::Number:
    case Form::Unit:
    case Form::Parameter:
        return ShownNumber(set.Value(p), attributes);
    case Form::List:
    case Form::Hexadecimal:
    case Form::Model:
        break;
    }
    return ShownText(set.Value(p), attributes);
}

QVariant ShownValue(const ParameterSet &set, int p)
{
    return set.Knows(p) ? QVariant(TextOf(p, set.Value(p), set.records[p].Attributes)) : QVariant();
}

QVariant RawValue(const ParameterSet &set, int p)
{
    return set.Knows(p) ? QVariant(set.Value(p)) : QVariant();
}

QVariant NameIn(const ParameterSet &set, int p)
{
    return p >= 0 && p <= set.records.UpperBound() ? QVariant(set.records[p].Name) : QVariant();
}

QList<OutputColumn> ValueColumns(BatchOutput::Format format)
{
    QList<OutputColumn> columns{{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                                {QStringLiteral("name"), QStringLiteral("Name"), 28}};
    if (format == BatchOutput::Format::Text)
        columns << OutputColumn{QStringLiteral("text"), QStringLiteral("Value"), 16, true};
    else
        columns << OutputColumn{QStringLiteral("value"), QStringLiteral("Value")}
                << OutputColumn{QStringLiteral("unit"), QStringLiteral("Unit")}
                << OutputColumn{QStringLiteral("text"), QStringLiteral("Text")};
    return columns << OutputColumn{QStringLiteral("raw"), QStringLiteral("Raw"), 8, true};
}

QVariantList ValueFields(BatchOutput::Format format, const ParameterSet &set, int p)
{
    QVariantList fields{p, NameIn(set, p)};
    if (format == BatchOutput::Format::Text) {
        const QVariant shown = ShownValue(set, p);
        fields << (shown.isNull() ? QVariant(QStringLiteral("not read")) : shown);
    } else {
        fields << PlainValue(set, p)
               << (set.Knows(p) ? QVariant(UnitText(set.records[p].Attributes)) : QVariant())
               << ShownValue(set, p);
    }
    return fields << RawValue(set, p);
}

} // namespace quorvik
