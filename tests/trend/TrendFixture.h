#pragma once

#include "model/ParameterNumbers.h"
#include "trend/TrendData.h"

#include <cmath>
#include <functional>
#include <random>

namespace quorvik::testing
{

/** Type 0 with two decimals: 12.34 is raw 1234. */
inline constexpr std::int32_t TwoDecimals = 2;

/** A channel of a function of seconds, read at a rate that trembles as on a line. */
struct SampledSignal {
    double perSecond = 349;
    double fromSeconds = 0;
    double toSeconds = 10;
    double noise = 0; ///< standard deviation, shown numbers
    unsigned seed = 1;

    TrendTrack Track(const std::function<double(double)> &shownAt) const
    {
        TrendTrack track;
        track.channel.param = Param::VelFeedback;
        track.channel.attributes = TwoDecimals;
        std::mt19937 dice(seed);
        std::uniform_real_distribution<double> trembling(0.9, 1.1);
        std::normal_distribution<double> error(0, 1);
        double seconds = fromSeconds + trembling(dice) / perSecond;
        for (; seconds < toSeconds; seconds += trembling(dice) / perSecond) {
            const double shown = shownAt(seconds) + noise * error(dice);
            track.samples.Append(
                {.timeUs = std::llround(seconds * 1e6), .rawValue = std::int32_t(std::lround(shown * 100))});
        }
        return track;
    }
};

} // namespace quorvik::testing
