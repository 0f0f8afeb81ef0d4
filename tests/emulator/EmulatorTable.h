#pragma once

#include "emulator/DriveEmulator.h"
#include "model/ParameterTable.h"

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace quorvik::testing
{

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

/** A table without routing, in which no limit is in the way. */
void FillPlainTable(ParameterTable &table);

/** Values by parameter number. */
using Values = std::map<int, std::int32_t>;

/** Puts the values into the table. */
void Put(ParameterTable &table, const Values &values);

struct BlockCase {
    const char *what;
    Values given;
    Values expected;          ///< also holds values that must stay
    std::string failure = ""; ///< what is raised, behind the block's name; nothing for a case that goes well
    Values limits = {};       ///< highest value of a parameter; its lowest is the negative
};

/** The failures of a computation with these parameters, and of a selector that points nowhere. */
inline std::string OutOfRange(const std::string &numbers)
{
    return '(' + numbers + "): The result is out of range.";
}
inline std::string NoParameter(const std::string &selectors, int number)
{
    return '(' + selectors + "): There is no parameter " + std::to_string(number) + "; the last one is 430.";
}

/** Runs the routine of the block on each case's own table. */
void RunCases(const char *block, const std::function<void(DriveEmulator &)> &routine,
              const std::vector<BlockCase> &cases);

} // namespace quorvik::testing
