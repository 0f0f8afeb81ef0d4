#pragma once

#include <QObject>
#include <QTimer>
#include <array>
#include <cstdint>

namespace quorvik
{

class Model;

/**
 * The drive's signal routing computed in the table while no drive is attached: a static model of scaling,
 * clamping, selecting and comparing, one pass for each tick, in a fixed order.
 *
 * It stores straight into Value and touches no flag and no mark.
 */
class DriveEmulator : public QObject
{
    Q_OBJECT

public:
    explicit DriveEmulator(Model &model);

    QTimer TimerEmulateSvx; ///< 500 ms, from start to end of the program

    /** One tick: announces the status panels and, while off line, runs one pass. */
    void TimerEmulateSvx_Timer();

    /** One pass of all blocks in their order. Raises RuntimeFailure naming the block and the parameters
     * involved. */
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
    void EmulateThreshold(std::uint8_t member);    ///< 1 or 2
    void EmulateVelocityLoop();

    std::array<bool, 2> EmulatedThresholdOn{};

Q_SIGNALS:
    /** What the status bar's second and third panel are to show. */
    void StatusPanels(const QString &driveStatus, const QString &driveModel);

private:
    Model &model_;
};

} // namespace quorvik
