#include "blocks/BlockCatalogue.h"

#include "blocks/BlockForm.h"
#include "desktop/Desk.h"

#include <array>

namespace quorvik
{

std::span<const BlockMenuEntry> BlockCatalogue()
{
    static const auto Entries = std::to_array<BlockMenuEntry>({
        {{.control = "mnuBlockAccelDecel", .caption = "&Accel/Decel"}, BlockAccelDecel},
        {{.control = "mnuBlockApplications", .caption = "Applicatio&ns"}, {}},
        {{.control = "mnuBlockAuxPI", .caption = "A&ux PI Loop", .parent = "mnuBlockApplications"},
         BlockAuxPI},
        {{.control = "mnuBlockWSCalc",
          .caption = "&Winder Speed Calculator",
          .parent = "mnuBlockApplications"},
         BlockWinderSpeedCalculator},
        {{.control = "mnuBlockCalibration", .caption = "&Calibration"}, BlockCalibration},
        {{.control = "mnuBlockCloop", .caption = "Cu&rrent Loop"}, BlockCurrentLoop},
        {{.control = "mnuBlockDiagnostics", .caption = "&Diagnostics"}, BlockDiagnostics},
        {{.control = "mnuBlockFaultLog", .caption = "&Fault Log"}, BlockFaultLog},
        {{.control = "mnuBlockFaultLogic", .caption = "Fault Lo&gic"}, BlockFaultLogic},
        {{.control = "mnuBlockFieldCrossover", .caption = "Fie&ld Crossover"}, BlockFieldCrossover},
        {{.control = "mnuBlockFloop", .caption = "Field Loo&p"}, BlockFieldLoop},
        {{.control = "mnuBlockInputs", .caption = "&Inputs"}, {}},
        {{.control = "mnuBlockAnalogInputs", .caption = "&Analog Inputs", .parent = "mnuBlockInputs"}, {}},
        {{.control = "mnuBlockAnalogInput",
          .parent = "mnuBlockAnalogInputs",
          .allControl = "mnuBlockAnalogInputsAll"},
         BlockAnalogInputs},
        {{.control = "mnuBlockDigitalInputs", .caption = "&Digital Inputs", .parent = "mnuBlockInputs"}, {}},
        {{.control = "mnuBlockDigitalInput",
          .parent = "mnuBlockDigitalInputs",
          .allControl = "mnuBlockDigitalInputsAll"},
         BlockDigitalInputs},
        {{.control = "mnuBlockFreqInput", .caption = "&Frequency Input", .parent = "mnuBlockInputs"},
         BlockFreqInput},
        {{.control = "mnuBlockMisc", .caption = "&Miscellaneous"}, {}},
        {{.control = "mnuBlockAuxillary", .caption = "&Auxillary", .parent = "mnuBlockMisc"}, BlockAux},
        {{.control = "mnuBlockDateTime", .caption = "&Date/Time", .parent = "mnuBlockMisc"}, BlockDateTime},
        {{.control = "mnuBlockInternalLinks",
          .caption = "&Internal Links",
          .parent = "mnuBlockMisc",
          .activate = false},
         BlockInternalLinks},
        {{.control = "mnuBlockMinMax", .caption = "&Min/Max", .parent = "mnuBlockMisc"}, BlockMinMax},
        {{.control = "mnuBlockMOP", .caption = "M&OP", .parent = "mnuBlockMisc"}, BlockMOP},
        {{.control = "mnuBlockSystem", .caption = "&System", .parent = "mnuBlockMisc"}, BlockSystem},
        {{.control = "mnuBlockTimer", .caption = "&Timer", .parent = "mnuBlockMisc"}, BlockTimer},
        {{.control = "mnuBlockthresholds", .caption = "T&hresholds", .parent = "mnuBlockMisc"}, {}},
        {{.control = "mnuBlockMiscThreshold",
          .parent = "mnuBlockthresholds",
          .allControl = "mnuBlockMiscThresholdAll",
          .allCaption = "A&ll"},
         BlockThresholds},
        {{.control = "mnuBlockOutputs", .caption = "&Outputs"}, {}},
        {{.control = "mnuBlockAnalogOut", .caption = "&Analog Outputs", .parent = "mnuBlockOutputs"}, {}},
        {{.control = "mnuBlockAnalogOutput",
          .parent = "mnuBlockAnalogOut",
          .allControl = "mnuBlockAnalogOutputsAll"},
         BlockAnalogOutputs},
        {{.control = "mnuBlockFreqDigOutput",
          .caption = "&Frequency/Digital Output",
          .parent = "mnuBlockOutputs"},
         BlockFreqDigOutput},
        {{.control = "mnuBlockRelayOutputs", .caption = "&Relay Outputs", .parent = "mnuBlockOutputs"}, {}},
        {{.control = "mnuBlockRelayOutput",
          .parent = "mnuBlockRelayOutputs",
          .allControl = "mnuBlockRelayOutputsAll"},
         BlockRelayOutputs},
        {{.control = "mnuBlockSetpointS", .caption = "&Setpoints"}, BlockSetpoints},
        {{.control = "mnuBlockSetpointSum", .caption = "Se&tpoint Sum"}, BlockSetpointSum},
        {{.control = "mnuBlockStartStopLogic", .caption = "Start/Stop Log&ic"}, BlockStartStopLogic},
        {{.control = "mnuBlockVloop", .caption = "&Velocity Loop"}, BlockVelocityLoop},
        {{.control = "mnuBlockZeroSpeed", .caption = "&Zero Speed Logic"}, BlockZeroSpeedLogic},
        {{.control = "mnuBlockCustom", .caption = "C&ustom", .afterSeparator = true}, BlockCustom},
    });
    return Entries;
}

QString BlockDescriptor::MemberText(int member) const
{
    if (!IsFamily())
        return {};
    return firstMember == 0 ? QString(QChar(u'A' + member)) : QString::number(member);
}

QString BlockMenuEntry::MenuCaption(int member) const
{
    return IsFamily() ? QString::fromLatin1(window) + u'&' + MemberText(member)
                      : QString::fromLatin1(caption);
}

namespace
{

/** Visits all rows of all blocks that always show the same parameter, in the menu's order. */
template<typename Visitor> void ForEachRow(Visitor visit)
{
    for (const BlockMenuEntry &block : BlockCatalogue())
        // A block without members has one pass, with no member.
        for (int member = block.firstMember; member <= block.lastMember; ++member)
            for (const BlockRow &row : block.rows)
                if (row.number != LinkedRow)
                    visit(row.number + block.OffsetOf(member), block.WindowCaption(member));
}

} // namespace

QStringList BlockNames(int count)
{
    QStringList names(count);
    ForEachRow([&](int p, const QString &window) {
        if (p < count && names[p].isEmpty())
            names[p] = window;
    });
    return names;
}

QStringList BlocksShowing(int p)
{
    QStringList windows;
    ForEachRow([&](int shown, const QString &window) {
        if (shown == p)
            windows.append(window);
    });
    return windows;
}

QWidget *OpenBlock(Desk &desk, const BlockMenuEntry &entry, int member)
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
    QWidget *shown = open ? open : MakeBlockForm(desk, entry, member);
    desk.ShowChild(shown, entry.activate);
    return shown;
}

BlockForm *OpenBlockCalled(Desk &desk, const QString &window)
{
    for (const BlockMenuEntry &entry : BlockCatalogue())
        for (int member = entry.firstMember; entry.sheet && member <= entry.lastMember; ++member)
            if (entry.WindowCaption(member) == window)
                return static_cast<BlockForm *>(OpenBlock(desk, entry, member));
    return nullptr;
}

bool RevealParameter(Desk &desk, int p)
{
    for (int position = 1; position < desk.forms.Count(); ++position)
        if (auto *open = qobject_cast<BlockForm *>(desk.forms.At(position)); open && open->Shows(p)) {
            desk.ShowChild(open, true);
            return open->Reveal(p);
        }
    const QString window = BlockNames(p + 1).value(p);
    BlockForm *form = window.isEmpty() ? nullptr : OpenBlockCalled(desk, window);
    return form && form->Reveal(p);
}

bool JumpTo(Desk &desk, const QString &window, int p)
{
    BlockForm *form = window.isEmpty() ? nullptr : OpenBlockCalled(desk, window);
    return (form && form->Reveal(p)) || RevealParameter(desk, p);
}

} // namespace quorvik
