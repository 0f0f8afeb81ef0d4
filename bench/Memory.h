#pragma once

#include <cstdio>
#include <unistd.h>

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
