#pragma once

#include "emulator/DriveEmulator.h"
#include "model/Model.h"

#include <functional>
#include <map>
#include <vector>

namespace quorvik::testing
{

/** A table without routing, in which no limit is in the way. */
void FillPlainTable(Model &model);

/** Values by parameter number. */
using Values = std::map<int, std::int32_t>;

/** Puts the values into the table. */
void Put(Model &model, const Values &values);

struct BlockCase {
    const char *what;
    Values given;
    Values expected;          ///< also holds values that must stay
    const char *failure = ""; ///< what the raised sentence is to be; nothing for a case that goes well
    Values limits = {};       ///< highest value of a parameter; its lowest is the negative
};

/** Runs one routine on each case's own table. */
void RunCases(const std::vector<BlockCase> &cases, const std::function<void(DriveEmulator &)> &routine);

} // namespace quorvik::testing
