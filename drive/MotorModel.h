#pragma once

#include "drive/ControlLoops.h"
#include "drive/FaultMonitor.h"
#include "drive/FieldLoop.h"
#include "drive/FunctionBlocks.h"
#include "drive/InputBlocks.h"
#include "drive/Instruments.h"
#include "drive/OutputBlocks.h"
#include "drive/SetpointPath.h"
#include "drive/StartStopLogic.h"

namespace quorvik::drive
{

/**
 * The machine behind the parameters: the drive's blocks, the motor and its load, moved on tick by tick. It
 * lives in the table alone, as the wire sees it.
 */
class MotorModel
{
public:
    static constexpr double TickSeconds = 0.05;

    MotorModel(DriveTable &table, std::uint64_t seed);

    /** @param seconds since the last tick, above 0 and at most about 0.2. */
    void Tick(double seconds);

    Terminals &Inputs() { return terminals_; }
    void Trip(std::int32_t faultBits) { faults_.Trip(faultBits); }
    void ClearFault() { faults_.Clear(); }
    void SetLoad(double load) { loops_.SetLoad(load); } ///< -2 to 2 of the nominal torque
    void PowerOn();

private:
    Noise noise_;
    Terminals terminals_;
    InputBlocks inputs_;
    FunctionBlocks functions_;
    StartStopLogic logic_;
    SetpointPath setpoints_;
    ControlLoops loops_;
    FieldLoop field_;
    FaultMonitor faults_;
    Instruments instruments_;
    OutputBlocks outputs_;
};

} // namespace quorvik::drive
