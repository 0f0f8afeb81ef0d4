#pragma once

#include "batch/BatchOutput.h"
#include "batch/ExitCode.h"
#include "compare/ParameterSet.h"

#include <set>

namespace quorvik
{

class BatchRun;

/** Reads the whole drive beside the table. Rows that could not be read are not known in the set, and told.
 * @return Done, Differs where rows are missing, NoLink or Interrupted. */
ExitCode ReadWholeDrive(BatchRun &run, ParameterSet &set);

/** Reads some parameters, and all that their units and limits hang on. As ReadWholeDrive(). */
ExitCode ReadParams(BatchRun &run, const std::set<int> &params, ParameterSet &set);

/** The columns of a parameter with its value: for people what a window shows, for programs the number apart
 * from its unit. */
QList<OutputColumn> ValueColumns(BatchOutput::Format format);
/** The fields for them. */
QVariantList ValueFields(BatchOutput::Format format, const ParameterSet &set, int p);
/** The value as a number, or as the text of a list; null where it is not known. */
QVariant PlainValue(const ParameterSet &set, int p);
/** As a window shows it; null where it is not known. */
QVariant ShownValue(const ParameterSet &set, int p);
/** The raw value, or null. */
QVariant RawValue(const ParameterSet &set, int p);
/** The name, or null for a parameter that the set does not have. */
QVariant NameIn(const ParameterSet &set, int p);

} // namespace quorvik
