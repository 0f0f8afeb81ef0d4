#pragma once

#include "batch/ExitCode.h"

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

ExitCode RunInfo(BatchRun &run);

} // namespace quorvik
