#pragma once

#include "drive/DriveTable.h"
#include "drive/Noise.h"

namespace quorvik::drive
{

/** The motor's field with its supply, economy and crossover. */
class FieldLoop
{
public:
    FieldLoop(DriveTable &table, Noise &noise)
        : table_(table)
        , noise_(noise)
    {
    }

    void Tick(double seconds);
    /** 1 at the field current that is asked for without weakening. */
    double Flux() const;

private:
    double Demand(double seconds);

    DriveTable &table_;
    Noise &noise_;
    double current_ = 0; ///< of the supply's nominal current
    double currentFiltered_ = 0;
    double voltageFiltered_ = 0;
    double idleTime_ = 0;
};

} // namespace quorvik::drive
