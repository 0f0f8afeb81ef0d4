#pragma once

#include "drive/DriveTable.h"
#include "drive/Noise.h"
#include "drive/Terminals.h"

namespace quorvik::drive
{

/** The input blocks: terminals to their status parameters, scaled, and on to the destinations. */
class InputBlocks
{
public:
    InputBlocks(DriveTable &table, Noise &noise, const Terminals &terminals)
        : table_(table)
        , noise_(noise)
        , terminals_(terminals)
    {
    }

    void Tick(double seconds);

private:
    void AnalogInput(int member, double seconds);
    void DigitalInput(int member);
    void FrequencyInput();

    DriveTable &table_;
    Noise &noise_;
    const Terminals &terminals_;
    std::array<double, 5> filtered_{};
};

} // namespace quorvik::drive
