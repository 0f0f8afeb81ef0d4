#pragma once

#include <cstdint>
#include <random>

namespace quorvik::drive
{

/** What makes measured values tremble; the same seed trembles the same way. */
class Noise
{
public:
    explicit Noise(std::uint64_t seed)
        : dice_(seed)
    {
    }

    /** Evenly spread between -amplitude and amplitude. */
    double operator()(double amplitude) { return (double(dice_() >> 11) * 0x1p-52 - 1.0) * amplitude; }

private:
    std::mt19937_64 dice_;
};

} // namespace quorvik::drive
