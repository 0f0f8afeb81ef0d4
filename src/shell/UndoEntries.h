#pragma once

#include "history/UndoStack.h"

#include <QObject>
#include <optional>

namespace quorvik
{

class MenuBar;
class UndoCommands;
struct Engines;

/** Has the entries Undo and Redo say what they would do, and leaves their keys to the fields that are typed
 * in. */
class UndoEntries : public QObject
{
    Q_OBJECT

public:
    UndoEntries(Engines &engines, const MenuBar &menus, QObject *parent);

    /** Which of the two an entry is; nothing for another one. */
    static std::optional<Way> WayOf(const QString &entry);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Follow();

    const UndoCommands &undo_;
    const MenuBar &menus_;
};

} // namespace quorvik
