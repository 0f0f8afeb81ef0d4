#pragma once

#include <QChar>
#include <QHash>
#include <QSet>
#include <QString>
#include <functional>

class QAction;
class QMenu;
class QWidget;

namespace quorvik
{

class MDIFormMain;
class WindowCommands;

/** The menu tree of the main window, found by control name ("mnuFileSave(1)"). */
class MenuBar
{
public:
    /** Builds the tree of MenuTable() and the catalogue of blocks into the window's menu bar. */
    explicit MenuBar(MDIFormMain *main);

    /** An entry, or a menu's own entry; null where the tree has none of that name. */
    QAction *Entry(const QString &name) const { return entries_.value(name); }
    QMenu *Menu(const QString &name) const { return menus_.value(name); }

    /** Takes a menu out of the bar for good, with its mnemonic. */
    void Hide(const QString &name);
    /** Leaves those letters to the window in front: menus of the bar with such a mnemonic lose it for now. */
    void YieldMnemonics(const QSet<QChar> &letters);

    /** Gives a window outside the frame the Window menu, and every key of the bar. @return what goes with
     * TakeBack(). */
    QWidget *Lend(QWidget *form) const;
    void TakeBack(QWidget *form) const;

    /** Brings the entries and letters that depend on the window in front in line with it. */
    void FollowFront(const WindowCommands &windows);
    /** Brings the entries that depend on the link in line with it. */
    void FollowLink(bool isOnline);

private:
    void AddTable();
    void AddBlocks();
    /** @param above null for the menu bar. */
    void AddMenu(QMenu *above, const QString &name, const QString &caption);
    QAction *AddEntry(QMenu *menu, const QString &name, const QString &caption,
                      const std::function<void()> &run);

    MDIFormMain *main_;
    QHash<QString, QAction *> entries_;
    QHash<QString, QMenu *> menus_;
};

} // namespace quorvik
