#pragma once

#include "batch/ExitCode.h"
#include "compare/ParameterSet.h"

#include <QString>

namespace quorvik
{

class BatchRun;

/**
 * The set that a word of the command line means: "drive" for the one at the port, "factory" for the factory
 * values, else a settings file.
 * @return Done; Differs where rows of the drive are missing; File, NoLink, Usage, Interrupted, and why was
 * told.
 */
ExitCode SetNamed(BatchRun &run, const QString &word, ParameterSet &set);

} // namespace quorvik
