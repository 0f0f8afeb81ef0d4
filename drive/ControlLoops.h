#pragma once

#include "drive/DriveTable.h"
#include "drive/Noise.h"

namespace quorvik::drive
{

/**
 * Velocity loop, current loop, zero-speed logic, and the motor with its load on the shaft. Speeds, currents
 * and voltages are kept as fractions of their nominal values.
 */
class ControlLoops
{
public:
    ControlLoops(DriveTable &table, Noise &noise)
        : table_(table)
        , noise_(noise)
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
    double PossibleCurrent(double demand) const; ///< what the bridges let flow of a demand
    void MotorStep(double seconds, double demand, double flux);
    void Show(double flux, double seconds);

    DriveTable &table_;
    Noise &noise_;
    double load_ = 0.1;
    double speed_ = 0;
    double current_ = 0;
    double integral_ = 0;
    double velocityOutput_ = 0;
    double feedbackFiltered_ = 0;
    double currentFiltered_ = 0;
    double demandFiltered_ = 0;
    bool isEnabled_ = false;
};

} // namespace quorvik::drive
