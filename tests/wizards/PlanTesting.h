#pragma once

#include "support/TestDesk.h"
#include "wizards/frame/WritePlan.h"

#include <gmock/gmock.h>
#include <vector>

namespace quorvik::testing
{

using NumberAndRaw = std::vector<std::pair<int, std::int32_t>>;

inline NumberAndRaw Writes(const WritePlan &plan)
{
    NumberAndRaw writes;
    for (const PlannedWrite &write : plan.writes)
        writes.emplace_back(write.param, write.rawValue);
    return writes;
}

/** Everything in the table that a wizard might touch, to be compared as a whole. */
inline std::vector<std::vector<std::int32_t>> Snapshot(const Model &model)
{
    std::vector<std::vector<std::int32_t>> all;
    for (int p = 0; p <= model.LastParam; ++p) {
        const ParamRecord &record = model.ParamTable[p];
        all.push_back({record.Min, record.Max, record.Attributes, record.Preset, record.Value,
                       record.ReadFlag, record.WriteFlag});
    }
    all.push_back({model.FileModified, model.DriveModified, model.WritePending});
    return all;
}

} // namespace quorvik::testing
