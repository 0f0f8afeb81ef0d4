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
    for (int source = Param::InternalLink1Source; source < Param::InternalLink20Destination; source += 2)
        if (const int destination = table_.Selected(source + 1); destination != 0)
            table_.PutWithin(destination, table_.Get(table_.Selected(source)));
}

void FunctionBlocks::MinMax()
{
    if (table_.IsOn(Param::MinMaxReset)) {
        table_.Put(Param::MinMaxMax, 0);
        table_.Put(Param::MinMaxMin, 0);
    } else {
        const std::int32_t x = table_.Get(table_.Selected(Param::MinMaxSource));
        table_.PutWithin(Param::MinMaxMax, std::max(x, table_.Get(Param::MinMaxMax)));
        table_.PutWithin(Param::MinMaxMin, std::min(x, table_.Get(Param::MinMaxMin)));
    }
    table_.PutWithin(Param::MinMaxDifference,
                     double(table_.Get(Param::MinMaxMax)) - table_.Get(Param::MinMaxMin));
}

void FunctionBlocks::Threshold(int member)
{
    const int base = member == 0 ? Param::ThresholdAInput : Param::ThresholdBInput;
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
    const bool isHeld = table_.IsOn(Param::TimerReset) != table_.IsOn(Param::TimerResetInvert);
    timer_ = isHeld ? 0 : std::min(timer_ + seconds * 10, TimerEnd);
    table_.PutWithin(Param::Timer, std::floor(timer_));
    const bool isOver = table_.Get(Param::Timer) > table_.Get(Param::TimerThreshold);
    table_.PutWithin(Param::TimerOutput,
                     table_.Get(isOver ? Param::TimerGreaterThan : Param::TimerLessThanOrEqual));
}

void FunctionBlocks::MotorPot(double seconds)
{
    const double low = table_.Get(Param::MOPMinValue);
    const double high = std::max<double>(table_.Get(Param::MOPMaxValue), low);
    const auto step = [&](int time) {
        const double fullScaleTime = table_.Scaled(time);
        return fullScaleTime > 0 ? FullScale / fullScaleTime * seconds : FullScale;
    };
    if (table_.IsOn(Param::MOPReset)) {
        motorPot_ = table_.Get(Param::MOPResetValue);
    } else {
        if (table_.IsOn(Param::MOPIncrease))
            motorPot_ += step(Param::MOPIncreaseTime);
        if (table_.IsOn(Param::MOPDecrease))
            motorPot_ -= step(Param::MOPDecreaseTime);
        motorPot_ = std::clamp(motorPot_, low, high);
    }
    table_.PutWithin(Param::MOPOutput, motorPot_);
}

void FunctionBlocks::AuxPi(double seconds)
{
    table_.PutWithin(Param::AuxPIError,
                     double(table_.Get(Param::AuxPISetpoint)) - table_.Get(Param::AuxPIFeedback));
    double error = table_.Get(Param::AuxPIError);
    if (std::abs(error) <= table_.Get(Param::AuxPIDeadband))
        error = 0;
    const double proportional = table_.Get(Param::AuxPIPropGain) / FullScale * error;
    const double time = table_.Scaled(Param::AuxPIIntegralTime);
    const double clamp = std::abs(table_.Get(Param::AuxPIIntegralClamp));
    const bool isUnipolar = !table_.IsOn(Param::AuxPIPolarity);
    const bool isReset = table_.IsOn(Param::AuxPIReset);
    // Below zero a unipolar loop would only gather what it has to give back.
    const bool isHeld = isUnipolar && proportional < 0 && proportional + auxIntegral_ < 0;
    if (time > 0 && !isHeld)
        auxIntegral_ += proportional / time * seconds;
    auxIntegral_ = isReset ? 0 : std::clamp(auxIntegral_, -clamp, clamp);
    table_.PutWithin(Param::AuxPIPropStatus, isReset ? 0 : proportional);
    table_.PutWithin(Param::AuxPIIntegralStatus, auxIntegral_);
    table_.Put(Param::AuxPIAtLimit, std::abs(table_.Get(Param::AuxPIIntegralStatus)) >= clamp);
    const double sum = table_.Get(Param::AuxPIPropStatus) + table_.Get(Param::AuxPIIntegralStatus);
    table_.PutWithin(Param::AuxPIOutput,
                     (isUnipolar ? std::max(sum, 0.0) : sum) * table_.Get(Param::AuxPIScale) / FullScale +
                         table_.Get(Param::AuxPITrim));
}

void FunctionBlocks::Winder()
{
    // No roll is thinner than its core.
    const double core = std::max(table_.Get(Param::WinderCore), 1);
    const double ratio = core / std::max<double>(table_.Get(Param::WinderDiameter), core);
    table_.PutWithin(Param::WinderDiameterRatio, ratio * FullScale);
    table_.PutWithin(Param::WinderSpeed, table_.Get(Param::WinderLineSpeed) * ratio);
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
