#include "drive/SetpointPath.h"

#include "drive/StartStopLogic.h"

#include <algorithm>
#include <cmath>

namespace quorvik::drive
{

namespace
{

// Order of the ramp times of one set.
enum RampTime { ForwardAccel, ForwardDecel, ReverseAccel, ReverseDecel };

} // namespace

double SetpointPath::Reference() const
{
    if (!IsReferenceEnabled(table_.DriveState()))
        return 0;
    if (table_.IsOn(Param::JogStatus))
        return table_.Get(Param::JogReference);
    const int selected = 2 * table_.IsOn(Param::RefSelectMSB) + table_.IsOn(Param::RefSelectLSB);
    const double reference = table_.Get(Param::Reference0 + selected);
    return table_.IsOn(Param::ReferenceInvert) ? -reference : reference;
}

double SetpointPath::Ramp(double input, double seconds) const
{
    const bool isForward = ramp_ > 0 || (ramp_ == 0 && input > 0);
    const double goal = ramp_ != 0 && std::signbit(input) != std::signbit(ramp_) ? 0 : input;
    const bool isAccel = std::abs(goal) > std::abs(ramp_);
    const int time =
        isForward ? (isAccel ? ForwardAccel : ForwardDecel) : (isAccel ? ReverseAccel : ReverseDecel);
    const int set = table_.IsOn(Param::RampSelect) ? Param::FwdAccelB : Param::FwdAccelA;
    const double fullScaleTime = table_.Scaled(set + time);
    if (fullScaleTime <= 0)
        return goal;
    const double step = FullScale / fullScaleTime * seconds;
    return goal > ramp_ ? std::min(goal, ramp_ + step) : std::max(goal, ramp_ - step);
}

void SetpointPath::Tick(double seconds)
{
    const State state = table_.DriveState();
    table_.PutWithin(Param::RampInput, Reference());
    const double input = table_.Get(Param::RampInput);
    if (!IsRampEnabled(state))
        ramp_ = 0;
    else if (table_.IsOn(Param::RampBypass))
        ramp_ = input;
    else
        ramp_ = Ramp(input, seconds);
    table_.PutWithin(Param::RampOutput, ramp_);
    table_.Put(Param::RampingStatus,
               std::abs(input - table_.Get(Param::RampOutput)) > table_.Get(Param::RampThreshold));

    const auto signedValue = [this](int value, int invert) {
        return table_.IsOn(invert) ? -table_.Get(value) : table_.Get(value);
    };
    double sum = signedValue(Param::RampOutput, Param::SetpointSumInvertA);
    if (IsReferenceEnabled(state))
        sum += signedValue(Param::SetpointB, Param::SetpointSumInvertB) +
               signedValue(Param::SetpointC, Param::SetpointSumInvertC);
    table_.PutWithin(Param::VelocityDemand, sum);
    const double forward = std::abs(table_.Get(Param::ForwardMaxSpeed));
    const double reverse = std::abs(table_.Get(Param::ReverseMaxSpeed));
    table_.PutWithin(Param::FinalVelDemand,
                     std::clamp<double>(table_.Get(Param::VelocityDemand), -reverse, forward));
}

} // namespace quorvik::drive
