#pragma once

#include "drive/DriveTable.h"

#include <array>

namespace quorvik::drive
{

/** The blocks that a user wires freely: links, peak detector, thresholds, timer, motor pot, aux PI, winder.
 */
class FunctionBlocks
{
public:
    explicit FunctionBlocks(DriveTable &table)
        : table_(table)
    {
    }

    void Tick(double seconds);

private:
    void InternalLinks();
    void MinMax();
    void Threshold(int member);
    void Timer(double seconds);
    void MotorPot(double seconds);
    void AuxPi(double seconds);
    void Winder();

    DriveTable &table_;
    std::array<bool, 2> thresholdOn_{};
    double timer_ = 0; ///< tenths of a second
    double motorPot_ = 0;
    double auxIntegral_ = 0;
};

} // namespace quorvik::drive
