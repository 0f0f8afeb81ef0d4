#pragma once

#include "trend/TrendData.h"

#include <optional>

namespace quorvik
{

/** Figures of one channel between two times, in shown numbers (see ShownNumber()). */
struct TrendStatistics {
    std::size_t count = 0; ///< samples between the two times
    double least = 0;
    double greatest = 0;
    double mean = 0;      ///< by time, along straight lines between samples; gaps do not count
    double effective = 0; ///< root of the mean square, in the same way
    double slope = 0;     ///< a second, of the straight line with the least squares; 0 of a single sample
};

/** @return nothing where no sample lies between the times, and of a channel whose values are texts. */
std::optional<TrendStatistics> StatisticsOf(const TrendTrack &track, qint64 fromUs, qint64 toUs);

} // namespace quorvik
