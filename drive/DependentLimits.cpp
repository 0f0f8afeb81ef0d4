#include "drive/DependentLimits.h"

#include "drive/Parameters.h"
#include "model/ParameterTable.h"

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
    {Param::DigitalIn1OpenValue, Param::DigitalIn1Destination, 7},
    {Param::DigitalIn1ClosedValue, Param::DigitalIn1Destination, 7},
    {Param::AnalogIn1Bias, Param::AnalogIn1Destination, 5},
    {Param::AnalogIn1Gain, Param::AnalogIn1Destination, 5},
    {Param::FrequencyInBias, Param::FrequencyInDestination, 1},
    {Param::FrequencyInGain, Param::FrequencyInDestination, 1},
    {Param::FreqDigitalOutOnValue, Param::FreqDigitalOutSource, 1},
    {Param::FreqDigitalOutOffValue, Param::FreqDigitalOutSource, 1, false},
};

void HoldInRange(ParamRecord &record)
{
    record.Value = std::min(std::max(record.Value, record.Min), record.Max);
}

void TakeLimits(ParameterTable &table, int dependant, int selector, bool takesRange)
{
    const std::int32_t selected = table.Value(selector);
    const ParamRecord &source = selected == 0 ? table.PresetTable[dependant] : table[selected];
    ParamRecord &record = table.Row(dependant);
    record.Attributes = selected == 0 ? source.Attributes : source.Attributes & ~Attr::NotInherited;
    if (selected == 0 || takesRange) {
        record.Min = source.Min;
        record.Max = source.Max;
    }
}

void TakeRelayLimits(ParameterTable &table, int relay)
{
    for (const int first : {Param::RelayOut1OnValue, Param::RelayOut1OffValue}) {
        TakeLimits(table, first + relay, Param::RelayOut1Source + relay, true);
        // Only the size counts then.
        if (table.Value(Param::RelayOut1Source + relay) != 0 &&
            table.Value(Param::RelayOut1AbsoluteValue + relay) != 0)
            table.Row(first + relay).Min = 0;
    }
}

void BoundCalibration(ParameterTable &table, int input)
{
    const bool isBipolar = table.Value(Param::AnalogIn1Polarity + input) != 0;
    ParamRecord &low = table.Row(Param::AnalogIn1ZeroCalibration + input);
    ParamRecord &high = table.Row(Param::AnalogIn1FullCalibration + input);
    low.Min = isBipolar ? -FullCounts - 1 : 0;
    high.Min = 0;
    low.Max = high.Max = FullCounts;
    HoldInRange(low);
    HoldInRange(high);
}

void BoundMotorCurrent(ParameterTable &table)
{
    const auto rating = std::size_t(table.Value(Param::DriveModel) & 15);
    const std::int32_t amps = rating < RatedAmps.size() ? RatedAmps[rating] : 0;
    table.Row(Param::DriveCurrent).Value = amps;
    ParamRecord &motor = table.Row(Param::NameplateMotorI);
    motor.Min = std::int32_t(std::nearbyint(amps * 0.2));
    motor.Max = motor.Preset = motor.Value = amps;
}

bool IsOneOf(int p, int first, int count)
{
    return p >= first && p < first + count;
}

} // namespace

void FollowWithLimits(ParameterTable &table, int p)
{
    for (const Dependants &row : All) {
        if (!IsOneOf(p, row.selector, row.count))
            continue;
        const int dependant = row.first + (p - row.selector);
        TakeLimits(table, dependant, p, row.takesRange);
        if (table.Value(p) != 0)
            HoldInRange(table.Row(dependant));
    }
    // The third relay follows its source only when its Absolute Value is written.
    if (IsOneOf(p, Param::RelayOut1Source, 2))
        TakeRelayLimits(table, p - Param::RelayOut1Source);
    else if (IsOneOf(p, Param::RelayOut1AbsoluteValue, 3))
        TakeRelayLimits(table, p - Param::RelayOut1AbsoluteValue);
    else if (IsOneOf(p, Param::AnalogIn1Polarity, 5))
        BoundCalibration(table, p - Param::AnalogIn1Polarity);
    else if (p == Param::DriveModel)
        BoundMotorCurrent(table);
}

} // namespace quorvik::drive
