#pragma once

#include "drive/DriveTable.h"

namespace quorvik::drive
{

/** Relays, analog outputs and the frequency or digital output. */
class OutputBlocks
{
public:
    explicit OutputBlocks(DriveTable &table)
        : table_(table)
    {
    }

    void Tick();

private:
    double Source(int selector, int absolute) const;
    void Relay(int member);
    void AnalogOutput(int member);
    void FreqDigOutput();

    DriveTable &table_;
    bool isDigitalOn_ = false;
};

} // namespace quorvik::drive
