#include "compare/DriveSet.h"

#include "model/ParameterTable.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

namespace
{

void FollowSelectors(ParameterTable &table)
{
    for (int p = 0; p <= table.LastParam; ++p) {
        try {
            table.RefreshDependentParams(p);
        } catch (const RuntimeFailure &) {
            // A selector of the drive's that points nowhere: what hangs on it keeps the limits it has.
        }
    }
}

} // namespace

ParameterSet SetOfDrive(const std::map<int, std::int32_t> &values, const ParameterTable &like,
                        const QString &name)
{
    ParameterTable table(like);
    const auto take = [&] {
        for (const auto &[p, rawValue] : values)
            table.SetValue(p, rawValue, ChangeCause::Drive);
    };
    for (int p = 0; p <= table.LastParam; ++p)
        table.RestoreLimits(p);
    take();
    FollowSelectors(table);
    // The rules hold values within limits, and what counts is what the drive said.
    take();
    ParameterSet set{.name = name, .records = table.Records(), .known = {}};
    set.known.assign(std::size_t(table.LastParam) + 1, false);
    for (const auto &[p, rawValue] : values)
        if (p <= table.LastParam)
            set.known[std::size_t(p)] = true;
    return set;
}

ParameterTable TableOf(const ParameterSet &set, const ParameterTable &like)
{
    ParameterTable table(like);
    table.SetPortOpen(false);
    table.LastParam = std::int16_t(set.LastParam());
    for (int p = 0; p <= set.LastParam(); ++p)
        if (set.Knows(p))
            table.Row(p) = set.records[p];
    return table;
}

int DrivenBy(int p, const ParameterSet &set)
{
    if (p == 0)
        return 0;
    for (int i = 1; i <= set.LastParam(); ++i)
        if (set.Knows(i) && (set.records[i].Attributes & Attr::Destination) != 0 && set.Value(i) == p)
            return i;
    return 0;
}

} // namespace quorvik
