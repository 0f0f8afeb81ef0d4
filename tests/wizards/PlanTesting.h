#pragma once

#include "support/TestDesk.h"
#include "wizards/frame/WritePlan.h"

#include <vector>

namespace quorvik::testing
{

inline constexpr int PercentParam = 218; ///< percent with two decimals

/** The writes of a plan in their order, as "23=218* 28=1 "; a star marks one that refreshes the table. */
inline std::string Writes(const WritePlan &plan)
{
    std::string writes;
    for (const PlannedWrite &write : plan.writes)
        writes +=
            std::to_string(write.param) + '=' + std::to_string(write.rawValue) + (write.refresh ? "* " : " ");
    return writes;
}

/** Everything in the table that a wizard might touch, to be compared as a whole. */
inline std::vector<std::vector<std::int32_t>> Snapshot(const ParameterTable &table)
{
    std::vector<std::vector<std::int32_t>> all;
    for (int p = 0; p <= table.LastParam; ++p) {
        const ParamRecord &record = table[p];
        all.push_back({record.Min, record.Max, record.Attributes, record.Preset, record.Value,
                       record.ReadFlag, record.WriteFlag});
    }
    all.push_back({table.WritePending});
    return all;
}

} // namespace quorvik::testing
