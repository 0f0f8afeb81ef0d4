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

} // namespace

double FieldLoop::Flux() const
{
    const double nominal = table_.Get(P::FieldCurrentDemand) / FullScale;
    return nominal > 0 ? std::clamp(current_ / nominal, 0.0, 1.1) : 0;
}

double FieldLoop::Demand(double seconds)
{
    double demand = table_.Get(P::FieldCurrentDemand);
    const std::int32_t armature = std::abs(table_.Get(P::ArmatureFeedback));
    const std::int32_t setpoint = table_.Get(P::CrossoverSetpoint);
    const bool isWeakening = table_.IsOn(P::CrossoverEnable) && setpoint > 0 && armature > setpoint;
    const double share = isWeakening ? double(setpoint) / armature : 1.0;
    table_.PutWithin(
        P::CrossoverOutput,
        std::max<double>(demand * share, std::min<double>(demand, table_.Get(P::MinFieldDemand))));
    if (table_.IsOn(P::CrossoverEnable))
        demand = table_.Get(P::CrossoverOutput);
    idleTime_ = table_.IsStopped() ? idleTime_ + seconds : 0;
    if (table_.IsOn(P::FieldEconomy) && idleTime_ > EconomyAfter)
        demand *= EconomyShare;
    return table_.IsOn(P::FieldEnable) ? demand : 0;
}

void FieldLoop::Tick(double seconds)
{
    const double demand = Demand(seconds);
    table_.PutWithin(P::FinalFieldDemand, demand);
    const bool isOpenLoop = table_.IsOn(P::FieldEnable) && table_.IsOn(P::OpenLoopFieldSelect);
    const double goal =
        isOpenLoop ? table_.Share(P::OpenLoopFieldSetpoint) : table_.Get(P::FinalFieldDemand) / FullScale;
    current_ += (goal - current_) * (1 - std::exp(-seconds / FieldLag));
    const double tremble = goal > 0 ? 4 : 0;
    const double currentCounts = current_ * FullScale + noise_(tremble);
    const double voltage = current_ * HotResistance;
    currentFiltered_ += (current_ - currentFiltered_) * (1 - std::exp(-seconds / FilterTime));
    voltageFiltered_ += (voltage - voltageFiltered_) * (1 - std::exp(-seconds / FilterTime));
    const double currentOffset = table_.Get(P::FieldCurrentOffset);
    const double voltageOffset = table_.Get(P::FieldVoltageOffset);
    table_.PutWithin(P::FieldCurrentFeedback, currentCounts - currentOffset);
    table_.PutWithin(P::FieldCurrentFiltered, currentFiltered_ * FullScale - currentOffset);
    table_.PutScaledWithin(P::FieldAmps, current_ * NominalAmps);
    table_.PutWithin(P::FieldVoltageFeedback, voltage * FullScale + noise_(tremble) - voltageOffset);
    table_.PutWithin(P::FieldVoltageFiltered, voltageFiltered_ * FullScale - voltageOffset);
    table_.PutScaledWithin(P::FieldVolts, voltage * NominalVolts);
    table_.PutShare(P::FieldConductionAngle, isOpenLoop ? goal : goal * HotResistance);
}

} // namespace quorvik::drive
