#pragma once

#include "drive/DriveTable.h"
#include "drive/Noise.h"
#include "drive/Terminals.h"

#include <array>

namespace quorvik::drive
{

/**
 * Velocity loop, current loop, zero-speed logic, and the motor with its load on the shaft. Speeds, currents
 * and voltages are kept as fractions of their nominal values.
 */
class ControlLoops
{
public:
    ControlLoops(DriveTable &table, Noise &noise, const Terminals &terminals)
        : table_(table)
        , noise_(noise)
        , terminals_(terminals)
    {
    }

    /** @param flux the motor's, 1 at the nominal field current. */
    void Tick(double seconds, double flux);

    /** Torque that the machine asks for at any speed, -2 to 2 of the nominal one. */
    void SetLoad(double load) { load_ = load; }

    double Speed() const { return speed_; }
    double Current() const { return current_; }

private:
    void ZeroSpeedLogic();
    void Measure(double flux);
    double ArmatureVoltage(double flux) const; ///< of the nominal one
    double SelectedFeedback() const;
    void VelocityStep(double seconds);
    int DriveMode() const;
    double CurrentDemand() const; ///< what the drive mode chooses, in counts
    double LimitedDemand() const;
    bool CanReverseCurrent() const;
    double PossibleCurrent(double demand) const; ///< what the bridges let flow of a demand
    /** What the bridge and the armature make of it, by the gains of the current loop. */
    void CurrentStep(double seconds, double possible);
    void MotorStep(double seconds, double demand, double flux);
    void Show(double flux, double seconds);

    DriveTable &table_;
    Noise &noise_;
    const Terminals &terminals_;
    double load_ = 0.1;
    double speed_ = 0;
    double current_ = 0;
    double bridgeIntegral_ = 0;
    std::array<double, 3> bridge_{}; ///< what it was told in the last milliseconds, the oldest first
    double integral_ = 0;
    double demandLagged_ = 0;
    double velocityOutput_ = 0;
    double feedbackFiltered_ = 0;
    double currentFiltered_ = 0;
    double demandFiltered_ = 0;
    bool isEnabled_ = false;
};

} // namespace quorvik::drive
