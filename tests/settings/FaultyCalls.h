#pragma once

#include <functional>
#include <optional>

namespace quorvik::testing
{

/** What befalls a child process at those of its calls that change files. */
enum class Fault {
    Kill,     ///< killed as it enters one of them
    DiskFull, ///< writing is refused with ENOSPC
    DiskBad,  ///< flushing is refused with EIO
    Locked,   ///< creating, renaming and removing files is refused with EACCES
    NoModes,  ///< the file system knows neither owners nor modes, and refuses their change with EPERM
};

struct ChildEnd {
    bool wasStruck = false;      ///< it got as far as the fault
    std::optional<int> exitCode; ///< nothing when it was killed
};

/**
 * Forks, runs work in the child, and waits for its end. What work returns, less than 64, is the child's exit
 * code.
 * @param at the call, counted from 1 among those that the fault can strike, at which it strikes; a refusal
 * stays in force from there on.
 */
ChildEnd RunUnderFault(Fault fault, int at, const std::function<int()> &work);

} // namespace quorvik::testing
