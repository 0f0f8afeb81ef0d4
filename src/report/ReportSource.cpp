#include "report/ReportSource.h"

#include "compare/Differences.h"
#include "compare/DriveSet.h"
#include "history/HistoryTexts.h"
#include "model/PathFunctions.h"
#include "operations/Engines.h"
#include "platform/TimeUnits.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** What the drive has told on this connection, or on the one that was lost. */
void TakeDrive(const Engines &engines, ReportSource &source)
{
    const ParameterTable &table = engines.table;
    std::map<int, std::int32_t> values;
    for (int p = 0; p <= table.LastParam; ++p) {
        const std::optional<std::int32_t> rawValue = engines.states.DriveValue(p);
        if (!rawValue)
            continue;
        values.emplace(p, *rawValue);
        if (engines.states.Of(p) != ValueState::Live)
            source.doubts.emplace(p, engines.states.Describe(p));
    }
    source.drive = SetOfDrive(values, table, QStringLiteral("drive"));
}

bool IsOfSet(int p, std::int32_t attributes)
{
    const RowKind kind = KindOf(p, attributes);
    return kind == RowKind::Setting || kind == RowKind::Model;
}

/** Whether what the table holds is known to be the drive's, or is the set's own. */
bool IsKnown(const Engines &engines, int p)
{
    const ParamRecord &record = engines.table[p];
    switch (engines.states.Of(p)) {
    case ValueState::Live:
    case ValueState::Old:
    case ValueState::Lost:
    case ValueState::Queued:
    case ValueState::Refused:
        return true;
    case ValueState::Never:
        // A set that is held beside the drive stands there by itself, and so does what the drive has another
        // value for.
        return IsOfSet(p, record.Attributes) &&
               (record.WriteFlag == WriteState::Held || engines.states.DriveValue(p));
    case ValueState::Set:
    case ValueState::Emulated:
        break;
    }
    return IsOfSet(p, record.Attributes);
}

} // namespace

ParameterSet ReportedSet(ParameterSet set, bool isOfDrive)
{
    if (isOfDrive)
        return set;
    for (int p = 0; p <= set.LastParam(); ++p)
        if (!IsOfSet(p, set.records[p].Attributes))
            set.known.at(std::size_t(p)) = false;
    return set;
}

ReportSource SourceOf(const Engines &engines)
{
    const ParameterTable &table = engines.table;
    const Document &document = engines.document;
    const bool isInFile = document.FileName != Document::Unnamed();
    ReportSource source{.setName =
                            isInFile ? FileTitle(document.FileName) : QStringLiteral("unsaved settings"),
                        .setPath = document.FileName,
                        .notes = document.Notes,
                        .set = ParameterSet::Of(table, QStringLiteral("open set")),
                        .drive = {},
                        .readAt = {},
                        .doubts = {}};
    if (!table.PortOpen() && !engines.states.IsLost()) {
        source.set = ReportedSet(std::move(source.set), false);
        return source;
    }
    TakeDrive(engines, source);
    for (int p = 0; p <= table.LastParam; ++p) {
        const ValueState state = engines.states.Of(p);
        if (state == ValueState::Queued || state == ValueState::Refused)
            source.notTaken.push_back(p);
        const bool isKnown = IsKnown(engines, p);
        if (isKnown && state == ValueState::Never && source.drive.Knows(p))
            source.otherwise.push_back(p);
        source.set.known.at(std::size_t(p)) = isKnown;
    }
    return source;
}

std::optional<DriveIdentity> IdentityIn(const ParameterSet &drive)
{
    const bool isKnown = std::ranges::all_of(DriveIdentity::Params(), [&drive](int p) {
        // A drive with fewer parameters has none of this.
        return drive.Knows(p) || (!drive.known.empty() && p > drive.LastParam());
    });
    if (!isKnown)
        return std::nullopt;
    return DriveIdentity::Of([&drive](int p) { return drive.Knows(p) ? drive.Value(p) : 0; },
                             drive.LastParam());
}

QString MomentText(const QDateTime &moment)
{
    return HistoryTexts::WholeTime({moment.toMSecsSinceEpoch(), moment.offsetFromUtc() / SecondsPerMinute});
}

} // namespace quorvik
