#pragma once

#include <cstdio>
#include <unistd.h>

/** One figure, as bench.sh passes it on. @return whether it keeps its limit. */
inline bool Print(const char *name, double value, const char *unit, double limit)
{
    std::printf("%s: %.4g %s (limit %g)\n", name, value, unit, limit);
    return value <= limit;
}

/** The same of a figure that is the better the higher. */
inline bool PrintAtLeast(const char *name, double value, const char *unit, double limit)
{
    std::printf("%s: %.4g %s (at least %g)\n", name, value, unit, limit);
    return value >= limit;
}

/** Resident memory of this process, in MiB. */
inline double ResidentMiB()
{
    long total = 0;
    long resident = 0;
    std::FILE *file = std::fopen("/proc/self/statm", "r");
    if (!file)
        return 0;
    const int fields = std::fscanf(file, "%ld %ld", &total, &resident);
    std::fclose(file);
    return fields == 2 ? double(resident) * double(::sysconf(_SC_PAGESIZE)) / (1024 * 1024) : 0;
}
