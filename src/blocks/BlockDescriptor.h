#pragma once

#include "desktop/Desk.h"
#include "model/ParameterTable.h"

#include <memory>
#include <optional>
#include <span>

namespace quorvik
{

class BlockForm;
class BlockSheet;
struct BlockDescriptor;
struct SheetRuler;

/** The number of a last row that shows the parameter which row 0 selects. */
inline constexpr int LinkedRow = -1;

/** One row of a block: its parameter, of a family that of the first member, and its caption where that is not
 *  the parameter's name after the block's prefix. */
struct BlockRow {
    constexpr BlockRow(int rowNumber = 0, const char *rowCaption = nullptr)
        : number(rowNumber)
        , caption(rowCaption)
    {
    }

    int number;
    const char *caption;
};

/** Makes a block's window, loaded. @param member the member of a family, 0 where the block has none. */
using BlockFactory = BlockForm *(*)(Desk &desk, const BlockDescriptor &descriptor, int member);
/** Makes a block's sheet, drawn; it needs no window. */
using SheetFactory = std::unique_ptr<BlockSheet> (*)(const BlockDescriptor &descriptor, int member,
                                                     ParameterTable &table, const SheetRuler &ruler);

/** What a block window is, apart from its drawing. It stands at the end of the block's file. */
struct BlockDescriptor {
    const char *form = "";      ///< its stated name: FormVelocityLoop
    const char *window = "";    ///< its caption; of a family without its member
    const char *helpTopic = ""; ///< "Velocity Loop.htm"
    std::span<const BlockRow> rows = {};
    const char *prefix = ""; ///< what captions leave out of the parameters' names: "Aux PI "
    SheetFactory sheet = nullptr;
    BlockFactory make = nullptr; ///< of a window that is more than its sheet; the plain one where null
    int firstMember = -1; ///< members of a family, -1 for a block without; the indexes of the control array
    int lastMember = -1;
    int memberDistance = 1; ///< between the numbers of one member and the next
    std::optional<WizardIOStartRecord> mentorStart = std::nullopt; ///< what the I/O Mentor opens on
    int mentorModeRow = -1;  ///< the row whose value the I/O Mentor takes over as its mode, -1 none
    int freeRows = 0;        ///< instead of rows: numbered from 0, each shows what the window makes it show
    int timerInterval = 500; ///< milliseconds between two ticks

    bool IsFamily() const { return firstMember >= 0; }
    /** From a number in rows to that of a member's parameter. */
    int OffsetOf(int member) const { return IsFamily() ? (member - firstMember) * memberDistance : 0; }
    /** "1", or "A" where members count from 0; empty for a block without members. */
    QString MemberText(int member) const;
    /** "Analog Input 1": the caption of the window of a member; any number for a block without members. */
    QString WindowCaption(int member) const { return QString::fromLatin1(window) + MemberText(member); }
};

extern const BlockDescriptor BlockAccelDecel, BlockAnalogInputs, BlockAnalogOutputs, BlockAux, BlockAuxPI,
    BlockCalibration, BlockCurrentLoop, BlockCustom, BlockDateTime, BlockDiagnostics, BlockDigitalInputs,
    BlockFaultLog, BlockFaultLogic, BlockFieldCrossover, BlockFieldLoop, BlockFreqDigOutput, BlockFreqInput,
    BlockInternalLinks, BlockMOP, BlockMinMax, BlockRelayOutputs, BlockSetpointSum, BlockSetpoints,
    BlockStartStopLogic, BlockSystem, BlockThresholds, BlockTimer, BlockVelocityLoop,
    BlockWinderSpeedCalculator, BlockZeroSpeedLogic;

} // namespace quorvik
