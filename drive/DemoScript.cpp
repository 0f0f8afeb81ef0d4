#include "drive/DemoScript.h"

#include <cmath>
#include <numbers>

namespace quorvik::drive
{

namespace
{

constexpr double Cycle = 90; // seconds from one start to the next
constexpr double FirstStart = 1;
constexpr double RunFor = 75; // seconds
constexpr double SwingTime = 30;
constexpr double SwingMiddle = 0.55; // of the input's range
constexpr double SwingWidth = 0.3;

} // namespace

void DemoScript::Ask(int p, bool on)
{
    for (int member = 0; member < int(terminals_.digital.size()); ++member)
        if (table_.Selected(Param::DigitalIn1Destination + member) == p)
            terminals_.digital[std::size_t(member)] =
                table_.IsOn(Param::DigitalIn1ClosedValue + member) == on;
}

void DemoScript::Tick(double seconds)
{
    time_ += seconds;
    table_.Put(Param::RunEnable, 1);
    table_.Put(Param::FieldEnable, 1);
    const double inCycle = std::fmod(time_, Cycle);
    const bool isRunning = inCycle >= FirstStart && inCycle < FirstStart + RunFor;
    Ask(Param::Run, isRunning);
    Ask(Param::Stop, !isRunning);
    Ask(Param::Jog, false);
    for (int member = 0; member < int(terminals_.analog.size()); ++member) {
        const double phase = 2 * std::numbers::pi * time_ / (SwingTime * (member + 1));
        const double high = table_.Get(Param::AnalogIn1FullCalibration + member);
        terminals_.analog[std::size_t(member)] =
            std::int32_t((SwingMiddle + SwingWidth * std::sin(phase)) * high);
    }
    terminals_.frequency = std::int32_t(20000 + 5000 * std::sin(time_ / 7));
}

} // namespace quorvik::drive
