#include "drive/FieldLoop.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvik::drive
{

namespace
{

constexpr double NominalAmps = 8.0;
constexpr double NominalVolts = 300.0;
constexpr double FieldLag = 0.35;     // seconds
constexpr double FilterTime = 0.5;    // seconds
constexpr double EconomyAfter = 30.0; // seconds at rest
constexpr double EconomyShare = 0.5;
constexpr double HotResistance = 0.9; // of the nominal voltage, at nominal current
constexpr double CrossoverGain = 0.5; // field current taken away a second, to the voltage above the setpoint

} // namespace

double FieldLoop::Flux() const
{
    const double nominal = table_.Get(Param::FieldIDemand) / FullScale;
    return nominal > 0 ? std::clamp(current_ / nominal, 0.0, 1.1) : 0;
}

void FieldLoop::Crossover(double seconds)
{
    const double error = double(table_.Get(Param::FieldCrossoverSetpoint)) - std::abs(table_.Get(Param::AFB));
    const double most =
        std::max(table_.Get(Param::FieldIDemand) - table_.Get(Param::MinFieldCurrentDemand), 0);
    crossover_ = table_.IsOn(Param::FieldCrossoverEnable)
                     ? std::clamp(crossover_ - CrossoverGain * error * seconds, 0.0, most)
                     : 0;
    table_.PutWithin(Param::FieldCrossoverOutput, crossover_);
}

double FieldLoop::Demand(double seconds)
{
    const double demand = table_.Get(Param::FieldIDemand) - table_.Get(Param::FieldCrossoverOutput);
    idleTime_ = table_.IsStopped() ? idleTime_ + seconds : 0;
    const bool isSaving = table_.IsOn(Param::FieldEconomyEnable) && idleTime_ > EconomyAfter;
    return isSaving ? demand * EconomyShare : demand;
}

double FieldLoop::Goal(bool isOpenLoop) const
{
    if (!table_.IsOn(Param::FieldEnable))
        return 0;
    if (isOpenLoop)
        return table_.Share(Param::OpenLoopFieldSetpoint);
    // The loop brings the feedback to its demand, whatever the offset takes from the feedback.
    const double demand = table_.Get(Param::FinalFieldIDemand) + table_.Get(Param::FieldIFBOffset);
    return std::max(demand / FullScale, 0.0);
}

void FieldLoop::Tick(double seconds)
{
    Crossover(seconds);
    table_.PutWithin(Param::FinalFieldIDemand, Demand(seconds));
    const bool isOpenLoop = table_.IsOn(Param::OpenLoopFieldSelect);
    const double goal = Goal(isOpenLoop);
    current_ += (goal - current_) * (1 - std::exp(-seconds / FieldLag));
    const double tremble = goal > 0 ? 4 : 0;
    const double voltage = current_ * HotResistance;
    const auto filter = [seconds](double &filtered, double value) {
        filtered += (value - filtered) * (1 - std::exp(-seconds / FilterTime));
    };
    const double current = current_ * FullScale - table_.Get(Param::FieldIFBOffset);
    table_.PutWithin(Param::FieldIFeedback, current + noise_(tremble));
    // The loop's filter turns the sign, so that demand and feedback are added.
    filter(currentFiltered_, -current);
    table_.PutWithin(Param::FieldIFeedbackFiltered, currentFiltered_);
    table_.PutScaledWithin(Param::FieldAmps, table_.Get(Param::FieldIFeedback) / FullScale * NominalAmps);
    const double volts = voltage * FullScale - table_.Get(Param::FieldVFBOffset);
    table_.PutWithin(Param::FieldVoltageFeedback, volts + noise_(tremble));
    filter(voltageFiltered_, volts);
    table_.PutWithin(Param::FieldVFBFiltered, voltageFiltered_);
    table_.PutScaledWithin(Param::FieldVolts, table_.Get(Param::FieldVFBFiltered) / FullScale * NominalVolts);
    table_.PutShare(Param::FieldCondAngle, isOpenLoop ? goal : goal * HotResistance);
}

} // namespace quorvik::drive
