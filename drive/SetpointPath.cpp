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
    if (table_.IsOn(P::JogStatus))
        return table_.Get(P::JogReference);
    const int selected = 2 * table_.IsOn(P::RefSelectHigh) + table_.IsOn(P::RefSelectLow);
    const double reference = table_.Get(P::Reference0 + selected);
    return table_.IsOn(P::ReferenceInvert) ? -reference : reference;
}

double SetpointPath::Ramp(double input, double seconds) const
{
    const bool isForward = ramp_ > 0 || (ramp_ == 0 && input > 0);
    const double goal = ramp_ != 0 && std::signbit(input) != std::signbit(ramp_) ? 0 : input;
    const bool isAccel = std::abs(goal) > std::abs(ramp_);
    const int time =
        isForward ? (isAccel ? ForwardAccel : ForwardDecel) : (isAccel ? ReverseAccel : ReverseDecel);
    const int set = table_.IsOn(P::RampSelect) ? P::RampTimesB : P::RampTimesA;
    const double fullScaleTime = table_.Scaled(set + time);
    if (fullScaleTime <= 0)
        return goal;
    const double step = FullScale / fullScaleTime * seconds;
    return goal > ramp_ ? std::min(goal, ramp_ + step) : std::max(goal, ramp_ - step);
}

void SetpointPath::Tick(double seconds)
{
    const State state = table_.DriveState();
    table_.PutWithin(P::RampInput, Reference());
    const double input = table_.Get(P::RampInput);
    if (!IsRampEnabled(state))
        ramp_ = 0;
    else if (table_.IsOn(P::RampBypass))
        ramp_ = input;
    else
        ramp_ = Ramp(input, seconds);
    table_.PutWithin(P::RampOutput, ramp_);
    table_.Put(P::RampingStatus,
               std::abs(input - ramp_) > table_.Get(P::RampThreshold) && IsRampEnabled(state));

    const auto signedValue = [this](int value, int invert) {
        return table_.IsOn(invert) ? -table_.Get(value) : table_.Get(value);
    };
    double sum = signedValue(P::RampOutput, P::InvertA);
    if (IsReferenceEnabled(state))
        sum += signedValue(P::SetpointB, P::InvertB) + signedValue(P::SetpointC, P::InvertC);
    table_.PutWithin(P::VelocityDemand, sum);
    const double forward = std::abs(table_.Get(P::ForwardMaxSpeed));
    const double reverse = std::abs(table_.Get(P::ReverseMaxSpeed));
    table_.PutWithin(P::FinalVelocityDemand,
                     std::clamp<double>(table_.Get(P::VelocityDemand), -reverse, forward));
}

} // namespace quorvik::drive
