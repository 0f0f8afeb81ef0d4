#pragma once

#include "link/ParamValue.h"

#include <vector>

namespace quorvik
{

class ParameterTable;

/**
 * The values in the order in which a drive is to get them: selectors and what else sets limits before the
 * settings that follow them, commands after all settings, and the command to save after everything; else by
 * number.
 */
std::vector<ParamValue> InWriteOrder(std::vector<ParamValue> values, const ParameterTable &table);

/** Whether limits, type or meaning of other parameters hang on p. */
bool LeadsOthers(int p, const ParameterTable &table);

} // namespace quorvik
