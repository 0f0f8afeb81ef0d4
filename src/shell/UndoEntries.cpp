#include "shell/UndoEntries.h"

#include "operations/Engines.h"
#include "platform/Guard.h"
#include "shell/MenuBar.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

struct UndoEntry {
    const char *name;
    Way way;
    qsizetype mnemonicAt; ///< in the caption's first word
};

constexpr UndoEntry Entries[] = {{"mnuToolsUndo", Way::Undo, 0}, {"mnuToolsRedo", Way::Redo, 2}};

bool IsTypedIn(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget && widget->testAttribute(Qt::WA_InputMethodEnabled);
}

} // namespace

UndoEntries::UndoEntries(Engines &engines, const MenuBar &menus, QObject *parent)
    : QObject(parent)
    , undo_(engines.undo)
    , menus_(menus)
{
    On(&engines.undoStack, &UndoStack::Changed, this, [this] { Follow(); });
    menus_.Menu(QStringLiteral("mnuTools"))->setToolTipsVisible(true);
    Follow();
    QCoreApplication::instance()->installEventFilter(this);
}

std::optional<Way> UndoEntries::WayOf(const QString &entry)
{
    for (const UndoEntry &row : Entries)
        if (entry == QLatin1String(row.name))
            return row.way;
    return std::nullopt;
}

void UndoEntries::Follow()
{
    for (const auto &[name, way, mnemonicAt] : Entries) {
        QAction *action = menus_.Entry(QString::fromLatin1(name));
        action->setText(undo_.Caption(way).replace(u'&', QStringLiteral("&&")).insert(mnemonicAt, u'&'));
        action->setToolTip(undo_.Explanation(way));
        action->setEnabled(undo_.IsPossible(way));
    }
}

bool UndoEntries::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride || !IsTypedIn(watched))
        return QObject::eventFilter(watched, event);
    // Some of the keys are the fields' own on one desktop only, and are to change no drive on the others.
    const QKeySequence keys(static_cast<const QKeyEvent *>(event)->keyCombination());
    const bool isOurs = std::ranges::any_of(Entries, [&](const UndoEntry &entry) {
        return menus_.Entry(QString::fromLatin1(entry.name))->shortcuts().contains(keys);
    });
    if (isOurs)
        event->accept();
    return isOurs || QObject::eventFilter(watched, event);
}

} // namespace quorvik
