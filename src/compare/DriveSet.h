#pragma once

#include "compare/ParameterSet.h"

#include <map>

namespace quorvik
{

/**
 * What was read of a drive as a set: limits and units follow the drive's own selectors.
 * @param values raw values by number; the others are not known.
 * @param like gives names, factory limits and the number of rows.
 */
ParameterSet SetOfDrive(const std::map<int, std::int32_t> &values, const ParameterTable &like,
                        const QString &name);

/** A table that holds the known values of a set, and its limits; the rest is as in like. It is off line. */
ParameterTable TableOf(const ParameterSet &set, const ParameterTable &like);

/** The first destination selector that points at p, or 0: then an input of the drive sets the value. */
int DrivenBy(int p, const ParameterSet &set);

} // namespace quorvik
