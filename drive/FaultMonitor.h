#pragma once

#include "drive/DriveTable.h"

namespace quorvik::drive
{

/** Finds faults, latches them, keeps the log of the last five, and folds the current back. */
class FaultMonitor
{
public:
    explicit FaultMonitor(DriveTable &table)
        : table_(table)
    {
    }

    void Tick(double seconds);
    /** A fault from outside the model, as bits of a fault word; it lasts for one tick. */
    void Trip(std::int32_t bits) { external_ |= bits & Fault::All; }
    /** Clears the latch; what is still present latches again at the next tick. */
    void Clear();
    void PowerOn();

private:
    std::int32_t Present(double seconds);
    void WatchOverload(double seconds);
    void Log(std::int32_t bits);

    DriveTable &table_;
    std::int32_t external_ = 0;
    double sincePowerOn_ = 0;
    double fieldMissing_ = 0;
    double feedbackMissing_ = 0;
    double overload_ = 0; ///< seconds above nominal current, recovering below it
    double overcurrent_ = 0;
    bool resetBefore_ = false;
};

} // namespace quorvik::drive
