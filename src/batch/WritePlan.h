#pragma once

#include "compare/ParameterSet.h"
#include "link/ParamValue.h"
#include "operations/Merge.h"

namespace quorvik
{

class BatchRun;

/** What a whole set comes to on a drive: all its settings, but for those that the drive would not keep. */
struct SetPlan {
    std::vector<ParamValue> values;   ///< to be written, those that the drive holds already among them
    int differing = 0;                ///< of them, those of which the drive holds another value
    std::vector<RefusedRow> leftOut;  ///< settings that differ and cannot be written
    std::vector<RefusedRow> followed; ///< the same, set by an input of the drive, so nothing is missing

    bool IsEmpty() const { return differing == 0 && leftOut.empty(); }
};

/** @param like gives names and limits of the drive's parameters. */
SetPlan PlanOf(const ParameterSet &set, const ParameterSet &drive, const ParameterTable &like);

/** Prints what differs, and what is left out and why. */
void PrintPlan(BatchRun &run, const SetPlan &plan, const ParameterSet &set, const ParameterSet &drive);

} // namespace quorvik
