#pragma once

#include "batch/ExitCode.h"

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

ExitCode RunInfo(BatchRun &run);
ExitCode RunRead(BatchRun &run);
void AddWatchOptions(QCommandLineParser &parser);
ExitCode RunWatch(BatchRun &run);
void AddWriteOptions(QCommandLineParser &parser);
ExitCode RunWrite(BatchRun &run);
void AddBackupOptions(QCommandLineParser &parser);
ExitCode RunBackup(BatchRun &run);
void AddWriteSetOptions(QCommandLineParser &parser);
ExitCode RunRestore(BatchRun &run);
ExitCode RunWriteSet(BatchRun &run);
void AddCompareOptions(QCommandLineParser &parser);
ExitCode RunCompare(BatchRun &run);
void AddListOptions(QCommandLineParser &parser);
ExitCode RunList(BatchRun &run);
void AddPortsOptions(QCommandLineParser &parser);
ExitCode RunPorts(BatchRun &run);
void AddJournalOptions(QCommandLineParser &parser);
ExitCode RunJournal(BatchRun &run);

void AddReportOptions(QCommandLineParser &parser);
ExitCode RunReport(BatchRun &run);

void AddSelftestOptions(QCommandLineParser &parser);
ExitCode RunSelftest(BatchRun &run);

void AddConvertOptions(QCommandLineParser &parser);
ExitCode RunConvert(BatchRun &run);

} // namespace quorvik
