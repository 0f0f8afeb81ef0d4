#pragma once

#include <cstdint>

namespace quorvik
{

/** What a process may use from now on. */
struct ProcessLimits {
    std::uint64_t memoryBytes = 0; ///< of address space; 0 for as much as there is
    unsigned cpuSeconds = 0;       ///< of computing time; the process is ended after it
    unsigned handles = 0;          ///< greatest number of open files
};

/**
 * Binds this process to limits that it cannot lift again; it also writes no file, leaves no core, and
 * leaves it to the process that started it to answer a Ctrl+C. Under
 * the address sanitizer, which takes address space by the terabyte, the sanitizer's own limits stand in place
 * of memoryBytes.
 * @return whether all of them hold.
 */
bool LimitThisProcess(const ProcessLimits &limits);

} // namespace quorvik
