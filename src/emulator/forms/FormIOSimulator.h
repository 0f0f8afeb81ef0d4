#pragma once

#include "desktop/Form.h"
#include "emulator/forms/TerminalStrip.h"
#include "platform/Guard.h"

#include <QTimer>
#include <array>

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QRadioButton;
class QSlider;

namespace quorvik
{

class Lamp;
class LevelBar;

/**
 * Stands in for the drive's terminal strip when no drive is attached: plays the inputs by writing their
 * Status, and shows what the emulated outputs do.
 */
class FormIOSimulator : public Form
{
    Q_OBJECT

public:
    explicit FormIOSimulator(Desk &desk);

    QTimer TimerUpdateScreen; ///< 500 ms

    /** Repaints the outputs and takes over a changed range. Raises RuntimeFailure, naming the input, where
     * its type or status does not fit the terminal. */
    void TimerUpdateScreen_Timer();

private:
    QGroupBox *MakeFrameDigitalInputs();
    QGroupBox *MakeFrameAnalogInputs();
    QGroupBox *MakeFrameFreqInput();
    QGroupBox *MakeFrameRelayOutputs();
    QGroupBox *MakeFrameAnalogOutputs();
    QGroupBox *MakeFrameFreqDigOutput();
    QGroupBox *MakeFrame(const QString &name, const QString &title);
    QLabel *MakeLabel(const QString &name, const QString &text = QString());
    QSlider *MakeScroll(const QString &name, const QString &spokenName);
    void Load();

    void ComboDigitalInput_Click();
    void OptionDigitalInputState_Click(int index);
    void ComboAnalogInput_Click();
    void AdjustAnalogScale(int member);
    void HScrollAnalogInputStatus_Change();
    void HScrollFreqInputStatus_Change();

    std::int32_t Value(int p) const;
    void Store(int p, std::int32_t raw);
    void ShowOutputs();
    void ShowInputs();

    QString analogUnit_;
    int analogScale_ = 0;
    TickGuard tickGuard_;

    QComboBox *ComboDigitalInput_ = nullptr;
    std::array<QRadioButton *, 2> OptionDigitalInputState_{};
    QComboBox *ComboAnalogInput_ = nullptr;
    QSlider *HScrollAnalogInputStatus_ = nullptr;
    QLabel *LabelMin_ = nullptr;
    QLabel *LabelMax_ = nullptr;
    QLabel *LabelAnalogInputStatus_ = nullptr;
    QSlider *HScrollFreqInputStatus_ = nullptr;
    QLabel *LabelFreqInputStatus_ = nullptr;
    std::array<QLabel *, 2> LabelAnalogOutput_{};
    std::array<LevelBar *, 2> analogBars_{};
    QLabel *LabelFreqDigOutput_ = nullptr;
    Lamp *freqDigLamp_ = nullptr;
    std::array<QLabel *, 3> LabelRelayOutput_{};
    std::array<Lamp *, 3> relayLamps_{};

    TerminalStrip *digitalStrip_ = nullptr;
    TerminalStrip *analogStrip_ = nullptr;
    TerminalStrip *relayStrip_ = nullptr;
};

} // namespace quorvik
