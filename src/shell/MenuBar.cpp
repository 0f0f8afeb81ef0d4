#include "shell/MenuBar.h"

#include "blocks/BlockCatalogue.h"
#include "desktop/Form.h"
#include "desktop/Mnemonics.h"
#include "shell/Icons.h"
#include "shell/MenuTable.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace quorvik
{

namespace
{

struct LinkEntry {
    const char *name;
    bool enabledOnline; ///< enabled on line and not off line, or the other way round
};

constexpr LinkEntry linkEntries[] = {
    {"mnuFileRead", false},           {"mnuFileWrite", false},          {"mnuFileNew", false},
    {"mnuToolsReInitDrive(1)", true}, {"mnuToolsReInitDrive(2)", true}, {"mnuToolsSaveDrive", true},
    {"mnuToolsLoadDrive", true},      {"mnuToolsSelectModel", false},   {"mnuToolsIOSimulator", false},
};

} // namespace

MenuBar::MenuBar(QMainWindow *window)
    : window_(window)
{
    AddTable();
    AddBlocks();
    Entry(QStringLiteral("mnuOptionsShowTipsonStartup"))->setChecked(true);
    FollowLink(false);
}

void MenuBar::AddTable()
{
    for (const MenuEntry &entry : MenuTable()) {
        const QString parent = QString::fromLatin1(entry.parent);
        const QString name = ControlName(entry.name, entry.index);
        const QString caption = QString::fromLatin1(entry.caption);
        if (entry.kind == MenuKind::Menu) {
            AddMenu(parent, name, caption);
        } else if (entry.kind == MenuKind::Separator) {
            AddSeparator(parent, name);
        } else {
            QAction *action = AddEntry(parent, name, caption);
            action->setCheckable(entry.kind == MenuKind::Check);
            if (*entry.shortcut)
                action->setShortcut(QKeySequence(QString::fromLatin1(entry.shortcut)));
            if (*entry.icon)
                action->setIcon(IconOf(QString::fromLatin1(entry.icon)));
        }
    }
}

void MenuBar::AddBlocks()
{
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        const QString parent = *entry.parent ? QString::fromLatin1(entry.parent) : QStringLiteral("mnuBlock");
        const QString name = QString::fromLatin1(entry.control);
        if (entry.afterSeparator)
            AddSeparator(parent, QStringLiteral("mnuViewSeparator"));
        if (!entry.make) {
            AddMenu(parent, name, QString::fromLatin1(entry.caption));
        } else if (!entry.IsFamily()) {
            AddEntry(parent, name, QString::fromLatin1(entry.caption));
        } else {
            if (entry.allControl)
                AddEntry(parent, QString::fromLatin1(entry.allControl),
                         QString::fromLatin1(entry.allCaption));
            for (int member = entry.firstMember; member <= entry.lastMember; ++member)
                AddEntry(parent, ControlName(entry.control, member), entry.MenuCaption(member));
        }
    }
}

void MenuBar::AddMenu(const QString &parent, const QString &name, const QString &caption)
{
    QMenu *above = menus_.value(parent);
    QMenu *menu = above ? above->addMenu(caption) : window_->menuBar()->addMenu(caption);
    menu->setObjectName(name);
    menus_.insert(name, menu);
    entries_.insert(name, menu->menuAction());
}

QAction *MenuBar::AddEntry(const QString &parent, const QString &name, const QString &caption)
{
    QAction *action = menus_.value(parent)->addAction(caption);
    action->setObjectName(name);
    entries_.insert(name, action);
    return action;
}

void MenuBar::AddSeparator(const QString &parent, const QString &name)
{
    menus_.value(parent)->addSeparator()->setObjectName(name);
}

void MenuBar::Hide(const QString &name)
{
    QAction *action = Entry(name);
    action->setVisible(false);
    // One that is only invisible keeps its mnemonic, and windows lose theirs to it.
    window_->menuBar()->removeAction(action);
}

void MenuBar::YieldMnemonics(const QSet<QChar> &letters)
{
    for (const MenuEntry &entry : MenuTable()) {
        if (*entry.parent)
            continue;
        const QString caption = QString::fromLatin1(entry.caption);
        const bool yields = letters.contains(MnemonicOf(caption));
        Entry(ControlName(entry.name, entry.index))
            ->setText(yields ? QString(caption).remove(u'&') : caption);
    }
}

void MenuBar::FollowLink(bool isOnline)
{
    for (const LinkEntry &entry : linkEntries)
        Entry(QString::fromLatin1(entry.name))->setEnabled(entry.enabledOnline == isOnline);
    Entry(QStringLiteral("mnuToolsOnline"))->setChecked(isOnline);
}

} // namespace quorvik
