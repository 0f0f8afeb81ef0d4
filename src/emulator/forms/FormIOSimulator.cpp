#include "emulator/forms/FormIOSimulator.h"

#include "emulator/EmulatedBlock.h"
#include "emulator/EmulatorTimings.h"
#include "emulator/forms/Gauges.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

namespace quorvik
{

namespace
{

constexpr int DigitalInputs = 7;
constexpr int AnalogInputs = 5;
constexpr int FirstAnalogPolarity = 28;
constexpr int FirstDigitalStatus = 132;
constexpr int FirstAnalogStatus = 139;
constexpr int FreqInputStatus = 164;
constexpr int FirstRelayStatus = 165;
constexpr int FirstAnalogOutput = 168;
constexpr int FreqDigOutputStatus = 170;
constexpr int FreqDigOutputMode = 90;

/** A terminal of the analog inputs by 2 * Type + Polarity. The counts are those of a 12-bit converter. */
struct AnalogRange {
    const char *unit;
    int scale;
    const char *minText;
    const char *maxText;
    int minCounts;
    int maxCounts;
};

constexpr std::array<AnalogRange, 4> AnalogRanges = {{
    {"mA", 20, "0 mA", "20 mA", 0, 4095},
    {"mA", 20, "-20 mA", "+20 mA", -2048, 2047},
    {"V", 10, "0 V", "10 V", 0, 4095},
    {"V", 10, "-10 V", "+10 V", -2048, 2047},
}};

} // namespace

void FormIOSimulator::Load()
{
    // Each of these is the event of one control: a status that does not fit its terminal must not keep the
    // other terminals from working.
    Guarded([this] { ComboDigitalInput_Click(); });
    Guarded([this] {
        const int status = FreqInputStatus;
        const std::int16_t tens = EmulatedBlock(desk().table, "Frequency Input").Naming({status}, [&] {
            return CInt(Value(status) / 10.0);
        });
        HScrollFreqInputStatus_->setValue(tens);
        HScrollFreqInputStatus_Change();
    });
    tickGuard_.Run([this] { TimerUpdateScreen_Timer(); });
    TimerUpdateScreen.start();
}

void FormIOSimulator::TimerUpdateScreen_Timer()
{
    ShowOutputs();
    const bool offline = !desk().table.PortOpen();
    HScrollAnalogInputStatus_->setEnabled(offline);
    for (QRadioButton *option : OptionDigitalInputState_)
        option->setEnabled(offline);
    HScrollFreqInputStatus_->setEnabled(offline);
    ShowInputs();
    ComboAnalogInput_Click();
    // Off line the scroll bar's value goes back into Status, cut to a range that may have become narrower.
    HScrollAnalogInputStatus_Change();
}

void FormIOSimulator::ComboDigitalInput_Click()
{
    const int member = ComboDigitalInput_->currentIndex() + 1;
    const int status = FirstDigitalStatus + member - 1;
    EmulatedBlock(desk().table, "Digital Input", member).Naming({status}, [&] {
        const std::int32_t raw = Value(status);
        if (raw != 0 && raw != 1)
            throw RuntimeFailure(QStringLiteral("The status %1 is neither open nor closed.").arg(raw));
        OptionDigitalInputState_[std::size_t(raw)]->setChecked(true);
    });
    ShowInputs();
}

void FormIOSimulator::OptionDigitalInputState_Click(int index)
{
    Store(FirstDigitalStatus + ComboDigitalInput_->currentIndex(), index);
    ShowInputs();
}

void FormIOSimulator::ComboAnalogInput_Click()
{
    const int member = ComboAnalogInput_->currentIndex() + 1;
    const int status = FirstAnalogStatus + member - 1;
    const std::int16_t raw = EmulatedBlock(desk().table, "Analog Input", member).Naming({status}, [&] {
        return ToInt16(Value(status));
    });
    {
        // Nothing reaches the table until range and value belong to the input that is now chosen.
        const QSignalBlocker quiet(HScrollAnalogInputStatus_);
        AdjustAnalogScale(member);
        HScrollAnalogInputStatus_->setValue(raw);
    }
    analogStrip_->SetSelected(member - 1);
}

void FormIOSimulator::AdjustAnalogScale(int member)
{
    const int type = member + 32;
    const int polarity = member + 27;
    const std::uint8_t code =
        EmulatedBlock(desk().table, "Analog Input", member).Naming({type, polarity}, [&] {
            return ToByte(CheckedAdd(CheckedMultiply(Value(type), 2), Value(polarity)));
        });
    if (code >= AnalogRanges.size())
        return;
    const AnalogRange &range = AnalogRanges[code];
    analogUnit_ = QString::fromLatin1(range.unit);
    analogScale_ = range.scale;
    LabelMin_->setText(QString::fromLatin1(range.minText));
    LabelMax_->setText(QString::fromLatin1(range.maxText));
    HScrollAnalogInputStatus_->setRange(range.minCounts, range.maxCounts);
}

void FormIOSimulator::HScrollAnalogInputStatus_Change()
{
    const int counts = HScrollAnalogInputStatus_->value();
    const double level = double(counts) / HScrollAnalogInputStatus_->maximum() * analogScale_;
    LabelAnalogInputStatus_->setText(FormatFixed(level, 2) + u' ' + analogUnit_);
    Store(FirstAnalogStatus + ComboAnalogInput_->currentIndex(), counts);
    ShowInputs();
}

void FormIOSimulator::HScrollFreqInputStatus_Change()
{
    const std::int32_t hertz = HScrollFreqInputStatus_->value() * 10;
    LabelFreqInputStatus_->setText(QString::number(hertz) + QStringLiteral(" Hz"));
    Store(FreqInputStatus, hertz);
}

std::int32_t FormIOSimulator::Value(int p) const
{
    return desk().table.Value(p);
}

void FormIOSimulator::Store(int p, std::int32_t raw)
{
    // On line the status is the drive's word, also where it does not fit the terminal.
    if (desk().table.PortOpen())
        return;
    const bool isSwitch = IsEnumerated(TypeCode(desk().table[p].Attributes));
    const Intent intent(
        desk().table,
        {.origin = Origin::IOSimulator, .title = {}, .canBeTakenBack = false, .isMovement = !isSwitch});
    desk().table.SetValue(p, raw, ChangeCause::Emulated);
}

void FormIOSimulator::ShowOutputs()
{
    for (int i = 0; i < 2; ++i) {
        const double part = Value(FirstAnalogOutput + i) / 4095.0;
        LabelAnalogOutput_[std::size_t(i)]->setText(FormatFixed(part * 10.0, 1) + QStringLiteral(" Volts"));
        analogBars_[std::size_t(i)]->SetLevel(part);
    }

    const std::int32_t output = Value(FreqDigOutputStatus);
    const bool digital = Value(FreqDigOutputMode) != 0;
    LabelFreqDigOutput_->setText(!digital       ? QStringLiteral("Output = %1 Hz").arg(output)
                                 : output == -1 ? QStringLiteral("Output = On")
                                                : QStringLiteral("Output = Off"));
    freqDigLamp_->setVisible(digital);
    freqDigLamp_->SetLit(digital && output == -1);

    QList<QPair<int, int>> contacts;
    for (int i = 0; i < 3; ++i) {
        const bool energized = Value(FirstRelayStatus + i) != 0;
        LabelRelayOutput_[std::size_t(i)]->setText(
            QStringLiteral("Output %1").arg(i + 1) +
            (energized ? QStringLiteral(" = On (Energized)") : QStringLiteral(" = Off (De-energized)")));
        relayLamps_[std::size_t(i)]->SetLit(energized);
        const int normallyOpen = 3 * i;
        contacts.append({normallyOpen + 2, energized ? normallyOpen : normallyOpen + 1});
    }
    relayStrip_->SetContacts(contacts);
}

void FormIOSimulator::ShowInputs()
{
    for (int i = 0; i < DigitalInputs; ++i)
        digitalStrip_->SetLamp(i, Value(FirstDigitalStatus + i) == 1);
    const int digital = ComboDigitalInput_->currentIndex();
    digitalStrip_->SetSelected(digital);
    const std::int32_t state = Value(FirstDigitalStatus + digital);
    if (state == 0 || state == 1)
        OptionDigitalInputState_[std::size_t(state)]->setChecked(true);

    for (int i = 0; i < AnalogInputs; ++i) {
        const bool bipolar = Value(FirstAnalogPolarity + i) != 0;
        const double zero = bipolar ? 0.5 : 0.0;
        // Either way the trough is 4095 counts wide.
        analogStrip_->SetLevel(i, zero, zero + Value(FirstAnalogStatus + i) / 4095.0);
    }

    // A file or a link may have put another frequency into the table.
    const std::int32_t hertz = Value(FreqInputStatus);
    if (hertz != HScrollFreqInputStatus_->value() * 10) {
        const QSignalBlocker quiet(HScrollFreqInputStatus_);
        HScrollFreqInputStatus_->setValue(hertz / 10);
        LabelFreqInputStatus_->setText(QString::number(hertz) + QStringLiteral(" Hz"));
    }
}

} // namespace quorvik
