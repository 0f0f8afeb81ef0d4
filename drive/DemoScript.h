#pragma once

#include "drive/DriveTable.h"
#include "drive/Terminals.h"

namespace quorvik::drive
{

/** Somebody at the terminals who runs the machine day and night, so that every window shows moving values. */
class DemoScript
{
public:
    DemoScript(DriveTable &table, Terminals &terminals)
        : table_(table)
        , terminals_(terminals)
    {
    }

    void Tick(double seconds);

private:
    /** Brings every digital input that drives p to the state that makes it zero or not. */
    void Ask(int p, bool on);

    DriveTable &table_;
    Terminals &terminals_;
    double time_ = 0;
};

} // namespace quorvik::drive
