#include "drive/InputBlocks.h"

#include <cmath>

namespace quorvik::drive
{

namespace
{

/** The straight line from (low, atLow) to (high, atHigh), level outside it. */
double Line(double x, double low, double high, double atLow, double atHigh)
{
    if (x < low)
        return atLow;
    if (x > high || high == low)
        return atHigh;
    return (x - low) / (high - low) * (atHigh - atLow) + atLow;
}

} // namespace

void InputBlocks::AnalogInput(int member, double seconds)
{
    const double level = terminals_.analog[std::size_t(member)];
    double &filtered = filtered_[std::size_t(member)];
    const double time = table_.Scaled(Param::AnalogIn1Filtering + member);
    filtered += (level - filtered) * (time > 0 ? 1 - std::exp(-seconds / time) : 1);
    table_.PutWithin(Param::AnalogIn1Status + member, filtered + noise_(level == 0 ? 0.4 : 1.5));
    const int destination = table_.Selected(Param::AnalogIn1Destination + member);
    if (destination == 0)
        return;
    const double x = table_.Get(Param::AnalogIn1Status + member);
    const double low = table_.Get(Param::AnalogIn1ZeroCalibration + member);
    const double high = table_.Get(Param::AnalogIn1FullCalibration + member);
    const double gain = table_.Get(Param::AnalogIn1Gain + member);
    const bool isBipolar = table_.IsOn(Param::AnalogIn1Polarity + member);
    double y = 0;
    if (!isBipolar)
        y = Line(x, low, high, table_.Get(Param::AnalogIn1Bias + member), gain);
    else if (x >= high)
        y = gain;
    else if (x <= -high)
        y = -gain;
    else
        y = (x - low) / (high - low) * gain;
    if (table_.IsOn(Param::AnalogIn1Invert + member))
        y = -y;
    table_.PutWithin(destination, std::trunc(y));
}

void InputBlocks::DigitalInput(int member)
{
    const bool isClosed = terminals_.digital[std::size_t(member)];
    table_.Put(Param::DigitalIn1Status + member, isClosed);
    const int destination = table_.Selected(Param::DigitalIn1Destination + member);
    // The value goes on as it stands, whatever the destination's limits.
    if (destination != 0)
        table_.Put(
            destination,
            table_.Get((isClosed ? Param::DigitalIn1ClosedValue : Param::DigitalIn1OpenValue) + member));
}

void InputBlocks::FrequencyInput()
{
    table_.PutWithin(Param::FrequencyInStatus, terminals_.frequency);
    const int destination = table_.Selected(Param::FrequencyInDestination);
    if (destination == 0)
        return;
    const double y = Line(table_.Get(Param::FrequencyInStatus), table_.Get(Param::FrequencyInZeroCalibration),
                          table_.Get(Param::FrequencyInFullCalibration), table_.Get(Param::FrequencyInBias),
                          table_.Get(Param::FrequencyInGain));
    table_.PutWithin(destination, table_.IsOn(Param::FrequencyInSign) ? -y : y);
}

void InputBlocks::Tick(double seconds)
{
    for (int member = 0; member < int(terminals_.analog.size()); ++member)
        AnalogInput(member, seconds);
    for (int member = 0; member < int(terminals_.digital.size()); ++member)
        DigitalInput(member);
    FrequencyInput();
}

} // namespace quorvik::drive
