#include "drive/DependentLimits.h"

#include "drive/Parameters.h"
#include "model/Model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace quorvik::drive
{

namespace
{

constexpr std::array<int, 11> RatedAmps{0, 36, 71, 107, 140, 174, 206, 256, 340, 425, 510};
constexpr std::int32_t FullCounts = 2047;

/** Neighbours that hang on as many neighbouring selectors. */
struct Dependants {
    int first;
    int selector;
    int count;
    bool takesRange = true;
};

constexpr Dependants All[] = {
    {P::DigitalInOpenValue, P::DigitalInDestination, 7},
    {P::DigitalInClosedValue, P::DigitalInDestination, 7},
    {P::AnalogInBias, P::AnalogInDestination, 5},
    {P::AnalogInGain, P::AnalogInDestination, 5},
    {P::FreqInBias, P::FreqInDestination, 1},
    {P::FreqInGain, P::FreqInDestination, 1},
    {P::FreqDigOnValue, P::FreqDigSource, 1},
    {P::FreqDigOffValue, P::FreqDigSource, 1, false},
};

void HoldInRange(ParamRecord &record)
{
    record.Value = std::min(std::max(record.Value, record.Min), record.Max);
}

void TakeLimits(Model &table, int dependant, int selector, bool takesRange)
{
    const std::int32_t selected = table.Value(selector);
    const ParamRecord &source = selected == 0 ? table.PresetTable[dependant] : table.ParamTable[selected];
    ParamRecord &record = table.ParamTable[dependant];
    record.Attributes = selected == 0 ? source.Attributes : source.Attributes & ~Attr::NotInherited;
    if (selected == 0 || takesRange) {
        record.Min = source.Min;
        record.Max = source.Max;
    }
}

void TakeRelayLimits(Model &table, int relay)
{
    for (const int first : {P::RelayOnValue, P::RelayOffValue}) {
        TakeLimits(table, first + relay, P::RelaySource + relay, true);
        // Only the size counts then.
        if (table.Value(P::RelaySource + relay) != 0 && table.Value(P::RelayAbsolute + relay) != 0)
            table.ParamTable[first + relay].Min = 0;
    }
}

void BoundCalibration(Model &table, int input)
{
    const bool isBipolar = table.Value(P::AnalogInPolarity + input) != 0;
    ParamRecord &low = table.ParamTable[P::AnalogInLowCalibration + input];
    ParamRecord &high = table.ParamTable[P::AnalogInHighCalibration + input];
    low.Min = isBipolar ? -FullCounts - 1 : 0;
    high.Min = 0;
    low.Max = high.Max = FullCounts;
    HoldInRange(low);
    HoldInRange(high);
}

void BoundMotorCurrent(Model &table)
{
    const auto rating = std::size_t(table.Value(Param::DriveModel) & 15);
    const std::int32_t amps = rating < RatedAmps.size() ? RatedAmps[rating] : 0;
    table.ParamTable[Param::DriveCurrent].Value = amps;
    ParamRecord &motor = table.ParamTable[P::MotorAmps];
    motor.Min = std::int32_t(std::nearbyint(amps * 0.2));
    motor.Max = motor.Preset = motor.Value = amps;
}

bool IsOneOf(int p, int first, int count)
{
    return p >= first && p < first + count;
}

} // namespace

void FollowWithLimits(Model &table, int p)
{
    for (const Dependants &row : All) {
        if (!IsOneOf(p, row.selector, row.count))
            continue;
        const int dependant = row.first + (p - row.selector);
        TakeLimits(table, dependant, p, row.takesRange);
        if (table.Value(p) != 0)
            HoldInRange(table.ParamTable[dependant]);
    }
    // The third relay follows its source only when its Absolute Value is written.
    if (IsOneOf(p, P::RelaySource, 2))
        TakeRelayLimits(table, p - P::RelaySource);
    else if (IsOneOf(p, P::RelayAbsolute, 3))
        TakeRelayLimits(table, p - P::RelayAbsolute);
    else if (IsOneOf(p, P::AnalogInPolarity, 5))
        BoundCalibration(table, p - P::AnalogInPolarity);
    else if (p == Param::DriveModel)
        BoundMotorCurrent(table);
}

} // namespace quorvik::drive
