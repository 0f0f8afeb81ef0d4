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
void AddBackupOptions(QCommandLineParser &parser);
ExitCode RunBackup(BatchRun &run);
void AddWriteSetOptions(QCommandLineParser &parser);
ExitCode RunRestore(BatchRun &run);
ExitCode RunWriteSet(BatchRun &run);

} // namespace quorvik
