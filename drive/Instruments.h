#pragma once

#include "drive/DriveTable.h"
#include "drive/Noise.h"

namespace quorvik::drive
{

/** The drive's clock and what it measures of itself: supplies, line, heatsink, converter readings. */
class Instruments
{
public:
    Instruments(DriveTable &table, Noise &noise)
        : table_(table)
        , noise_(noise)
    {
    }

    /** Sets the drive's clock from the computer's. */
    void SetClock();
    /** @param current the motor's, of nominal; it warms the heatsink. */
    void Tick(double seconds, double current);

private:
    void RunClock(double seconds);

    DriveTable &table_;
    Noise &noise_;
    double second_ = 0;
    double heatsink_ = 27; ///< degrees
};

} // namespace quorvik::drive
