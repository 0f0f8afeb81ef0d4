#pragma once

#include "batch/ExitCode.h"

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

void AddSaveOption(QCommandLineParser &parser);

/** Prints what became of each value of the verified write that has ended, and what it came to.
 * @param onlyNews leaves out, for people, what the drive held already. */
void PrintReport(BatchRun &run, bool onlyNews = false);

/** Has the drive save in its memory where --save asks for it and the write got through.
 * @param code of the write. @return the code, or Differs where the drive did not save. */
ExitCode SaveWhereWanted(BatchRun &run, ExitCode code);

} // namespace quorvik
