#include "trend/TrendStatistics.h"

#include "model/Conversions.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

struct Point {
    double seconds = 0;
    double raw = 0;
};

/** Sums along a line of straight pieces. */
class LineSums
{
public:
    void Add(const Point &from, const Point &to)
    {
        const double width = to.seconds - from.seconds;
        seconds_ += width;
        area_ += width * (from.raw + to.raw) / 2;
        squares_ += width * (from.raw * from.raw + from.raw * to.raw + to.raw * to.raw) / 3;
    }
    bool IsEmpty() const { return seconds_ <= 0; }
    double Mean() const { return area_ / seconds_; }
    double MeanSquare() const { return squares_ / seconds_; }

private:
    double seconds_ = 0;
    double area_ = 0;
    double squares_ = 0;
};

/** Sums over samples, kept as differences to the means so far: an hour of a value that hardly moves loses
 * nothing. */
class SampleSums
{
public:
    void Add(const Point &point)
    {
        ++count_;
        const double fromMean = point.seconds - meanSeconds_;
        meanSeconds_ += fromMean / double(count_);
        const double rawFromMean = point.raw - meanRaw_;
        meanRaw_ += rawFromMean / double(count_);
        spread_ += fromMean * (point.seconds - meanSeconds_);
        common_ += fromMean * (point.raw - meanRaw_);
        squares_ += point.raw * point.raw;
    }
    std::size_t Count() const { return count_; }
    double Mean() const { return meanRaw_; }
    double MeanSquare() const { return squares_ / double(count_); }
    double Slope() const { return spread_ > 0 ? common_ / spread_ : 0; }

private:
    std::size_t count_ = 0;
    double meanSeconds_ = 0;
    double meanRaw_ = 0;
    double spread_ = 0;
    double common_ = 0;
    double squares_ = 0;
};

} // namespace

std::optional<TrendStatistics> StatisticsOf(const TrendTrack &track, qint64 fromUs, qint64 toUs)
{
    const std::int32_t attributes = track.channel.attributes;
    const SampleRing &samples = track.samples;
    const std::size_t begin = samples.IndexFrom(fromUs);
    const std::size_t end = samples.IndexFrom(toUs + 1);
    if (begin >= end || IsEnumerated(TypeCode(attributes)))
        return std::nullopt;
    const auto pointOf = [&](const TrendSample &sample) {
        return Point{double(sample.timeUs - fromUs) / UsPerSecond, double(sample.rawValue)};
    };
    const auto pointAt = [&](std::size_t index, qint64 timeUs) {
        const TrendSample &from = samples[index - 1];
        const TrendSample &to = samples[index];
        const double part = double(timeUs - from.timeUs) / double(to.timeUs - from.timeUs);
        return Point{double(timeUs - fromUs) / UsPerSecond,
                     from.rawValue + part * (double(to.rawValue) - from.rawValue)};
    };
    LineSums line;
    SampleSums sums;
    std::int32_t rawLeast = samples[begin].rawValue;
    std::int32_t rawGreatest = rawLeast;
    for (std::size_t i = begin; i < end; ++i) {
        const TrendSample &sample = samples[i];
        const Point point = pointOf(sample);
        sums.Add(point);
        rawLeast = std::min(rawLeast, sample.rawValue);
        rawGreatest = std::max(rawGreatest, sample.rawValue);
        if (sample.isAfterGap == 0 && i > 0 && sample.timeUs > fromUs)
            line.Add(i > begin ? pointOf(samples[i - 1]) : pointAt(i, fromUs), point);
    }
    if (end < samples.Size() && samples[end].isAfterGap == 0 && samples[end - 1].timeUs < toUs)
        line.Add(pointOf(samples[end - 1]), pointAt(end, toUs));
    const double one = ShownNumber(1, attributes);
    // Where no line is known, between gaps, each sample stands for itself.
    const double mean = line.IsEmpty() ? sums.Mean() : line.Mean();
    const double meanSquare = line.IsEmpty() ? sums.MeanSquare() : line.MeanSquare();
    return TrendStatistics{.count = sums.Count(),
                           .least = ShownNumber(rawLeast, attributes),
                           .greatest = ShownNumber(rawGreatest, attributes),
                           .mean = mean * one,
                           .effective = std::sqrt(meanSquare) * one,
                           .slope = sums.Slope() * one};
}

} // namespace quorvik
