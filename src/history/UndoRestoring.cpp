// The way back: what a step makes of the table, of the document and of its marks.

#include "history/UndoStack.h"

#include <QScopedValueRollback>
#include <utility>

namespace quorvik
{

void UndoStack::Restore(Way way)
{
    const bool isBack = way == Way::Undo;
    UndoStep &step = isBack ? done_.back() : undone_.back();
    {
        const QScopedValueRollback restoring(isRestoring_, true);
        const TableShape &shape = isBack ? step.shapeBefore : step.shapeAfter;
        if (shape.upperBound > table_.UpperBound())
            table_.Resize(shape.upperBound);
        const auto recordOf = [isBack](const UndoRow &row) { return isBack ? row.before : row.after; };
        for (auto &[p, row] : step.rows) {
            if (p > shape.upperBound)
                continue;
            if (isBack)
                row.after = table_[p];
            ParamRecord record = recordOf(row);
            record.ReadFlag = table_[p].ReadFlag;
            record.Value = table_[p].Value;
            table_.Row(p) = record;
        }
        table_.LastParam = shape.lastParam;
        table_.FileLastParam = shape.fileLastParam;
        table_.EditParamNumber = shape.editParamNumber;
        table_.WritePending = shape.writePending;
        if (shape.presets)
            table_.PresetTable = *shape.presets;
        else
            table_.PresetTable.Resize(shape.presetsUpperBound);
        for (const auto &[p, row] : step.rows)
            if (p <= shape.upperBound)
                table_.SetValue(p, recordOf(row).Value, ChangeCause::Undone);
        if (shape.upperBound < table_.UpperBound())
            table_.Resize(shape.upperBound);
    }
    RestoreDocument(way);
    Move(way);
    SetMarks();
}

void UndoStack::RestoreDocument(Way way)
{
    UndoStep &step = way == Way::Undo ? done_.back() : undone_.back();
    if (!step.ChangesDocument())
        return;
    const QScopedValueRollback restoring(isRestoring_, true);
    if (way == Way::Undo) {
        // Notes that were typed since are not lost, either.
        step.documentAfter = DocumentState::Of(document_);
        step.cleanAfter = std::exchange(clean_, step.cleanBefore);
    } else {
        step.cleanBefore = std::exchange(clean_, step.cleanAfter);
    }
    const DocumentState &wanted = way == Way::Undo ? step.documentBefore : step.documentAfter;
    document_.FileName = wanted.fileName;
    document_.Notes = wanted.notes;
    document_.HalfRead = wanted.isHalfRead;
    if (document_.VirtualSettings != wanted.virtualSettings) {
        document_.VirtualSettings = wanted.virtualSettings;
        document_.AnnounceVirtualSettings();
    }
    document_.UpdateTitle();
}

void UndoStack::Move(Way way)
{
    std::deque<UndoStep> &from = way == Way::Undo ? done_ : undone_;
    std::deque<UndoStep> &to = way == Way::Undo ? undone_ : done_;
    to.push_back(std::move(from.back()));
    from.pop_back();
    state_ = way == Way::Undo ? to.back().stateBefore : to.back().stateAfter;
    takesRules_ = false;
    Q_EMIT Changed();
}

void UndoStack::SetMarks()
{
    const QScopedValueRollback restoring(isRestoring_, true);
    document_.MarkFile(!IsClean());
}

} // namespace quorvik
