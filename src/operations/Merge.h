#pragma once

#include "compare/ParameterSet.h"
#include "link/ParamValue.h"

#include <vector>

namespace quorvik
{

class ParameterTable;
class SaveCommands;

/** A value that was not taken over, and why. */
struct RefusedRow {
    ParamValue value;
    QString reason; ///< the end of a sentence that begins with the parameter
};

/**
 * Takes values of another set into a table, each as if it were entered: within its limits, writable now, and
 * with no second input on a destination. What decides about another value goes before it, and inputs that
 * change places do so, so that a whole set is never refused for the order of its rows.
 *
 * Commands are not given: those of the drive's memory never, the others not while on line.
 * @param from the set that the values are of; a value whose unit is another one there is not taken.
 * @return what was not taken, in the order of the values.
 */
std::vector<RefusedRow> MergeIntoSet(ParameterTable &table, const std::vector<ParamValue> &values,
                                     const ParameterSet &from);

/** What a merge into a file came to. */
struct FileMerge {
    QString failure; ///< why the file is as it was; empty where it was saved
    std::vector<RefusedRow> refused = {};
};

/**
 * The same into a settings file that is not open, which is then saved whole: notes and all other values stay.
 * A file into which nothing goes is not touched.
 * @param like gives the factory table.
 * @param saving knows the one file that is never saved over.
 */
FileMerge MergeIntoFile(const QString &path, const std::vector<ParamValue> &values, const ParameterSet &from,
                        const ParameterTable &like, const SaveCommands &saving);

} // namespace quorvik
