#pragma once

#include "batch/ExitCode.h"

#include <span>

class QCommandLineParser;

namespace quorvik
{

class BatchRun;

/** One command of quorvik-batch. */
struct Verb {
    const char *name;
    const char *arguments; ///< as the help writes them: "FILE", "A B", "[PARAMETER...]"; may be empty
    const char *summary;   ///< one line
    void (*addOptions)(QCommandLineParser &parser); ///< beside those of all commands; may be null
    ExitCode (*run)(BatchRun &run);
};

/** All of them, in the order of the help. */
std::span<const Verb> Verbs();

} // namespace quorvik
