#pragma once

#include "history/UndoStack.h"
#include "operations/Outcome.h"

#include <functional>

namespace quorvik
{

class Asker;
class DriveLink;
class Guards;
class SafeWrites;
class SaveCommands;
class Snapshots;
struct ParameterSet;

/**
 * Undo and redo. Off line the set is as it was. On line it is a write of the old values by the road on which
 * the new ones went, under the same rules: what they forbid now is told, and stays to be taken back later.
 */
class UndoCommands
{
public:
    UndoCommands(ParameterTable &table, Document &document, DriveLink &link, UndoStack &stack,
                 Snapshots &snapshots, SafeWrites &writes, SaveCommands &saving, const Guards &guards,
                 Asker &asker);

    OperationResult Undo() { return Go(Way::Undo); }
    OperationResult Redo() { return Go(Way::Redo); }

    /** "Undo (226) Fwd Accel A 5.0 to 7.5 Sec"; the bare word where there is nothing to undo. */
    QString Caption(Way way) const;
    /** Whether there is something. */
    bool IsPossible(Way way) const { return stack_.Next(way) != nullptr; }
    /** Why there is nothing, in a sentence; else the caption. */
    QString Explanation(Way way) const;

    /** How long a write may take to be answered, in milliseconds. */
    int WriteLimitMs = 5000;

private:
    /** What is to be written to the drive. */
    struct Plan {
        std::vector<ParamValue> values;
        std::vector<ParamValue> held; ///< what the drive holds already
        QString changed;              ///< what it holds otherwise than it was left, a line each
    };

    OperationResult Go(Way way);
    OperationResult GoOffLine(Way way);
    OperationResult GoOnLine(Way way);
    Plan PlanOf(const UndoStep &step, Way way, const ParameterSet &from,
                const std::map<int, std::int32_t> &fresh) const;
    OperationResult Enter(Way way, const Plan &plan, const ParameterSet &from,
                          const std::map<int, std::int32_t> &fresh);
    ParameterSet SetOf(const UndoStep &step, Way way) const;
    bool MayOverwrite(Way way, const QString &changed);
    /** Whether inputs may be put back on what starts the motor. */
    bool MayStart(Way way, const std::vector<ParamValue> &values);
    OperationResult Refuse(Way way, const QString &why);
    bool Settled(const std::vector<int> &params);

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    UndoStack &stack_;
    Snapshots &snapshots_;
    SafeWrites &writes_;
    SaveCommands &saving_;
    const Guards &guards_;
    Asker &asker_;
    bool isUnderWay_ = false;
};

} // namespace quorvik
