#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace quorvik::testing
{

/** What befalls a child process while it works. Calls are counted from 1. */
struct ChildFault {
    enum class Kind {
        Kill,     ///< killed as it enters system call number `at`
        DiskFull, ///< from its writing call number `at` on, every call that needs room is refused with ENOSPC
        DiskBad,  ///< from its flushing call number `at` on, every flush is refused with EIO
        Locked, ///< from its naming call number `at` on, every creating, renaming or removing is refused with
                ///< EACCES
    };
    Kind kind = Kind::Kill;
    int at = 1;
};

struct ChildEnd {
    bool wasStruck = false;      ///< it got as far as the fault
    std::optional<int> exitCode; ///< nothing when it was killed
};

/** Whether this machine and this sandbox let a process be traced, and the refusals be put in. */
bool CanTraceChildren();

/** Forks, runs work in the child under the fault, and waits for its end. The child's exit code is what work
 * returns. */
ChildEnd RunUnderFault(const ChildFault &fault, const std::function<int()> &work);

} // namespace quorvik::testing
