#pragma once

#include "compare/Backups.h"
#include "operations/OperationsFixture.h"
#include "operations/SafeWrites.h"
#include "operations/UndoCommands.h"

namespace quorvik::testing
{

/** Undo and redo over the operations. */
class UndoCommandsTest : public OperationsTest
{
protected:
    /** Enters a value as the edit dialog does, an input that holds the destination is taken off it. */
    void Edit(int p, std::int32_t rawValue)
    {
        asker.OnEditValue = [&](int, std::int32_t) -> std::optional<std::int32_t> {
            if (table.AttrBit(Attr::Destination, p) && rules.FindDestinationConflict(p, rawValue) != 0) {
                asker.Expect("Overwrite this input?", MsgAnswer::Yes);
                rules.ResolveDestinationConflict(p, rawValue);
            }
            return rawValue;
        };
        rules.EditParameter(table.AccessClass(p), p);
    }
    std::string Caption(Way way) const { return undo.Caption(way).toStdString(); }

    Backups backups{Path("backups")};
    VerifiedWrite writing{table, link, backups};
    SafeWrites writes{table, document, writing, drive, snapshots, guards, asker};
    UndoStack stack{table, document, link, writing};
    UndoCommands undo{table, document, link, stack, snapshots, writes, saving, guards, asker};
};

} // namespace quorvik::testing
