#pragma once

#include "platform/Guard.h"

#include <QObject>
#include <QTimer>
#include <array>
#include <cstdint>

namespace quorvik
{

class ParameterTable;

/**
 * The drive's signal routing computed in the table while no drive is attached: a static model of scaling,
 * clamping, selecting and comparing, one pass for each tick, in a fixed order.
 *
 * It stores straight into Value and touches no flag and no mark. Each Emulate routine raises RuntimeFailure
 * on an overflow, a division by zero or a selector outside the table; the sentence begins with the block and
 * the numbers of the parameters involved.
 */
class DriveEmulator : public QObject
{
    Q_OBJECT

public:
    /** Starts TimerEmulateSvx. */
    explicit DriveEmulator(ParameterTable &table);

    QTimer TimerEmulateSvx; ///< 500 ms, from start to end of the program

    /**
     * One tick: announces the status panels and, while off line, runs one pass unless the table holds the
     * last values of a lost drive. Does nothing as long as the table is empty. A failure ends the tick; it is
     * told once, and again only after a tick went through.
     */
    void TimerEmulateSvx_Timer();

    /** One pass of all blocks in their order. */
    void EmulateAll();

    void EmulateAnalogInput(std::uint8_t member);  ///< 1 to 5
    void EmulateDigitalInput(std::uint8_t member); ///< 1 to 7
    void EmulateAuxPI();
    void EmulateCurrentLoop();
    void EmulateFieldLoop();
    void EmulateFreqDigitalOutput();
    void EmulateFreqInput();
    void EmulateInternalLinks();
    void EmulateMinMax();
    void EmulateMOP();
    void EmulateAnalogOutput(std::uint8_t member); ///< 1 or 2
    void EmulateRelayOutput(std::uint8_t member);  ///< 1 to 3
    void EmulateThreshold(std::uint8_t member);    ///< 1 or 2; any other raises RuntimeFailure
    void EmulateVelocityLoop();

    std::array<bool, 2> EmulatedThresholdOn{};

Q_SIGNALS:
    /**
     * What the status bar's second and third panel are to show, at every tick.
     * @param driveStatus the drive's state, empty while off line.
     * @param driveModel the drive's model, on line or off; the last good one where the model code has no
     * text.
     */
    void StatusPanels(const QString &driveStatus, const QString &driveModel);
    /** All blocks went through, off line. */
    void Emulated();

private:
    void Tick();
    void AnnouncePanels(bool online);

    ParameterTable &table_;
    TickGuard tickGuard_;
    QString driveModelText_;
};

} // namespace quorvik
