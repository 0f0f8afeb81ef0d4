#pragma once

#include <array>
#include <cstdint>

namespace quorvik::drive
{

/** What is wired to the drive's input terminals, feedback devices included. */
struct Terminals {
    std::array<std::int32_t, 5> analog{}; ///< converter counts, -2048 to 4095
    std::array<bool, 7> digital{};        ///< true for closed
    std::int32_t frequency = 0;           ///< hertz, 0 to 60000
    double tachometer = 1;                ///< of what it should read, -2 to 2; -1 with its wires swapped
    double encoder = 1;                   ///< the same
};

} // namespace quorvik::drive
