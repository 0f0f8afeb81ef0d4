#pragma once

#include <cstdint>

namespace quorvik
{

/** What a run of quorvik-batch came to; the numbers are promised to scripts. */
enum class ExitCode : std::uint8_t {
    Done = 0,
    Differs = 1, ///< there are differences, or a part was refused or is missing
    Usage = 2,   ///< the command line means nothing; nothing was begun
    NoLink = 3,  ///< no drive was reached, or the line broke
    Guard = 4,   ///< a question that the command line does not answer; nothing was written
    File = 5,    ///< a file could not be read or written
    Fault = 70,  ///< a fault of the program
    Interrupted = 130,
};

} // namespace quorvik
