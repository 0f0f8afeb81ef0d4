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
    const double nominal = table_.Get(P::FieldCurrentDemand) / FullScale;
    return nominal > 0 ? std::clamp(current_ / nominal, 0.0, 1.1) : 0;
}

void FieldLoop::Crossover(double seconds)
{
    const double error = double(table_.Get(P::CrossoverSetpoint)) - std::abs(table_.Get(P::ArmatureFeedback));
    const double most = std::max(table_.Get(P::FieldCurrentDemand) - table_.Get(P::MinFieldDemand), 0);
    crossover_ = table_.IsOn(P::CrossoverEnable)
                     ? std::clamp(crossover_ - CrossoverGain * error * seconds, 0.0, most)
                     : 0;
    table_.PutWithin(P::CrossoverOutput, crossover_);
}

double FieldLoop::Demand(double seconds)
{
    const double demand = table_.Get(P::FieldCurrentDemand) - table_.Get(P::CrossoverOutput);
    idleTime_ = table_.IsStopped() ? idleTime_ + seconds : 0;
    const bool isSaving = table_.IsOn(P::FieldEconomy) && idleTime_ > EconomyAfter;
    return isSaving ? demand * EconomyShare : demand;
}

double FieldLoop::Goal(bool isOpenLoop) const
{
    if (!table_.IsOn(P::FieldEnable))
        return 0;
    if (isOpenLoop)
        return table_.Share(P::OpenLoopFieldSetpoint);
    // The loop brings the feedback to its demand, whatever the offset takes from the feedback.
    const double demand = table_.Get(P::FinalFieldDemand) + table_.Get(P::FieldCurrentOffset);
    return std::max(demand / FullScale, 0.0);
}

void FieldLoop::Tick(double seconds)
{
    Crossover(seconds);
    table_.PutWithin(P::FinalFieldDemand, Demand(seconds));
    const bool isOpenLoop = table_.IsOn(P::OpenLoopFieldSelect);
    const double goal = Goal(isOpenLoop);
    current_ += (goal - current_) * (1 - std::exp(-seconds / FieldLag));
    const double tremble = goal > 0 ? 4 : 0;
    const double voltage = current_ * HotResistance;
    const auto filter = [seconds](double &filtered, double value) {
        filtered += (value - filtered) * (1 - std::exp(-seconds / FilterTime));
    };
    const double current = current_ * FullScale - table_.Get(P::FieldCurrentOffset);
    table_.PutWithin(P::FieldCurrentFeedback, current + noise_(tremble));
    // The loop's filter turns the sign, so that demand and feedback are added.
    filter(currentFiltered_, -current);
    table_.PutWithin(P::FieldCurrentFiltered, currentFiltered_);
    table_.PutScaledWithin(P::FieldAmps, table_.Get(P::FieldCurrentFeedback) / FullScale * NominalAmps);
    const double volts = voltage * FullScale - table_.Get(P::FieldVoltageOffset);
    table_.PutWithin(P::FieldVoltageFeedback, volts + noise_(tremble));
    filter(voltageFiltered_, volts);
    table_.PutWithin(P::FieldVoltageFiltered, voltageFiltered_);
    table_.PutScaledWithin(P::FieldVolts, table_.Get(P::FieldVoltageFiltered) / FullScale * NominalVolts);
    table_.PutShare(P::FieldConductionAngle, isOpenLoop ? goal : goal * HotResistance);
}

} // namespace quorvik::drive
