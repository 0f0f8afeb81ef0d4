#include "trend/forms/PlotReduction.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** Below so many samples in a column each of them is drawn. */
constexpr qint64 SamplesPerColumn = 2;

/** Rounded down, also before the beginning. */
qint64 ColumnOf(qint64 timeUs, qint64 columnUs)
{
    const qint64 quotient = timeUs / columnUs;
    return quotient * columnUs > timeUs ? quotient - 1 : quotient;
}

} // namespace

void PlotReduction::Update(const SampleRing &samples, qint64 fromUs, qint64 toUs, qint64 columnUs)
{
    const std::size_t begin = samples.IndexFrom(fromUs);
    const std::size_t end = samples.IndexFrom(toUs + 1);
    const std::size_t first = begin > 0 ? begin - 1 : 0;
    count_ = end - begin;
    extent_.reset();
    points_.clear();
    isReduced_ = qint64(count_) > SamplesPerColumn * ((toUs - fromUs) / columnUs + 1);
    if (!isReduced_) {
        columns_.clear();
        const std::size_t last = std::min(end + 1, samples.Size());
        for (std::size_t i = first; i < last; ++i) {
            const TrendSample &sample = samples[i];
            points_.push_back({sample.timeUs, sample.rawValue, sample.spanUs, sample.isAfterGap != 0});
            if (i >= begin && i < end)
                Widen(sample.rawValue);
        }
        return;
    }
    if (IsContinued(samples, fromUs, columnUs)) {
        AddColumns(samples, samples.IndexFrom(seenUs_ + 1), toUs);
    } else {
        columns_.clear();
        columnUs_ = columnUs;
        AddColumns(samples, first, toUs);
    }
    // The last one before the window stays: the line comes from there.
    while (columns_.size() > 1 && columns_[1].firstUs <= fromUs)
        columns_.pop_front();
    fromUs_ = fromUs;
    seenAppended_ = samples.Appended();
    seenTakenBack_ = samples.TakenBack();
    MakePoints(fromUs, toUs);
}

bool PlotReduction::IsContinued(const SampleRing &samples, qint64 fromUs, qint64 columnUs) const
{
    return !columns_.empty() && columnUs == columnUs_ && fromUs >= fromUs_ &&
           samples.Appended() >= seenAppended_ && samples.TakenBack() == seenTakenBack_;
}

void PlotReduction::AddColumns(const SampleRing &samples, std::size_t first, qint64 toUs)
{
    for (std::size_t i = first; i < samples.Size(); ++i) {
        const TrendSample &sample = samples[i];
        Take(sample);
        seenUs_ = sample.timeUs;
        if (sample.timeUs > toUs)
            return;
    }
}

void PlotReduction::Take(const TrendSample &sample)
{
    const PlotPoint point{sample.timeUs, sample.rawValue, 0, sample.isAfterGap != 0};
    const qint64 number = ColumnOf(sample.timeUs, columnUs_);
    if (columns_.empty() || columns_.back().number != number) {
        columns_.push_back({number, point, point, sample.timeUs, point.isBreak});
        return;
    }
    Column &column = columns_.back();
    if (point.rawValue < column.least.rawValue)
        column.least = point;
    if (point.rawValue > column.greatest.rawValue)
        column.greatest = point;
}

void PlotReduction::MakePoints(qint64 fromUs, qint64 toUs)
{
    for (const Column &column : columns_) {
        const bool isLeastFirst = column.least.timeUs <= column.greatest.timeUs;
        PlotPoint point = isLeastFirst ? column.least : column.greatest;
        const PlotPoint &other = isLeastFirst ? column.greatest : column.least;
        point.isBreak = column.isBreak;
        points_.push_back(point);
        if (other.rawValue != point.rawValue) {
            points_.push_back(other);
            points_.back().isBreak = false;
        }
        if (point.timeUs >= fromUs && point.timeUs <= toUs)
            Widen(point.rawValue);
        if (other.timeUs >= fromUs && other.timeUs <= toUs)
            Widen(other.rawValue);
    }
}

void PlotReduction::Widen(std::int32_t rawValue)
{
    if (!extent_)
        extent_ = {rawValue, rawValue};
    extent_->first = std::min(extent_->first, rawValue);
    extent_->second = std::max(extent_->second, rawValue);
}

} // namespace quorvik
