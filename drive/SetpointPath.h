#pragma once

#include "drive/DriveTable.h"

namespace quorvik::drive
{

/** The way from the references over the ramp and the setpoint sum to the final velocity demand. */
class SetpointPath
{
public:
    explicit SetpointPath(DriveTable &table)
        : table_(table)
    {
    }

    void Tick(double seconds);

private:
    double Reference() const;
    double Ramp(double input, double seconds) const;

    DriveTable &table_;
    double ramp_ = 0; ///< the ramp's output with the fractions that its parameter drops
};

} // namespace quorvik::drive
