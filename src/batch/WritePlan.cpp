#include "batch/WritePlan.h"

#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "compare/Differences.h"
#include "compare/DriveSet.h"
#include "model/ShownText.h"

#include <algorithm>
#include <set>

namespace quorvik
{

namespace
{

void PrintRow(BatchRun &run, const ParamValue &value, const ParameterSet &set, const ParameterSet &drive,
              const QString &action, const QString &reason)
{
    const int p = value.param;
    const QVariant name = NameIn(drive, p);
    run.Output().Row({p, name.isNull() ? NameIn(set, p) : name, ShownValue(drive, p), ShownValue(set, p),
                      RawValue(drive, p), value.rawValue, action, reason});
}

} // namespace

SetPlan PlanOf(const ParameterSet &set, const ParameterSet &drive, const ParameterTable &like)
{
    SetPlan plan;
    std::vector<ParamValue> wanted;
    for (int p = 0; p <= set.LastParam(); ++p) {
        if (!set.Knows(p) || KindOf(p, set.records[p].Attributes) != RowKind::Setting)
            continue;
        if (!drive.Knows(p))
            plan.leftOut.push_back({{p, set.Value(p)}, QStringLiteral("is not in this drive.")});
        else if (KindOf(p, drive.records[p].Attributes) == RowKind::Setting)
            wanted.push_back({p, set.Value(p)});
    }
    ParameterTable copy = TableOf(drive, like);
    // Whether the drive is stopped is a question of the moment of writing, and asked then.
    copy.Row(Param::DriveState).Value = 0;
    std::set<int> refused;
    for (const RefusedRow &row : MergeIntoSet(copy, wanted, set)) {
        refused.insert(row.value.param);
        if (row.value.rawValue == drive.Value(row.value.param))
            continue;
        const bool isFollowed = copy.FindLinkSource(row.value.param) != 0;
        (isFollowed ? plan.followed : plan.leftOut).push_back(row);
    }
    for (const ParamValue &value : wanted) {
        if (refused.contains(value.param))
            continue;
        plan.values.push_back(value);
        plan.differing += value.rawValue != drive.Value(value.param) ? 1 : 0;
    }
    return plan;
}

void PrintPlan(BatchRun &run, const SetPlan &plan, const ParameterSet &set, const ParameterSet &drive)
{
    run.Output().Begin(QStringLiteral("plan"),
                       {{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                        {QStringLiteral("name"), QStringLiteral("Name"), 28},
                        {QStringLiteral("before"), QStringLiteral("Drive"), 14, true},
                        {QStringLiteral("text"), QStringLiteral("New"), 14, true},
                        {QStringLiteral("raw_before"), QStringLiteral("Raw drive"), 9, true},
                        {QStringLiteral("raw"), QStringLiteral("Raw new"), 9, true},
                        {QStringLiteral("action"), QStringLiteral("Action"), 8},
                        {QStringLiteral("reason"), QStringLiteral("Reason")}});
    for (const ParamValue &value : plan.values)
        if (value.rawValue != drive.Value(value.param))
            PrintRow(run, value, set, drive, QStringLiteral("write"), {});
    for (const auto *rows : {&plan.leftOut, &plan.followed})
        for (const RefusedRow &row : *rows)
            PrintRow(run, row.value, set, drive, QStringLiteral("leave"), row.reason);
    run.Output().Say(QStringLiteral("%1 to be changed, %2 the same, %3 left out, %4 set by inputs.")
                         .arg(plan.differing)
                         .arg(plan.values.size() - std::size_t(plan.differing))
                         .arg(plan.leftOut.size())
                         .arg(plan.followed.size()));
}

} // namespace quorvik
