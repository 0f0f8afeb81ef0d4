#include "drive/StartStopLogic.h"

#include <algorithm>
#include <cstdlib>

namespace quorvik::drive
{

namespace
{

constexpr std::int32_t ThreeWire = 0;
constexpr std::int32_t QuickStopMode = 1;
constexpr std::int32_t CoastStopMode = 2;
constexpr std::int32_t SmallestZeroSpeed =
    50; // half a per cent: noise alone must not keep a stop from ending

} // namespace

bool IsRampEnabled(State state)
{
    return state >= State::Run && state <= State::JogStop;
}

bool IsContactorClosed(State state)
{
    return state >= State::Run && state <= State::QuickStop;
}

bool IsReferenceEnabled(State state)
{
    return state == State::Run || state == State::Jog;
}

void StartStopLogic::PowerOn()
{
    state_ = State::Stop;
    runBefore_ = true;
    jogBefore_ = true;
    table_.Put(Param::DriveState, std::int32_t(state_));
}

bool StartStopLogic::IsAtZero() const
{
    const std::int32_t zero = std::max(table_.Get(Param::ZeroSpeedSet), SmallestZeroSpeed);
    return std::abs(table_.Get(Param::VelFeedback)) <= zero &&
           std::abs(table_.Get(Param::RampOutput)) <= zero;
}

State StartStopLogic::StopBy() const
{
    switch (table_.Get(Param::StopMode)) {
    case QuickStopMode:
        return State::QuickStop;
    case CoastStopMode:
        return State::CoastStop;
    default:
        return State::RampStop;
    }
}

State StartStopLogic::Next(State state, double seconds)
{
    const bool run = table_.IsOn(Param::Run);
    const bool jog = table_.IsOn(Param::Jog);
    const bool enabled = table_.IsOn(Param::RunEnable);
    const bool isMaintained = table_.Get(Param::LogicSelect) != ThreeWire;
    // With two wires there is no stop input to open: the run contact starts and stops alone.
    const bool stop = table_.IsOn(Param::Stop) && !isMaintained;
    const bool runAsked = run && !runBefore_ && !stop && enabled;
    const bool jogAsked = jog && !jogBefore_ && !stop && enabled;
    runBefore_ = run;
    jogBefore_ = jog;

    if (table_.IsOn(Param::LatchedFault))
        return State::EStop;
    if (IsContactorClosed(state) && !enabled)
        return State::CoastStop;
    switch (state) {
    case State::EStop:
        return State::Stop;
    case State::Stop:
        return runAsked ? State::Run : jogAsked ? State::Jog : State::Stop;
    case State::Run:
        return stop || (isMaintained && !run) ? StopBy() : State::Run;
    case State::RampStop:
        return runAsked ? State::Run : IsAtZero() ? State::Stop : State::RampStop;
    case State::Jog:
        return jog && !stop ? State::Jog : State::JogStop;
    case State::JogStop:
        jogDelay_ = 0;
        return jogAsked ? State::Jog : IsAtZero() ? State::JogDelay : State::JogStop;
    case State::JogDelay:
        jogDelay_ += seconds;
        if (runAsked || jogAsked)
            return runAsked ? State::Run : State::Jog;
        return jogDelay_ >= table_.Scaled(Param::JogDelay) ? State::Stop : State::JogDelay;
    case State::QuickStop:
    case State::CoastStop:
        return IsAtZero() ? State::Stop : state;
    }
    return state;
}

void StartStopLogic::Tick(double seconds)
{
    state_ = Next(state_, seconds);
    table_.Put(Param::DriveState, std::int32_t(state_));
    table_.Put(Param::RunStatus, state_ == State::Run);
    table_.Put(Param::JogStatus, state_ == State::Jog);
    table_.Put(Param::ArmPilotStatus, IsContactorClosed(state_));
    table_.Put(Param::DriveReady, !table_.IsOn(Param::LatchedFault) && table_.IsOn(Param::RunEnable));
}

} // namespace quorvik::drive
