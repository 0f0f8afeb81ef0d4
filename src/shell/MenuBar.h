#pragma once

#include <QChar>
#include <QHash>
#include <QSet>
#include <QString>

class QAction;
class QMainWindow;
class QMenu;

namespace quorvik
{

/** The menu tree of the main window, found by control name ("mnuFileSave(1)"). */
class MenuBar
{
public:
    /** Builds the tree of MenuTable() and the catalogue of blocks into the window's menu bar. */
    explicit MenuBar(QMainWindow *window);

    /** An entry, or a menu's own entry; the name must be one of the tree's. */
    QAction *Entry(const QString &name) const { return entries_.value(name); }
    QMenu *Menu(const QString &name) const { return menus_.value(name); }
    const QHash<QString, QAction *> &Entries() const { return entries_; }

    /** Takes a menu out of the bar for good, with its mnemonic. */
    void Hide(const QString &name);
    /** Leaves those letters to the window in front: menus of the bar with such a mnemonic lose it for now. */
    void YieldMnemonics(const QSet<QChar> &letters);

    /** Brings the entries that depend on the link in line with it. */
    void FollowLink(bool isOnline);

private:
    void AddTable();
    void AddBlocks();
    void AddMenu(const QString &parent, const QString &name, const QString &caption);
    QAction *AddEntry(const QString &parent, const QString &name, const QString &caption);
    void AddSeparator(const QString &parent, const QString &name);

    QMainWindow *window_;
    QHash<QString, QAction *> entries_;
    QHash<QString, QMenu *> menus_;
};

} // namespace quorvik
