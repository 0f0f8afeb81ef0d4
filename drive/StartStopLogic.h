#pragma once

#include "drive/DriveTable.h"

namespace quorvik::drive
{

/** Run, stop and jog inputs to the drive's state, parameter 422. */
class StartStopLogic
{
public:
    explicit StartStopLogic(DriveTable &table)
        : table_(table)
    {
    }

    void Tick(double seconds);
    /** After the supply came back: stopped, and an input that is already there starts nothing. */
    void PowerOn();

private:
    State Next(State state, double seconds);
    State StopBy() const;
    bool IsAtZero() const;

    DriveTable &table_;
    State state_ = State::Stop;
    bool runBefore_ = true;
    bool jogBefore_ = true;
    double jogDelay_ = 0;
};

/** Whether the armature is fed in a state, and the ramp may follow its input. */
bool IsRampEnabled(State state);
/** Whether the armature contactor is closed in a state. */
bool IsContactorClosed(State state);
/** Whether references pass in a state. */
bool IsReferenceEnabled(State state);

} // namespace quorvik::drive
