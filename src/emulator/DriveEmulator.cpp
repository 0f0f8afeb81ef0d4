#include "emulator/DriveEmulator.h"

#include "emulator/EmulatedBlock.h"
#include "emulator/EmulatorTimings.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

namespace quorvik
{

DriveEmulator::DriveEmulator(ParameterTable &table)
    : table_(table)
{
    TimerEmulateSvx.setObjectName(QStringLiteral("TimerEmulateSvx"));
    TimerEmulateSvx.setInterval(EmulatorTimings::EmulateMs);
    connect(&TimerEmulateSvx, &QTimer::timeout, this, &DriveEmulator::TimerEmulateSvx_Timer);
    TimerEmulateSvx.start();
}

void DriveEmulator::TimerEmulateSvx_Timer()
{
    tickGuard_.Run([this] { Tick(); });
}

void DriveEmulator::Tick()
{
    // A box at start-up pumps events before the factory table is read.
    if (table_.UpperBound() < 0)
        return;
    const bool online = table_.PortOpen();
    AnnouncePanels(online);
    if (!online && !table_.OutputsHeld) {
        EmulateAll();
        Q_EMIT Emulated();
    }
}

void DriveEmulator::AnnouncePanels(bool online)
{
    const EmulatedBlock state(table_, "Drive State");
    const EmulatedBlock driveModel(table_, "Drive Model");
    const QString driveStatus =
        online && !table_.DriveStateUnread
            ? state.Naming({Param::DriveState},
                           [&] { return DriveStateText(table_.Value(Param::DriveState)); })
            : QString();
    try {
        driveModelText_ = driveModel.Naming({Param::DriveModel},
                                            [&] { return ModelText(table_.Value(Param::DriveModel)); });
    } catch (const RuntimeFailure &) {
        // The state's panel is already right, and must not keep showing a drive that went off line.
        Q_EMIT StatusPanels(driveStatus, driveModelText_);
        throw;
    }
    Q_EMIT StatusPanels(driveStatus, driveModelText_);
}

// The order is the drive's own look at its blocks: what a block computes late reaches one that runs earlier
// only at the next tick. Outputs follow the links, and the velocity loop feeds the current loop a tick later.
void DriveEmulator::EmulateAll()
{
    for (std::uint8_t member = 1; member <= 5; ++member)
        EmulateAnalogInput(member);
    for (std::uint8_t member = 1; member <= 7; ++member)
        EmulateDigitalInput(member);
    EmulateAuxPI();
    EmulateCurrentLoop();
    EmulateFieldLoop();
    EmulateFreqDigitalOutput();
    EmulateFreqInput();
    EmulateInternalLinks();
    EmulateMinMax();
    EmulateMOP();
    for (std::uint8_t member = 1; member <= 2; ++member)
        EmulateAnalogOutput(member);
    for (std::uint8_t member = 1; member <= 3; ++member)
        EmulateRelayOutput(member);
    for (std::uint8_t member = 1; member <= 2; ++member)
        EmulateThreshold(member);
    EmulateVelocityLoop();
}

} // namespace quorvik
