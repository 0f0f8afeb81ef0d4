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
    const double time = table_.Scaled(P::AnalogInFiltering + member);
    filtered += (level - filtered) * (time > 0 ? 1 - std::exp(-seconds / time) : 1);
    table_.PutWithin(P::AnalogInStatus + member, filtered + noise_(level == 0 ? 0.4 : 1.5));
    const int destination = table_.Selected(P::AnalogInDestination + member);
    if (destination == 0)
        return;
    const double x = table_.Get(P::AnalogInStatus + member);
    const double low = table_.Get(P::AnalogInLowCalibration + member);
    const double high = table_.Get(P::AnalogInHighCalibration + member);
    const double gain = table_.Get(P::AnalogInGain + member);
    const bool isBipolar = table_.IsOn(P::AnalogInPolarity + member);
    double y = 0;
    if (!isBipolar)
        y = Line(x, low, high, table_.Get(P::AnalogInBias + member), gain);
    else if (x >= high)
        y = gain;
    else if (x <= -high)
        y = -gain;
    else
        y = (x - low) / (high - low) * gain;
    if (table_.IsOn(P::AnalogInInvert + member))
        y = -y;
    table_.PutWithin(destination, std::trunc(y));
}

void InputBlocks::DigitalInput(int member)
{
    const bool isClosed = terminals_.digital[std::size_t(member)];
    table_.Put(P::DigitalInStatus + member, isClosed);
    const int destination = table_.Selected(P::DigitalInDestination + member);
    // The value goes on as it stands, whatever the destination's limits.
    if (destination != 0)
        table_.Put(destination,
                   table_.Get((isClosed ? P::DigitalInClosedValue : P::DigitalInOpenValue) + member));
}

void InputBlocks::FrequencyInput()
{
    table_.PutWithin(P::FreqInStatus, terminals_.frequency);
    const int destination = table_.Selected(P::FreqInDestination);
    if (destination == 0)
        return;
    const double y =
        Line(table_.Get(P::FreqInStatus), table_.Get(P::FreqInLowCalibration),
             table_.Get(P::FreqInHighCalibration), table_.Get(P::FreqInBias), table_.Get(P::FreqInGain));
    table_.PutWithin(destination, table_.IsOn(P::FreqInSign) ? -y : y);
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
