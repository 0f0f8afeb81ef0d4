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
    void Crossover(double seconds); ///< takes field current away while the armature voltage is too high
    double Demand(double seconds);
    double Goal(bool isOpenLoop) const; ///< of the current, as a share of the supply's nominal one

    DriveTable &table_;
    Noise &noise_;
    double current_ = 0;   ///< of the supply's nominal current
    double crossover_ = 0; ///< counts
    double currentFiltered_ = 0;
    double voltageFiltered_ = 0;
    double idleTime_ = 0;
};

} // namespace quorvik::drive
