#pragma once

#include "trend/TrendData.h"

#include <deque>
#include <optional>
#include <vector>

namespace quorvik
{

/** A point of a curve as it is drawn. */
struct PlotPoint {
    qint64 timeUs = 0;
    std::int32_t rawValue = 0;
    std::uint32_t spanUs = 0; ///< of a sample that is drawn for itself; else 0
    bool isBreak = false;     ///< no line comes here from the point before it
};

/**
 * Brings the samples of a channel down to what a row of pixels can show: of each column the least and the
 * greatest value, in the order of time. Columns stand on a grid of time that does not move with the window,
 * so while a window follows a recording only what is new is looked at, and the curve does not shimmer.
 */
class PlotReduction
{
public:
    /**
     * Looks at what is between two times, and at one sample more at each side, to which the line runs on.
     * @param columnUs how much time one pixel is, at least 1.
     */
    void Update(const SampleRing &samples, qint64 fromUs, qint64 toUs, qint64 columnUs);

    const std::vector<PlotPoint> &Points() const { return points_; }
    /** False where each sample is a point of its own. */
    bool IsReduced() const { return isReduced_; }
    /** Samples between the two times. */
    std::size_t SampleCount() const { return count_; }
    /** Of the samples between the two times; nothing where there are none. */
    std::optional<std::pair<std::int32_t, std::int32_t>> Extent() const { return extent_; }

private:
    struct Column {
        qint64 number = 0;
        PlotPoint least;
        PlotPoint greatest;
        qint64 firstUs = 0;
        bool isBreak = false;
    };

    bool IsContinued(const SampleRing &samples, qint64 fromUs, qint64 columnUs) const;
    void AddColumns(const SampleRing &samples, std::size_t first, qint64 toUs);
    void Take(const TrendSample &sample);
    void MakePoints(qint64 fromUs, qint64 toUs);
    void Widen(std::int32_t rawValue);

    std::vector<PlotPoint> points_;
    std::deque<Column> columns_;
    std::optional<std::pair<std::int32_t, std::int32_t>> extent_;
    qint64 columnUs_ = 0;
    qint64 seenUs_ = 0;       ///< time of the last sample that is in a column
    qint64 seenAppended_ = 0; ///< what the ring counted then
    qint64 seenTakenBack_ = 0;
    qint64 fromUs_ = 0;
    std::size_t count_ = 0;
    bool isReduced_ = false;
};

} // namespace quorvik
