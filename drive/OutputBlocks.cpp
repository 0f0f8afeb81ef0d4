#include "drive/OutputBlocks.h"

#include <algorithm>
#include <cmath>

namespace quorvik::drive
{

namespace
{

constexpr int Relays = 3;
constexpr int AnalogOutputs = 2;
constexpr double ConverterFullScale = 4095;
constexpr double FrequencyFullScale = 2000; // hertz
constexpr std::int32_t DigitalMode = 1;

/** A switch between two points; which of them is the higher one says in which direction it acts. */
bool Switched(bool before, double x, double on, double off)
{
    if (on > off)
        return x >= on || (x > off && before);
    return x < off && (x <= on || before);
}

} // namespace

double OutputBlocks::Source(int selector, int absolute) const
{
    const double x = table_.Get(table_.Selected(selector));
    return table_.IsOn(absolute) ? std::abs(x) : x;
}

void OutputBlocks::Relay(int member)
{
    const int status = Param::RelayOut1Status + member;
    table_.Put(status,
               Switched(table_.IsOn(status),
                        Source(Param::RelayOut1Source + member, Param::RelayOut1AbsoluteValue + member),
                        table_.Get(Param::RelayOut1OnValue + member),
                        table_.Get(Param::RelayOut1OffValue + member)));
}

void OutputBlocks::AnalogOutput(int member)
{
    const double x = table_.Get(table_.Selected(Param::AnalogOut1Source + member));
    double y = (table_.Get(Param::AnalogOut1Gain + member) / FullScale * x / FullScale +
                table_.Get(Param::AnalogOut1Bias + member) / FullScale) *
               ConverterFullScale;
    if (table_.IsOn(Param::AnalogOut1AbsoluteValue + member))
        y = std::abs(y);
    table_.PutWithin(Param::AnalogOut1Status + member,
                     std::clamp(y, -ConverterFullScale, ConverterFullScale));
}

void OutputBlocks::FreqDigOutput()
{
    const double x = Source(Param::FreqDigitalOutSource, Param::FreqDigitalOutAbsoluteValue);
    if (table_.Get(Param::FreqDigitalOutMode) != DigitalMode) {
        const double y = (table_.Get(Param::FreqDigitalOutGain) / FullScale * std::abs(x) +
                          table_.Get(Param::FreqDigitalOutBias)) /
                         FullScale * FrequencyFullScale;
        table_.PutWithin(Param::FreqDigitalOutStatus, y);
        return;
    }
    isDigitalOn_ = Switched(isDigitalOn_, x, table_.Get(Param::FreqDigitalOutOnValue),
                            table_.Get(Param::FreqDigitalOutOffValue));
    table_.PutWithin(Param::FreqDigitalOutStatus, isDigitalOn_ != table_.IsOn(Param::FreqDigitalOutInvert));
}

void OutputBlocks::Tick()
{
    for (int member = 0; member < Relays; ++member)
        Relay(member);
    for (int member = 0; member < AnalogOutputs; ++member)
        AnalogOutput(member);
    FreqDigOutput();
}

} // namespace quorvik::drive
