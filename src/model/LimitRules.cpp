// The one rule table that ties parameters to each other: what a selector, a polarity or the drive model means
// for the limits, type and decimals of what hangs on it.

#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"

#include <QStringList>
#include <algorithm>
#include <iterator>

namespace quorvik
{

namespace
{

enum class Rule {
    DigitalInput,
    ScaledInput,
    Polarity,
    RelaySource,
    RelayAbsolute,
    FreqDigOutput,
    DriveModel
};

struct RuleRow {
    int first;
    int last;
    Rule rule;
    int lowOffset;  ///< from the selector to its first dependant
    int highOffset; ///< from the selector to its second dependant
};

// Two gaps are the drive's own and stay: the Source of relay 3 (71) triggers nothing when it changes, and the
// Off Value 93 of the digital output keeps its limits.
constexpr RuleRow Rules[] = {
    {1, 7, Rule::DigitalInput, 7, 14},    // Destination: Open Value, Closed Value
    {23, 27, Rule::ScaledInput, 25, 30},  // Destination: Bias, Gain
    {28, 32, Rule::Polarity, 10, 15},     // Polarity: 0% and 100% Calibration
    {63, 63, Rule::ScaledInput, 3, 4},    // Destination: Bias, Gain
    {69, 70, Rule::RelaySource, 0, 0},    // Source
    {72, 74, Rule::RelayAbsolute, -3, 0}, // Absolute Value, of the Source three below
    {89, 89, Rule::FreqDigOutput, 3, 4},  // Source: On Value, Off Value
    {411, 411, Rule::DriveModel, 0, 0},   // rated currents
};

/** From the Source of a relay to its thresholds. */
constexpr int RelayOffsets[] = {6, 9};

constexpr std::int32_t CalibrationMax = 2047;
constexpr std::int32_t BipolarMin = -2048;

} // namespace

void ParameterTable::RestoreLimits(int p)
{
    const ParamRecord &preset = PresetTable[p];
    ParamRecord &record = records_[p];
    record.Min = preset.Min;
    record.Max = preset.Max;
    record.Attributes = preset.Attributes;
}

void ParameterTable::ClampValue(int p)
{
    const ParamRecord &record = records_[p];
    if (record.Value < record.Min)
        SetValue(p, record.Min, ChangeCause::Rule);
    else if (record.Value > record.Max)
        SetValue(p, record.Max, ChangeCause::Rule);
}

void ParameterTable::CopyLimits(int from, int to)
{
    const ParamRecord &source = records_[from];
    ParamRecord &record = records_[to];
    record.Min = source.Min;
    record.Max = source.Max;
    record.Attributes = source.Attributes & ~Attr::NotInherited;
}

void ParameterTable::FollowSource(int p)
{
    const int absolute = p + 3;
    const std::int32_t selected = Value(p);
    for (const int offset : RelayOffsets) {
        const int dependant = p + offset;
        if (selected == 0) {
            RestoreLimits(dependant);
            continue;
        }
        CopyLimits(selected, dependant);
        if (Value(absolute) != 0)
            records_[dependant].Min = 0;
    }
}

std::vector<int> ParameterTable::LeadsOf(int p)
{
    for (const RuleRow &row : Rules)
        for (int lead = row.first; lead <= row.last; ++lead)
            switch (row.rule) {
            case Rule::RelayAbsolute:
                // Source and Absolute Value together make these limits.
                for (const int offset : RelayOffsets)
                    if (p == lead + row.lowOffset + offset)
                        return {lead + row.lowOffset, lead};
                break;
            case Rule::RelaySource:
            case Rule::DriveModel:
                break;
            default:
                if (p == lead + row.lowOffset || p == lead + row.highOffset)
                    return {lead};
            }
    return {};
}

void ParameterTable::RefreshDependentParams(int p)
{
    try {
        ApplyRule(p);
    } catch (const RuntimeFailure &failure) {
        throw failure.About(FullName(p));
    }
}

void ParameterTable::RefreshAllDependents(std::int32_t mask)
{
    QStringList failures;
    for (int i = 0; i <= LastParam; ++i) {
        if (mask != 0 && !AttrBit(mask, i))
            continue;
        try {
            RefreshDependentParams(i);
        } catch (const RuntimeFailure &failure) {
            failures.append(failure.Sentence());
        }
    }
    if (!failures.isEmpty())
        ReportFailure(RuntimeFailure(failures.join(QStringLiteral("\r\n"))));
}

void ParameterTable::ApplyRule(int p)
{
    const RuleRow *row = std::find_if(std::begin(Rules), std::end(Rules),
                                      [p](const RuleRow &rule) { return p >= rule.first && p <= rule.last; });
    if (row == std::end(Rules))
        return;
    const std::int32_t selected = Value(p);
    const int low = p + row->lowOffset;
    const int high = p + row->highOffset;
    switch (row->rule) {
    case Rule::DigitalInput:
    case Rule::ScaledInput:
        for (const int dependant : {low, high}) {
            if (selected == 0) {
                RestoreLimits(dependant);
            } else {
                CopyLimits(selected, dependant);
                ClampValue(dependant);
            }
        }
        break;
    case Rule::Polarity:
        records_[low].Min = selected == 0 ? 0 : BipolarMin;
        records_[low].Max = CalibrationMax;
        records_[high].Min = 0;
        records_[high].Max = CalibrationMax;
        ClampValue(low);
        ClampValue(high);
        break;
    case Rule::RelaySource:
        FollowSource(p);
        break;
    case Rule::RelayAbsolute:
        FollowSource(p + row->lowOffset);
        break;
    case Rule::FreqDigOutput:
        if (selected == 0) {
            RestoreLimits(low);
            RestoreLimits(high);
        } else {
            CopyLimits(selected, low);
            records_[high].Attributes = records_[selected].Attributes & ~Attr::NotInherited;
            ClampValue(low);
            ClampValue(high);
        }
        break;
    case Rule::DriveModel: {
        const std::int32_t rated = RatedAmps(selected & 15);
        SetValue(Param::DriveCurrent, rated, ChangeCause::Rule);
        ParamRecord &motor = records_[Param::MotorCurrent];
        motor.Preset = rated;
        motor.Max = rated;
        motor.Min = CLng(rated * 0.2);
        SetValue(Param::MotorCurrent, rated, ChangeCause::Rule);
        break;
    }
    }
}

} // namespace quorvik
