#pragma once

#include <cstdint>
#include <ctime>

namespace quorvik::drive
{

inline constexpr std::int64_t NsPerSecond = 1'000'000'000;
inline constexpr std::int64_t NsPerMs = 1'000'000;

/** Nanoseconds of the steady clock that all of the drive's times are taken from. */
inline std::int64_t SteadyNow()
{
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * NsPerSecond + now.tv_nsec;
}

} // namespace quorvik::drive
