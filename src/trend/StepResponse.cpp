#include "trend/StepResponse.h"

#include "model/Conversions.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace quorvik
{

namespace
{

constexpr double WholePercent = 100;
constexpr std::size_t LeastBefore = 3;
constexpr std::size_t LeastAnswer = 10;
constexpr double HeightOfNoise = 5; ///< a smaller step is none
constexpr double OneStep = 0.289;   ///< standard deviation of a value that is rounded to whole counts
constexpr double SigmaOfMedian = 1.4826;

/** Of the way from before to after, at milliseconds from the step. */
struct Point {
    double ms = 0;
    double way = 0;
};
using Points = std::vector<Point>;

double MedianOf(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/** Mean of the middle half: neither moved by a few wild values nor bound to whole counts as a median is. */
double LevelOf(std::vector<double> values)
{
    std::ranges::sort(values);
    const std::size_t cut = values.size() / 4;
    double sum = 0;
    for (std::size_t i = cut; i < values.size() - cut; ++i)
        sum += values[i];
    return sum / double(values.size() - 2 * cut);
}

/** Standard deviation of the noise, from the differences of neighbours: a slow change is none. */
double NoiseOf(const std::vector<double> &values)
{
    std::vector<double> differences;
    for (std::size_t i = 1; i < values.size(); ++i)
        differences.push_back(std::abs(values[i] - values[i - 1]));
    return std::max(MedianOf(std::move(differences)) * SigmaOfMedian / std::sqrt(2.0), OneStep);
}

/** The samples of a question, raw. */
struct Record {
    std::vector<double> before;
    std::vector<double> end; ///< the last of the answer
    Points points;           ///< the last sample before the step, and the answer; ways are raw values
    double spanMs = 0;       ///< longest between question and answer
    double lastMs = 0;
};

StepFailure Collect(const TrendTrack &track, const StepQuestion &question, Record &record)
{
    const SampleRing &samples = track.samples;
    const std::size_t begin = samples.IndexFrom(question.stepUs + 1);
    const std::size_t end = question.endUs > 0 ? samples.IndexFrom(question.endUs + 1) : samples.Size();
    if (begin == 0 || end < begin + LeastAnswer)
        return StepFailure::NoSamples;
    for (std::size_t i = begin; i < end; ++i)
        if (samples[i].isAfterGap != 0)
            return StepFailure::Gap;
    const qint64 lastUs = samples[end - 1].timeUs;
    const qint64 earliestUs = question.stepUs - (lastUs - question.stepUs);
    for (std::size_t i = begin; i-- > 0;) {
        if (samples[i].timeUs < earliestUs && record.before.size() >= LeastBefore)
            break;
        record.before.push_back(samples[i].rawValue);
        if (samples[i].isAfterGap != 0)
            break;
    }
    if (record.before.size() < LeastBefore)
        return StepFailure::NoSamples;
    record.lastMs = double(lastUs - question.stepUs) / UsPerMs;
    const double endMs = record.lastMs * (1 - std::clamp(question.endPercent, 1.0, 90.0) / WholePercent);
    for (std::size_t i = begin - 1; i < end; ++i) {
        const double ms = double(samples[i].timeUs - question.stepUs) / UsPerMs;
        record.points.push_back({ms, double(samples[i].rawValue)});
        record.spanMs = std::max(record.spanMs, double(samples[i].spanUs) / UsPerMs);
        if (ms >= endMs || i + LeastBefore >= end)
            record.end.push_back(samples[i].rawValue);
    }
    return StepFailure::None;
}

/** How much of a straight piece lies below a level, 0 to 1. */
double PartBelow(double from, double to, double level)
{
    const bool isFromBelow = from < level;
    if (isFromBelow == (to < level))
        return isFromBelow ? 1 : 0;
    const double part = (level - from) / (to - from);
    return isFromBelow ? part : 1 - part;
}

/** When a level is passed upwards for the first time. Around it the signal crosses it to and fro by its
 * noise; as long as it is below in all, so long is it below without noise. */
double PassedMs(const Points &points, double level, double noise)
{
    const double clear = std::min({3 * noise, level * 0.7, std::max(1 - level, 0.1) * 0.7});
    std::size_t above = 1;
    while (above + 1 < points.size() && points[above].way < level + clear)
        ++above;
    std::size_t below = above - 1;
    while (below > 0 && points[below].way > level - clear)
        --below;
    double ms = points[below].ms;
    for (std::size_t i = below + 1; i <= above; ++i)
        ms += (points[i].ms - points[i - 1].ms) * PartBelow(points[i - 1].way, points[i].way, level);
    return ms;
}

/** Means over a time around each point, of times as of ways: a straight line stays as it is. */
Points Smoothed(const Points &points, double halfMs)
{
    Points smooth;
    std::size_t begin = 0;
    std::size_t end = 0;
    Point sum;
    for (const Point &point : points) {
        for (; end < points.size() && points[end].ms <= point.ms + halfMs; ++end) {
            sum.ms += points[end].ms;
            sum.way += points[end].way;
        }
        for (; points[begin].ms < point.ms - halfMs; ++begin) {
            sum.ms -= points[begin].ms;
            sum.way -= points[begin].way;
        }
        smooth.push_back({sum.ms / double(end - begin), sum.way / double(end - begin)});
    }
    return smooth;
}

/** Solves three equations, the matrix of which is symmetrical. */
std::array<double, 3> Solve(std::array<std::array<double, 4>, 3> rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::size_t pivot = i;
        for (std::size_t k = i + 1; k < rows.size(); ++k)
            if (std::abs(rows[k][i]) > std::abs(rows[pivot][i]))
                pivot = k;
        std::swap(rows[i], rows[pivot]);
        for (std::size_t k = 0; k < rows.size(); ++k) {
            if (k == i || rows[i][i] == 0)
                continue;
            const double factor = rows[k][i] / rows[i][i];
            for (std::size_t column = i; column < rows[k].size(); ++column)
                rows[k][column] -= factor * rows[i][column];
        }
    }
    std::array<double, 3> solution{};
    for (std::size_t i = 0; i < rows.size(); ++i)
        solution[i] = rows[i][i] == 0 ? 0 : rows[i][3] / rows[i][i];
    return solution;
}

/** The least squares of value = a + b x + c y, in points (x, y, value). */
class Plane
{
public:
    void Add(double x, double y, double value)
    {
        const std::array<double, 4> row = {1, x, y, value};
        for (std::size_t i = 0; i < rows_.size(); ++i)
            for (std::size_t k = 0; k < row.size(); ++k)
                rows_[i][k] += row[i] * row[k];
    }
    std::array<double, 3> Fit() const { return Solve(rows_); }

private:
    std::array<std::array<double, 4>, 3> rows_{};
};

/** The time between the two samples around a moment. */
double IntervalAt(const Points &points, double ms)
{
    const auto to = std::ranges::upper_bound(points, ms, {}, &Point::ms);
    if (to == points.begin() || to == points.end())
        return 0;
    return to->ms - std::prev(to)->ms;
}

/** How far noise moves a passage: by as much time as it takes the signal to move by the noise, less what
 * several samples in that time know better. */
double MovedMs(double noise, double msOfWay, double intervalMs)
{
    return std::min(noise * msOfWay, std::sqrt(noise * msOfWay * intervalMs));
}

struct Beginning {
    double ms = 0;
    double uncertaintyMs = 0;
};

/**
 * When the signal begins to move. Near its beginning the time of an answer is d + a sqrt(way) + b way, of the
 * first order by b and of the second by a; what both leave out is nearly the same part of the rise.
 */
Beginning BeginningOf(const Points &points, double riseMs, double noise)
{
    static constexpr std::array<double, 7> Levels = {0.03, 0.05, 0.08, 0.12, 0.17, 0.23, 0.30};
    static constexpr double LeftOut = 0.012;
    static constexpr double LeftOpen = 0.006;
    static constexpr std::ptrdiff_t LeastWithin = 4;
    // Levels within the noise tell nothing.
    const double scale = std::clamp(4 * noise / Levels.front(), 1.0, 2.0);
    std::array<double, Levels.size()> times{};
    Plane plane;
    for (std::size_t i = 0; i < Levels.size(); ++i) {
        times[i] = PassedMs(points, Levels[i] * scale, noise);
        plane.Add(std::sqrt(Levels[i] * scale), Levels[i] * scale, times[i]);
    }
    const double intervalMs = IntervalAt(points, times.front());
    double variance = 0;
    for (std::size_t i = 0; i < Levels.size(); ++i) {
        const std::size_t next = std::min(i + 1, Levels.size() - 1);
        const double msOfWay =
            std::max(times[next] - times[next - 1], 0.0) / ((Levels[next] - Levels[next - 1]) * scale);
        Plane share;
        for (std::size_t k = 0; k < Levels.size(); ++k)
            share.Add(std::sqrt(Levels[k] * scale), Levels[k] * scale, k == i ? 1 : 0);
        variance += std::pow(share.Fit()[0] * MovedMs(noise, msOfWay, intervalMs), 2);
    }
    double earliest = 0;
    const auto low = std::ranges::lower_bound(points, times.front(), {}, &Point::ms);
    const auto high = std::ranges::lower_bound(points, times.back(), {}, &Point::ms);
    // So few cannot tell how it began, but it stood still at the last one before.
    if (high - low < LeastWithin && low != points.begin())
        earliest = std::max(std::prev(low)->ms, 0.0);
    const double latest = std::max(times.front(), earliest);
    return {std::clamp(plane.Fit()[0] - LeftOut * scale * riseMs, earliest, latest),
            intervalMs + 2 * std::sqrt(variance) + LeftOpen * scale * riseMs};
}

/** The highest of the signal, by a parabola through what lies around it. */
double PeakOf(const Points &points, const Points &smooth, double halfMs, std::size_t &count)
{
    // What has nothing behind it could be anything.
    const auto last = std::ranges::upper_bound(smooth, smooth.back().ms - halfMs, {}, &Point::ms);
    const auto highest =
        std::ranges::max_element(smooth.begin(), std::max(last, smooth.begin() + 1), {}, &Point::way);
    const auto index = std::size_t(highest - smooth.begin());
    std::size_t begin = index;
    while (begin > 0 && points[begin - 1].ms >= highest->ms - halfMs)
        --begin;
    std::size_t end = index + 1;
    while (end < points.size() && points[end].ms <= highest->ms + halfMs)
        ++end;
    // Three are a parabola, also where the sampling is coarse.
    begin = std::min(begin, index - std::min<std::size_t>(index, 1));
    end = std::min(std::max(end, index + 2), points.size());
    count = end - begin;
    if (count < 3)
        return highest->way;
    Plane plane;
    for (std::size_t i = begin; i < end; ++i) {
        const double x = points[i].ms - highest->ms;
        plane.Add(x, x * x, points[i].way);
    }
    const auto [level, slope, bend] = plane.Fit();
    const double topMs = bend < 0 ? -slope / (2 * bend) : 0;
    return std::abs(topMs) <= points[end - 1].ms - points[begin].ms
               ? level + slope * topMs + bend * topMs * topMs
               : highest->way;
}

/** When the signal comes into a band around a level for good; nothing where it is outside at the end. */
std::optional<double> SettledMs(const Points &points, double level, double half, double endMs)
{
    std::size_t index = points.size();
    while (index > 0 && std::abs(points[index - 1].way - level) <= half)
        --index;
    if (index == points.size() || (index > 0 && points[index - 1].ms > endMs))
        return std::nullopt;
    if (index == 0)
        return 0;
    const Point &from = points[index - 1];
    const Point &to = points[index];
    const double edge = from.way > level ? level + half : level - half;
    return from.ms + (to.ms - from.ms) * (edge - from.way) / (to.way - from.way);
}

} // namespace

QString SentenceOf(StepFailure failure)
{
    switch (failure) {
    case StepFailure::NoSamples:
        return QStringLiteral("There are too few values: at least three before the step and ten after it.");
    case StepFailure::NoStep:
        return QStringLiteral("The signal does not move by more than its noise.");
    case StepFailure::Gap:
        return QStringLiteral("The link was silent within the answer.");
    case StepFailure::None:
        break;
    }
    return {};
}

StepResult StepResponseOf(const TrendTrack &track, const StepQuestion &question)
{
    Record record;
    if (const StepFailure failure = Collect(track, question, record); failure != StepFailure::None)
        return {failure, {}};
    const double rawBefore = LevelOf(record.before);
    const double rawAfter = LevelOf(record.end);
    const double rawHeight = rawAfter - rawBefore;
    const double rawNoise = std::max(NoiseOf(record.before), NoiseOf(record.end));
    if (std::abs(rawHeight) < HeightOfNoise * rawNoise)
        return {StepFailure::NoStep, {}};
    const double noise = rawNoise / std::abs(rawHeight);
    Points points = std::move(record.points);
    for (Point &point : points)
        point.way = (point.way - rawBefore) / rawHeight;

    const double one = ShownNumber(1, track.channel.attributes);
    StepFigures figures;
    figures.before = rawBefore * one;
    figures.after = rawAfter * one;
    if (question.target)
        figures.steadyError = *question.target - figures.after;
    const double lowMs = PassedMs(points, 0.1, noise);
    const double highMs = PassedMs(points, 0.9, noise);
    figures.riseMs = highMs - lowMs;
    const Beginning beginning = BeginningOf(points, figures.riseMs, noise);
    figures.deadMs = beginning.ms;
    const double spanMs = record.spanMs / 2;
    figures.deadUncertaintyMs = beginning.uncertaintyMs + spanMs;
    const double intervalMs = std::max(IntervalAt(points, lowMs), IntervalAt(points, highMs));
    double variance = 0;
    for (const double level : {0.1, 0.9}) {
        static constexpr double Around = 0.05;
        const double msOfWay =
            (PassedMs(points, level + Around, noise) - PassedMs(points, level - Around, noise)) /
            (2 * Around);
        variance += std::pow(MovedMs(noise, std::max(msOfWay, 0.0), intervalMs), 2);
    }
    figures.uncertaintyMs = intervalMs + 2 * std::sqrt(variance) + spanMs;

    const double halfMs = figures.riseMs / 8;
    const Points smooth = Smoothed(points, halfMs);
    const double within = std::max(1.0, 2 * halfMs / std::max(intervalMs, halfMs / 1000));
    const double smoothNoise = noise / std::sqrt(within);
    // An end that still moves is not quite the end.
    const std::size_t middle = record.end.size() / 2;
    const auto split = record.end.begin() + std::ptrdiff_t(middle);
    const double drift =
        middle == 0 ? 0
                    : std::abs(LevelOf({record.end.begin(), split}) - LevelOf({split, record.end.end()})) /
                          std::abs(rawHeight);
    const double levelNoise = noise / std::sqrt(double(record.end.size())) + drift;

    std::size_t count = 1;
    const double over = PeakOf(points, smooth, figures.riseMs / 4, count) - 1;
    // The highest of many, and in the middle of a parabola: beyond what one value scatters by.
    static constexpr double Scattering = 5.5;
    static constexpr double BetweenSamples = 0.05;
    const double overNoise = Scattering * noise / std::sqrt(double(count)) + levelNoise +
                             BetweenSamples * std::pow(intervalMs / std::max(figures.riseMs, intervalMs), 2);
    figures.uncertaintyPercent = WholePercent * overNoise;
    figures.overshootPercent = over > overNoise ? WholePercent * over : 0;

    const double level = question.target ? (*question.target / one - rawBefore) / rawHeight : 1;
    const double half = question.settlingPercent / WholePercent;
    const double open = 3 * smoothNoise + (question.target ? 0 : levelNoise);
    const double endMs = record.lastMs * (1 - question.endPercent / WholePercent);
    figures.settlingMs = SettledMs(smooth, level, half, endMs);
    if (figures.settlingMs) {
        const std::optional<double> early = SettledMs(smooth, level, half + open, endMs);
        const std::optional<double> late =
            SettledMs(smooth, level, std::max(half - open, 0.0), record.lastMs);
        figures.settlingUncertaintyMs = intervalMs + spanMs +
                                        std::max(*figures.settlingMs - early.value_or(0),
                                                 late.value_or(record.lastMs) - *figures.settlingMs);
    }
    return {StepFailure::None, figures};
}

} // namespace quorvik
