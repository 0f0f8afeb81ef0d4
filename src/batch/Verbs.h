#pragma once

#include "batch/ExitCode.h"

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

ExitCode RunInfo(BatchRun &run);
ExitCode RunRead(BatchRun &run);
void AddWriteOptions(QCommandLineParser &parser);
ExitCode RunWrite(BatchRun &run);

} // namespace quorvik
