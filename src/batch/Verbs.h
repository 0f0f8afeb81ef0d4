#pragma once

#include "batch/ExitCode.h"

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

ExitCode RunInfo(BatchRun &run);
ExitCode RunRead(BatchRun &run);

} // namespace quorvik
