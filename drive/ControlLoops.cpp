#include "drive/ControlLoops.h"

#include "drive/StartStopLogic.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvik::drive
{

namespace
{

constexpr int Steps = 10;               // of the loops in one tick of the machine
constexpr double Inertia = 0.8;         // seconds from standstill to nominal speed at nominal torque
constexpr double ArmatureLag = 0.05;    // seconds
constexpr double BridgeStep = 0.001;    // seconds, in which the bridge takes another angle
constexpr double BridgeGain = 25;       // at a gain of 100 per cent
constexpr double BridgeCeiling = 4.0;   // what the line's voltage can force
constexpr double AtOnce = 1e-6;         // seconds
constexpr double ShortestTime = 0.002;  // seconds of an integral part
constexpr double BlockedLag = 0.01;     // seconds, once the bridge no longer fires
constexpr double ArmatureDrop = 0.06;   // of the nominal voltage, at nominal current
constexpr double FrictionStatic = 0.03; // of the nominal torque
constexpr double FrictionViscous = 0.12;
constexpr double CurrentCeiling = 2.0;
constexpr double FilterTime = 0.25; // seconds
constexpr double SmallestGain = 0.5;
constexpr double LargestGain = 40.0;
constexpr std::int32_t TachSelected = 1;
constexpr std::int32_t NonRegenerative = 16;
constexpr std::int32_t ArmatureSelected = 0;
constexpr int VelocityMode = 0;
constexpr int TorqueMode = 1;

double Fraction(std::int32_t counts)
{
    return counts / FullScale;
}

void Follow(double &filtered, double value, double seconds, double time)
{
    filtered += (value - filtered) * (1 - std::exp(-seconds / time));
}

} // namespace

double ControlLoops::ArmatureVoltage(double flux) const
{
    return speed_ * flux + ArmatureDrop * current_;
}

double ControlLoops::SelectedFeedback() const
{
    switch (table_.Get(Param::FeedbackSelect)) {
    case ArmatureSelected:
        return Fraction(table_.Get(Param::AFB));
    case TachSelected:
        return Fraction(table_.Get(Param::TFB));
    default:
        return Fraction(table_.Get(Param::EFB));
    }
}

void ControlLoops::Measure(double flux)
{
    // What is computed from a measured value takes it as it trembled, as the drive's boxes show it.
    table_.PutWithin(Param::CurrentFeedback, current_ * FullScale + noise_(isEnabled_ ? 12 : 0));
    const double sign = table_.IsOn(Param::InvertFeedback) ? -1 : 1;
    const bool isTurning = std::abs(speed_) > 1e-4;
    const double tremble = isTurning ? 2 : 0;
    const double voltage = ArmatureVoltage(flux) * FullScale + noise_(tremble);
    // The compensation is what the armature drops at nominal current.
    const double drop = Fraction(table_.Get(Param::IRComp)) * table_.Get(Param::CurrentFeedback);
    table_.PutScaledWithin(Param::ArmatureVolts,
                           voltage / FullScale * table_.Scaled(Param::NameplateMotorVoltage));
    table_.PutWithin(Param::AFB, voltage - drop);
    table_.PutWithin(Param::TFB, sign * terminals_.tachometer * speed_ * FullScale + noise_(tremble));
    const double encoderRpm = table_.Get(Param::FullEncoderRPM);
    const double scale = encoderRpm > 0 ? table_.Get(Param::FullRPMLevel) / encoderRpm : 0;
    table_.PutWithin(Param::EFB, sign * terminals_.encoder * speed_ * scale * FullScale);
    table_.PutWithin(Param::VelFeedback, SelectedFeedback() * FullScale - table_.Get(Param::VFBOffset));
    table_.PutWithin(Param::VelError, table_.Get(Param::FinalVelDemand) - table_.Get(Param::VelFeedback));
}

void ControlLoops::ZeroSpeedLogic()
{
    const int demand = DriveMode() == VelocityMode ? Param::FinalVelDemand : Param::FinalIDemand;
    const bool isZeroAsked = std::abs(table_.Get(demand)) <= table_.Get(Param::ZeroSpeedSet);
    const bool atZeroSpeed = std::abs(table_.Get(Param::VelFeedback)) <= table_.Get(Param::ZeroSpeedSet);
    table_.Put(Param::AtZeroSet, isZeroAsked);
    table_.Put(Param::AtZeroSpeed, atZeroSpeed);
    table_.Put(Param::AtStandstill, isZeroAsked && atZeroSpeed);
    const State state = table_.DriveState();
    const bool isFed = IsRampEnabled(state) || state == State::QuickStop;
    isEnabled_ = isFed && !(table_.IsOn(Param::StandstillLogic) && isZeroAsked && atZeroSpeed);
    table_.Put(Param::LoopEnable, isEnabled_);
}

void ControlLoops::VelocityStep(double seconds)
{
    const double demand = Fraction(table_.Get(Param::FinalVelDemand));
    if (!isEnabled_) {
        integral_ = 0;
        demandLagged_ = demand;
        velocityOutput_ = 0;
        return;
    }
    const bool isSetB = table_.IsOn(Param::GainSelect);
    const double gain =
        std::clamp(table_.Scaled(isSetB ? Param::PropGainB : Param::PropGainA), SmallestGain, LargestGain);
    const double askedTime = table_.Scaled(isSetB ? Param::IntegralTimeB : Param::IntegralTimeA);
    // A sudden change of the demand is let in slowly, so that the integral part does not overshoot.
    const double overshootGain = table_.Scaled(isSetB ? Param::OvershootGainB : Param::OvershootGainA) / 100;
    Follow(demandLagged_, demand, seconds, std::max(overshootGain * askedTime, AtOnce));
    const double error = demandLagged_ - SelectedFeedback() + Fraction(table_.Get(Param::VFBOffset));
    const double clamp = std::abs(Fraction(table_.Get(Param::IntegralClamp)));
    // What the ceiling cuts off must not be gathered, or the motor would swing past its demand.
    const bool isCut = std::abs(gain * error + integral_) > CurrentCeiling && gain * error * integral_ >= 0;
    if (askedTime > 0 && !isCut) {
        // Below this the machine would swing without an end.
        const double time = std::max(askedTime, Inertia / gain / 4);
        integral_ = std::clamp(integral_ + gain * error / time * seconds, -clamp, clamp);
    }
    velocityOutput_ = std::clamp(gain * error + integral_, -CurrentCeiling, CurrentCeiling);
}

int ControlLoops::DriveMode() const
{
    return 2 * table_.IsOn(Param::DriveModeMSB) + table_.IsOn(Param::DriveModeLSB);
}

double ControlLoops::CurrentDemand() const
{
    switch (DriveMode()) {
    case VelocityMode:
        return table_.Get(Param::VelLoopOutput);
    case TorqueMode:
        return IsReferenceEnabled(table_.DriveState()) ? table_.Get(Param::TorqueReference) : 0;
    default:
        return 0;
    }
}

double ControlLoops::LimitedDemand() const
{
    double sum = Fraction(table_.Get(Param::AuxIDemand)) + Fraction(table_.Get(Param::CurrentDemand));
    double high = Fraction(table_.Get(Param::PositiveILimit));
    double low = Fraction(table_.Get(Param::NegativeILimit));
    if (table_.IsOn(Param::ArmIFoldbackStatus)) {
        high = std::min(high, 1.0);
        low = std::max(low, -1.0);
    }
    if (sum > 0)
        sum = std::min(sum, high);
    else if (sum < 0)
        sum = std::max(sum, low);
    return sum;
}

double ControlLoops::PossibleCurrent(double demand) const
{
    if (!isEnabled_)
        return 0;
    if (table_.IsOn(Param::OpenLoopArmSelect))
        return table_.Share(Param::OpenLoopArmSetpoint);
    return CanReverseCurrent() ? demand : std::max(demand, 0.0);
}

bool ControlLoops::CanReverseCurrent() const
{
    // With one bridge there is no current the other way.
    return (table_.Get(Param::DriveModel) & NonRegenerative) == 0 && table_.IsOn(Param::RegenMode);
}

void ControlLoops::CurrentStep(double seconds, double possible)
{
    const bool isLoop = isEnabled_ && !table_.IsOn(Param::OpenLoopArmSelect);
    const bool isOneWay = !CanReverseCurrent();
    const double gain = BridgeGain * table_.Scaled(Param::IProportionalGain) / 100;
    const double askedTime = table_.Scaled(Param::IIntegralTime);
    const int steps = std::max(int(std::lround(seconds / BridgeStep)), 1);
    for (int i = 0; i < steps; ++i) {
        const double error = possible - current_;
        double told = possible;
        if (isLoop) {
            told = std::clamp(gain * error + bridgeIntegral_, -BridgeCeiling, BridgeCeiling);
            if (askedTime > 0)
                bridgeIntegral_ = std::clamp(bridgeIntegral_ + gain * error * BridgeStep /
                                                                   std::max(askedTime, ShortestTime),
                                             -BridgeCeiling, BridgeCeiling);
        } else {
            bridgeIntegral_ = 0;
        }
        // A thyristor that has fired conducts on: a new angle counts some milliseconds later.
        std::rotate(bridge_.begin(), bridge_.begin() + 1, bridge_.end());
        bridge_.back() = told;
        Follow(current_, bridge_.front(), BridgeStep, isLoop ? ArmatureLag : BlockedLag);
        current_ = std::clamp(current_, isOneWay ? 0 : -CurrentCeiling, CurrentCeiling);
    }
}

void ControlLoops::MotorStep(double seconds, double demand, double flux)
{
    CurrentStep(seconds, PossibleCurrent(demand));
    const double drive = current_ * flux;
    const double resisting = FrictionStatic + std::abs(load_);
    if (speed_ == 0 && std::abs(drive) <= resisting)
        return;
    const double direction = speed_ != 0 ? std::copysign(1.0, speed_) : std::copysign(1.0, drive);
    const double torque = drive - direction * resisting - FrictionViscous * speed_;
    const double next = speed_ + torque / Inertia * seconds;
    // Friction brings a shaft to rest; it never turns it round.
    speed_ = speed_ * next < 0 && std::abs(drive) <= resisting ? 0 : std::clamp(next, -3.0, 3.0);
}

void ControlLoops::Tick(double seconds, double flux)
{
    const double step = seconds / Steps;
    for (int i = 0; i < Steps; ++i) {
        Measure(flux);
        ZeroSpeedLogic();
        VelocityStep(step);
        table_.PutWithin(Param::VelLoopOutput, velocityOutput_ * FullScale);
        table_.PutWithin(Param::CurrentDemand, CurrentDemand());
        const double demand = LimitedDemand();
        table_.PutWithin(Param::FinalIDemand, demand * FullScale);
        MotorStep(step, demand, flux);
    }
    Show(flux, seconds);
}

void ControlLoops::Show(double flux, double seconds)
{
    table_.PutWithin(Param::CurrentError,
                     table_.Get(Param::FinalIDemand) - table_.Get(Param::CurrentFeedback));
    Follow(currentFiltered_, current_, seconds, FilterTime);
    Follow(demandFiltered_, Fraction(table_.Get(Param::FinalIDemand)), seconds, FilterTime);
    Follow(feedbackFiltered_, Fraction(table_.Get(Param::VelFeedback)), seconds, FilterTime);
    table_.PutWithin(Param::CurrentFeedbackFiltered, currentFiltered_ * FullScale);
    table_.PutWithin(Param::FinalIDemandFiltered, demandFiltered_ * FullScale);
    table_.PutWithin(Param::VelFeedbackFiltered, feedbackFiltered_ * FullScale);
    table_.PutScaledWithin(Param::ArmatureAmps,
                           Fraction(table_.Get(Param::CurrentFeedback)) * table_.Get(Param::NameplateMotorI));
    const double volts = ArmatureVoltage(flux);
    const double closedLoop = std::min(0.1 + 0.7 * std::abs(volts) + 0.2 * std::abs(current_), 1.0);
    const double angle =
        table_.IsOn(Param::OpenLoopArmSelect) ? table_.Share(Param::OpenLoopArmSetpoint) : closedLoop;
    table_.PutShare(Param::ConductionAngle, isEnabled_ ? angle : 0);
    table_.PutWithin(Param::MotorRPM,
                     Fraction(table_.Get(Param::VelFeedbackFiltered)) * table_.Get(Param::FullRPMLevel));
}

} // namespace quorvik::drive
