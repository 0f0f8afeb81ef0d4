#pragma once

#include <array>
#include <cstdint>

namespace quorvik::drive
{

/** What is wired to the drive's input terminals. */
struct Terminals {
    std::array<std::int32_t, 5> analog{}; ///< converter counts, -2048 to 4095
    std::array<bool, 7> digital{};        ///< true for closed
    std::int32_t frequency = 0;           ///< hertz, 0 to 60000
};

} // namespace quorvik::drive
