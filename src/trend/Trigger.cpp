#include "trend/Trigger.h"

#include <cmath>

namespace quorvik
{

namespace
{

/** When a straight line between two samples meets the level. */
qint64 CrossingUs(const TrendSample &from, const TrendSample &to, std::int32_t rawLevel)
{
    const double height = double(to.rawValue) - from.rawValue;
    if (height == 0)
        return to.timeUs;
    const double part = (double(rawLevel) - from.rawValue) / height;
    return from.timeUs + std::llround(part * double(to.timeUs - from.timeUs));
}

} // namespace

std::optional<qint64> Trigger::Take(const TrendSample &sample)
{
    const std::optional<TrendSample> last = std::exchange(last_, sample);
    const bool isKnown = last && sample.isAfterGap == 0;
    if (!isKnown)
        isArmed_ = false;
    // 64 bits: a level and a band together may be more than a raw value can be.
    const std::int64_t raw = sample.rawValue;
    const std::int64_t level = setting_.rawLevel;
    const std::int64_t high = setting_.rawHigh;
    const std::int64_t band = setting_.rawBand;
    bool isMet = false;
    bool arms = false;
    std::int32_t rawCrossed = setting_.rawLevel;
    switch (setting_.kind) {
    case TriggerKind::Rising:
        isMet = raw >= level;
        arms = raw < level && raw <= level - band;
        break;
    case TriggerKind::Falling:
        isMet = raw <= level;
        arms = raw > level && raw >= level + band;
        break;
    case TriggerKind::Leaving:
        isMet = raw < level || raw > high;
        arms = raw >= level + band && raw <= high - band;
        rawCrossed = raw > high ? setting_.rawHigh : setting_.rawLevel;
        break;
    case TriggerKind::Equals:
        isMet = raw == level;
        arms = !isMet;
        break;
    case TriggerKind::None:
    case TriggerKind::Fault:
    case TriggerKind::Edit:
    case TriggerKind::ByHand:
        return std::nullopt;
    }
    if (!isMet) {
        isArmed_ = isArmed_ || arms;
        return std::nullopt;
    }
    if (!std::exchange(isArmed_, false))
        return std::nullopt;
    return setting_.kind == TriggerKind::Equals ? sample.timeUs : CrossingUs(*last, sample, rawCrossed);
}

} // namespace quorvik
