#include "drive/FunctionBlocks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvik::drive
{

namespace
{

constexpr double TimerEnd = 2400; // tenths of a second
// From the first parameter of a threshold block.
enum ThresholdRow { Input, Level, Hysteresis, Low, High, Output };

} // namespace

void FunctionBlocks::InternalLinks()
{
    for (int source = P::LinkSource; source < P::LinkLast; source += 2)
        if (const int destination = table_.Selected(source + 1); destination != 0)
            table_.PutWithin(destination, table_.Get(table_.Selected(source)));
}

void FunctionBlocks::MinMax()
{
    if (table_.IsOn(P::MinMaxReset)) {
        table_.Put(P::MinMaxMax, 0);
        table_.Put(P::MinMaxMin, 0);
    } else {
        const std::int32_t x = table_.Get(table_.Selected(P::MinMaxSource));
        table_.PutWithin(P::MinMaxMax, std::max(x, table_.Get(P::MinMaxMax)));
        table_.PutWithin(P::MinMaxMin, std::min(x, table_.Get(P::MinMaxMin)));
    }
    table_.PutWithin(P::MinMaxDifference, double(table_.Get(P::MinMaxMax)) - table_.Get(P::MinMaxMin));
}

void FunctionBlocks::Threshold(int member)
{
    const int base = member == 0 ? P::ThresholdA : P::ThresholdB;
    bool &isOn = thresholdOn_[std::size_t(member)];
    const std::int32_t x = std::abs(table_.Get(base + Input));
    const std::int32_t level = table_.Get(base + Level);
    const std::int32_t hysteresis = table_.Get(base + Hysteresis);
    if (isOn)
        isOn = x > level - hysteresis && hysteresis <= level;
    else
        isOn = x > level + hysteresis;
    table_.PutWithin(base + Output, table_.Get(base + (isOn ? High : Low)));
}

void FunctionBlocks::Timer(double seconds)
{
    const bool isHeld = table_.IsOn(P::TimerReset) != table_.IsOn(P::TimerResetInvert);
    timer_ = isHeld ? 0 : std::min(timer_ + seconds * 10, TimerEnd);
    table_.PutWithin(P::TimerCount, std::floor(timer_));
    const bool isOver = table_.Get(P::TimerCount) > table_.Get(P::TimerThreshold);
    table_.PutWithin(P::TimerOutput, table_.Get(isOver ? P::TimerHigh : P::TimerLow));
}

void FunctionBlocks::MotorPot(double seconds)
{
    const double low = table_.Get(P::MopMin);
    const double high = std::max<double>(table_.Get(P::MopMax), low);
    const auto step = [&](int time) {
        const double fullScaleTime = table_.Scaled(time);
        return fullScaleTime > 0 ? FullScale / fullScaleTime * seconds : FullScale;
    };
    if (table_.IsOn(P::MopReset)) {
        motorPot_ = table_.Get(P::MopResetValue);
    } else {
        if (table_.IsOn(P::MopIncrease))
            motorPot_ += step(P::MopIncreaseTime);
        if (table_.IsOn(P::MopDecrease))
            motorPot_ -= step(P::MopDecreaseTime);
        motorPot_ = std::clamp(motorPot_, low, high);
    }
    table_.PutWithin(P::MopOutput, motorPot_);
}

void FunctionBlocks::AuxPi(double seconds)
{
    table_.PutWithin(P::AuxError, double(table_.Get(P::AuxSetpoint)) - table_.Get(P::AuxFeedback));
    double error = table_.Get(P::AuxError);
    if (std::abs(error) <= table_.Get(P::AuxDeadband))
        error = 0;
    const double proportional = table_.Get(P::AuxPropGain) / FullScale * error;
    const double time = table_.Scaled(P::AuxIntegralTime);
    const double clamp = std::abs(table_.Get(P::AuxIntegralClamp));
    const bool isUnipolar = !table_.IsOn(P::AuxPolarity);
    const bool isReset = table_.IsOn(P::AuxReset);
    // Below zero a unipolar loop would only gather what it has to give back.
    const bool isHeld = isUnipolar && proportional < 0 && proportional + auxIntegral_ < 0;
    if (time > 0 && !isHeld)
        auxIntegral_ += proportional / time * seconds;
    auxIntegral_ = isReset ? 0 : std::clamp(auxIntegral_, -clamp, clamp);
    table_.PutWithin(P::AuxPropStatus, isReset ? 0 : proportional);
    table_.PutWithin(P::AuxIntegralStatus, auxIntegral_);
    table_.Put(P::AuxAtLimit, std::abs(table_.Get(P::AuxIntegralStatus)) >= clamp);
    const double sum = table_.Get(P::AuxPropStatus) + table_.Get(P::AuxIntegralStatus);
    table_.PutWithin(P::AuxOutput,
                     (isUnipolar ? std::max(sum, 0.0) : sum) * table_.Get(P::AuxScale) / FullScale +
                         table_.Get(P::AuxTrim));
}

void FunctionBlocks::Winder()
{
    // No roll is thinner than its core.
    const double core = std::max(table_.Get(P::WinderCore), 1);
    const double ratio = core / std::max<double>(table_.Get(P::WinderDiameter), core);
    table_.PutWithin(P::WinderRatio, ratio * FullScale);
    table_.PutWithin(P::WinderSpeed, table_.Get(P::WinderLineSpeed) * ratio);
}

void FunctionBlocks::Tick(double seconds)
{
    InternalLinks();
    MinMax();
    for (int member = 0; member < int(thresholdOn_.size()); ++member)
        Threshold(member);
    Timer(seconds);
    MotorPot(seconds);
    AuxPi(seconds);
    Winder();
}

} // namespace quorvik::drive
