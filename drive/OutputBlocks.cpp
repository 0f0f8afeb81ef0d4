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
    const int status = P::RelayStatus + member;
    table_.Put(status,
               Switched(table_.IsOn(status), Source(P::RelaySource + member, P::RelayAbsolute + member),
                        table_.Get(P::RelayOnValue + member), table_.Get(P::RelayOffValue + member)));
}

void OutputBlocks::AnalogOutput(int member)
{
    const double x = table_.Get(table_.Selected(P::AnalogOutSource + member));
    double y = (table_.Get(P::AnalogOutGain + member) / FullScale * x / FullScale +
                table_.Get(P::AnalogOutBias + member) / FullScale) *
               ConverterFullScale;
    if (table_.IsOn(P::AnalogOutAbsolute + member))
        y = std::abs(y);
    table_.PutWithin(P::AnalogOutStatus + member, std::clamp(y, -ConverterFullScale, ConverterFullScale));
}

void OutputBlocks::FreqDigOutput()
{
    const double x = Source(P::FreqDigSource, P::FreqDigAbsolute);
    if (table_.Get(P::FreqDigMode) != DigitalMode) {
        const double y = (table_.Get(P::FreqDigGain) / FullScale * std::abs(x) + table_.Get(P::FreqDigBias)) /
                         FullScale * FrequencyFullScale;
        table_.PutWithin(P::FreqDigStatus, y);
        return;
    }
    isDigitalOn_ = Switched(isDigitalOn_, x, table_.Get(P::FreqDigOnValue), table_.Get(P::FreqDigOffValue));
    table_.PutWithin(P::FreqDigStatus, isDigitalOn_ != table_.IsOn(P::FreqDigInvert));
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
