#include "trend/forms/PlotScales.h"

#include "platform/TimeUnits.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double FairPart = 0.35;      // of the axis: below it the range closes in
constexpr double Margin = 0.04;        // of the values' extent, above and below it
constexpr int LeastCounts = 10;        // an axis is not finer than this many steps of the value
constexpr double LeastOfValue = 0.002; // nor finer than this part of a value that stands still
constexpr int IntervalsWanted = 4;
constexpr int MostDecimals = 6;

int DecimalsOfStep(double step)
{
    return std::clamp(int(std::ceil(-std::log10(step) - 1e-9)), 0, MostDecimals);
}

} // namespace

double NiceStep(double least)
{
    if (!(least > 0) || !std::isfinite(least))
        return 1;
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= least * (1 - 1e-9))
            return factor * power;
    return 10 * power;
}

double NiceTimeStep(double least)
{
    static constexpr std::array<double, 13> steps = {10,  15,   30,   60,   120,   300,  600,
                                                     900, 1800, 3600, 7200, 10800, 21600};
    if (least <= 5)
        return NiceStep(least);
    const auto *const found = std::ranges::lower_bound(steps, least);
    return found == steps.end() ? NiceStep(least / SecondsPerHour) * SecondsPerHour : *found;
}

QCPRange ScaleFor(const QCPRange &present, double least, double greatest, double resolution)
{
    const bool isInside = least >= present.lower && greatest <= present.upper;
    const double middle = (least + greatest) / 2;
    const double finest = std::max(resolution * LeastCounts, std::abs(middle) * LeastOfValue);
    const double extent = std::max(greatest - least, finest);
    if (isInside && extent >= FairPart * present.size())
        return present;
    const double half = extent * (0.5 + Margin);
    const double step = NiceStep(2 * half / IntervalsWanted);
    return {std::floor((middle - half) / step) * step, std::ceil((middle + half) / step) * step};
}

double ValueTicker::getTickStep(const QCPRange &range)
{
    step_ = NiceStep(range.size() / std::max(1, mTickCount));
    return step_;
}

int ValueTicker::getSubTickCount(double)
{
    return 0;
}

QString ValueTicker::getTickLabel(double tick, const QLocale &, QChar, int)
{
    const double whole = std::round(tick / step_) * step_;
    return QString::number(whole == 0 ? 0.0 : whole, 'f', DecimalsOfStep(step_));
}

double TimeTicker::getTickStep(const QCPRange &range)
{
    longest_ = std::max(std::abs(range.lower), std::abs(range.upper));
    step_ = NiceTimeStep(range.size() / std::max(1, mTickCount));
    return step_;
}

QString TimeTicker::getTickLabel(double tick, const QLocale &locale, QChar format, int precision)
{
    // One form for all of them: the axis would be misread where it changes from one to the other.
    if (longest_ < MinutesFrom)
        return ValueTicker::getTickLabel(tick, locale, format, precision);
    return TimeText(std::round(tick / step_) * step_, DecimalsOfStep(step_));
}

QString TimeText(double seconds, int decimals)
{
    const double size = std::abs(seconds);
    const QString sign = seconds < 0 && size > 0 ? QStringLiteral("-") : QString();
    const double hours = std::floor(size / SecondsPerHour);
    const double minutes = std::floor((size - hours * SecondsPerHour) / SecondsPerMinute);
    const double rest = size - hours * SecondsPerHour - minutes * SecondsPerMinute;
    const QString restText =
        QStringLiteral("%1").arg(rest, decimals > 0 ? decimals + 3 : 2, 'f', decimals, u'0');
    if (hours > 0)
        return sign +
               QStringLiteral("%1:%2:%3").arg(int(hours)).arg(int(minutes), 2, 10, QChar(u'0')).arg(restText);
    return sign + QStringLiteral("%1:%2").arg(int(minutes)).arg(restText);
}

} // namespace quorvik
