#include "blocks/BlockCatalogue.h"

#include "blocks/BlockForm.h"
#include "desktop/Desk.h"

#include <array>

// Names a block's window and declares its factory, so that a block is one file and one row below.
#define QUORVIK_BLOCK(formName)                                                                              \
    .form = #formName, .make = [](Desk &desk, int member) -> BlockForm * {                                   \
        BlockForm *Make##formName(Desk &, int);                                                              \
        return Make##formName(desk, member);                                                                 \
    }

namespace quorvik
{

std::span<const BlockMenuEntry> BlockCatalogue()
{
    static constexpr auto Entries = std::to_array<BlockMenuEntry>({
        {.control = "mnuBlockAccelDecel",
         .caption = "&Accel/Decel",
         .window = "Accel/Decel",
         QUORVIK_BLOCK(FormAccelDecel)},
        {.control = "mnuBlockApplications", .caption = "Applicatio&ns"},
        {.control = "mnuBlockAuxPI",
         .caption = "A&ux PI Loop",
         .parent = "mnuBlockApplications",
         .window = "Aux PI",
         QUORVIK_BLOCK(FormAuxPI)},
        {.control = "mnuBlockWSCalc",
         .caption = "&Winder Speed Calculator",
         .parent = "mnuBlockApplications",
         .window = "Winder Speed Calculator",
         QUORVIK_BLOCK(FormWinderSpeedCalculator)},
        {.control = "mnuBlockCalibration",
         .caption = "&Calibration",
         .window = "Calibration",
         QUORVIK_BLOCK(FormCalibration)},
        {.control = "mnuBlockCloop",
         .caption = "Cu&rrent Loop",
         .window = "Current Loop",
         QUORVIK_BLOCK(FormCurrentLoop)},
        {.control = "mnuBlockDiagnostics",
         .caption = "&Diagnostics",
         .window = "Diagnostics",
         QUORVIK_BLOCK(FormDiagnostics)},
        {.control = "mnuBlockFaultLog",
         .caption = "&Fault Log",
         .window = "Fault Log",
         QUORVIK_BLOCK(FormFaultLog)},
        {.control = "mnuBlockFaultLogic",
         .caption = "Fault Lo&gic",
         .window = "Fault Logic",
         QUORVIK_BLOCK(FormFaultLogic)},
        {.control = "mnuBlockFieldCrossover",
         .caption = "Fie&ld Crossover",
         .window = "Field Crossover",
         QUORVIK_BLOCK(FormFieldCrossover)},
        {.control = "mnuBlockFloop",
         .caption = "Field Loo&p",
         .window = "Field Loop",
         QUORVIK_BLOCK(FormFieldLoop)},
        {.control = "mnuBlockInputs", .caption = "&Inputs"},
        {.control = "mnuBlockAnalogInputs", .caption = "&Analog Inputs", .parent = "mnuBlockInputs"},
        {.control = "mnuBlockAnalogInput",
         .parent = "mnuBlockAnalogInputs",
         .window = "Analog Input ",
         QUORVIK_BLOCK(FormAnalogInputs),
         .firstMember = 1,
         .lastMember = 5,
         .allControl = "mnuBlockAnalogInputsAll"},
        {.control = "mnuBlockDigitalInputs", .caption = "&Digital Inputs", .parent = "mnuBlockInputs"},
        {.control = "mnuBlockDigitalInput",
         .parent = "mnuBlockDigitalInputs",
         .window = "Digital Input ",
         QUORVIK_BLOCK(FormDigitalInputs),
         .firstMember = 1,
         .lastMember = 7,
         .allControl = "mnuBlockDigitalInputsAll"},
        {.control = "mnuBlockFreqInput",
         .caption = "&Frequency Input",
         .parent = "mnuBlockInputs",
         .window = "Frequency Input 1",
         QUORVIK_BLOCK(FormFreqInput)},
        {.control = "mnuBlockMisc", .caption = "&Miscellaneous"},
        {.control = "mnuBlockAuxillary",
         .caption = "&Auxillary",
         .parent = "mnuBlockMisc",
         .window = "Auxillary Parameters",
         QUORVIK_BLOCK(FormAux)},
        {.control = "mnuBlockDateTime",
         .caption = "&Date/Time",
         .parent = "mnuBlockMisc",
         .window = "Date/Time",
         QUORVIK_BLOCK(FormDateTime)},
        {.control = "mnuBlockInternalLinks",
         .caption = "&Internal Links",
         .parent = "mnuBlockMisc",
         .window = "Internal Links",
         QUORVIK_BLOCK(FormInternalLinks),
         .activate = false},
        {.control = "mnuBlockMinMax",
         .caption = "&Min/Max",
         .parent = "mnuBlockMisc",
         .window = "Min/Max",
         QUORVIK_BLOCK(FormMinMax)},
        {.control = "mnuBlockMOP",
         .caption = "M&OP",
         .parent = "mnuBlockMisc",
         .window = "MOP (Motor Operated Pot)",
         QUORVIK_BLOCK(FormMOP)},
        {.control = "mnuBlockSystem",
         .caption = "&System",
         .parent = "mnuBlockMisc",
         .window = "System",
         QUORVIK_BLOCK(FormSystem)},
        {.control = "mnuBlockTimer",
         .caption = "&Timer",
         .parent = "mnuBlockMisc",
         .window = "Timer",
         QUORVIK_BLOCK(FormTimer)},
        {.control = "mnuBlockthresholds", .caption = "T&hresholds", .parent = "mnuBlockMisc"},
        {.control = "mnuBlockMiscThreshold",
         .parent = "mnuBlockthresholds",
         .window = "Threshold ",
         QUORVIK_BLOCK(FormThresholds),
         .firstMember = 0,
         .lastMember = 1,
         .allControl = "mnuBlockMiscThresholdAll",
         .allCaption = "A&ll"},
        {.control = "mnuBlockOutputs", .caption = "&Outputs"},
        {.control = "mnuBlockAnalogOut", .caption = "&Analog Outputs", .parent = "mnuBlockOutputs"},
        {.control = "mnuBlockAnalogOutput",
         .parent = "mnuBlockAnalogOut",
         .window = "Analog Output ",
         QUORVIK_BLOCK(FormAnalogOutputs),
         .firstMember = 1,
         .lastMember = 2,
         .allControl = "mnuBlockAnalogOutputsAll"},
        {.control = "mnuBlockFreqDigOutput",
         .caption = "&Frequency/Digital Output",
         .parent = "mnuBlockOutputs",
         .window = "Frequency/Digital Output",
         QUORVIK_BLOCK(FormFreqDigOutput)},
        {.control = "mnuBlockRelayOutputs", .caption = "&Relay Outputs", .parent = "mnuBlockOutputs"},
        {.control = "mnuBlockRelayOutput",
         .parent = "mnuBlockRelayOutputs",
         .window = "Relay Output ",
         QUORVIK_BLOCK(FormRelayOutputs),
         .firstMember = 1,
         .lastMember = 3,
         .allControl = "mnuBlockRelayOutputsAll"},
        {.control = "mnuBlockSetpointS",
         .caption = "&Setpoints",
         .window = "Setpoints",
         QUORVIK_BLOCK(FormSetpoints)},
        {.control = "mnuBlockSetpointSum",
         .caption = "Se&tpoint Sum",
         .window = "Setpoint Sum",
         QUORVIK_BLOCK(FormSetpointSum)},
        {.control = "mnuBlockStartStopLogic",
         .caption = "Start/Stop Log&ic",
         .window = "Start/Stop Logic",
         QUORVIK_BLOCK(FormStartStopLogic)},
        {.control = "mnuBlockVloop",
         .caption = "&Velocity Loop",
         .window = "Velocity Loop",
         QUORVIK_BLOCK(FormVelocityLoop)},
        {.control = "mnuBlockZeroSpeed",
         .caption = "&Zero Speed Logic",
         .window = "Zero Speed Logic",
         QUORVIK_BLOCK(FormZeroSpeedLogic)},
        {.control = "mnuBlockCustom",
         .caption = "C&ustom",
         .window = "Custom",
         QUORVIK_BLOCK(FormCustom),
         .afterSeparator = true},
    });
    return Entries;
}

QString BlockMenuEntry::MemberText(int member) const
{
    if (!IsFamily())
        return {};
    // Members that count from 0 are lettered.
    return firstMember == 0 ? QString(QChar(u'A' + member)) : QString::number(member);
}

QString BlockMenuEntry::MenuCaption(int member) const
{
    return IsFamily() ? QString::fromLatin1(window) + u'&' + MemberText(member)
                      : QString::fromLatin1(caption);
}

QString BlockMenuEntry::WindowCaption(int member) const
{
    return QString::fromLatin1(window) + MemberText(member);
}

void OpenBlock(Desk &desk, const BlockMenuEntry &entry, int member)
{
    QWidget *open = nullptr;
    if (entry.IsFamily()) {
        if (const int position = desk.forms.FindOpenBlock(entry.WindowCaption(member)); position > 0)
            open = desk.forms.At(position);
    } else {
        for (int position = 1; position < desk.forms.Count(); ++position)
            if (desk.forms.At(position)->objectName() == QLatin1String(entry.form))
                open = desk.forms.At(position);
    }
    desk.ShowChild(open ? open : entry.make(desk, member), entry.activate);
}

} // namespace quorvik
