#include "shell/MenuBar.h"

#include "blocks/BlockCatalogue.h"
#include "desktop/Form.h"
#include "desktop/Mnemonics.h"
#include "platform/Guard.h"
#include "shell/Icons.h"
#include "shell/MDIFormMain.h"
#include "shell/MenuTable.h"
#include "shell/WindowCommands.h"

#include <QAction>
#include <QIcon>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>

namespace quorvik
{

MenuBar::MenuBar(MDIFormMain *main)
    : main_(main)
{
    AddTable();
    AddBlocks();
    for (const char *option : {"mnuOptionsShowTipsonStartup", "mnuOptionsAskBeforeRisky"})
        Entry(QString::fromLatin1(option))->setChecked(true);
    FollowLink(false);
}

void MenuBar::AddTable()
{
    for (const MenuRow &row : MenuTable()) {
        const QString name = QString::fromLatin1(row.name);
        const QString caption = QString::fromLatin1(row.caption);
        if (row.kind == MenuKind::Menu) {
            AddMenu(nullptr, name, caption);
            continue;
        }
        QMenu *menu = main_->menuBar()->actions().last()->menu();
        if (row.kind == MenuKind::Submenu) {
            AddMenu(menu, name, caption);
            continue;
        }
        if (row.kind == MenuKind::Separator) {
            menu->addSeparator()->setObjectName(name);
            continue;
        }
        QAction *action = AddEntry(menu, name, caption, [main = main_, run = row.run] {
            if (run)
                run(*main);
        });
        action->setCheckable(row.kind == MenuKind::Check);
        if (*row.shortcut)
            action->setShortcuts(QKeySequence::listFromString(QString::fromLatin1(row.shortcut)));
        if (*row.icon)
            action->setIcon(IconOf(QString::fromLatin1(row.icon)));
    }
}

void MenuBar::AddBlocks()
{
    for (const BlockMenuEntry &block : BlockCatalogue()) {
        QMenu *menu = Menu(QString::fromLatin1(*block.parent ? block.parent : "mnuBlock"));
        const QString name = QString::fromLatin1(block.control);
        const QString caption = QString::fromLatin1(block.caption);
        const auto open = [main = main_, &block](int member) { OpenBlock(main->TheDesk(), block, member); };
        if (block.afterSeparator)
            menu->addSeparator()->setObjectName(QStringLiteral("mnuViewSeparator"));
        if (!block.sheet) {
            AddMenu(menu, name, caption);
        } else if (!block.IsFamily()) {
            AddEntry(menu, name, caption, [open] { open(0); });
        } else {
            if (block.allControl)
                AddEntry(menu, QString::fromLatin1(block.allControl), QString::fromLatin1(block.allCaption),
                         [open, &block] {
                             for (int member = block.firstMember; member <= block.lastMember; ++member)
                                 open(member);
                         });
            for (int member = block.firstMember; member <= block.lastMember; ++member)
                AddEntry(menu, ControlName(block.control, member), block.MenuCaption(member),
                         [open, member] { open(member); });
        }
    }
}

void MenuBar::AddMenu(QMenu *above, const QString &name, const QString &caption)
{
    QMenu *menu = above ? above->addMenu(caption) : main_->menuBar()->addMenu(caption);
    menu->setObjectName(name);
    menus_.insert(name, menu);
    entries_.insert(name, menu->menuAction());
}

QAction *MenuBar::AddEntry(QMenu *menu, const QString &name, const QString &caption,
                           const std::function<void()> &run)
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(name);
    On(action, &QAction::triggered, main_, run);
    entries_.insert(name, action);
    return action;
}

void MenuBar::Hide(const QString &name)
{
    QAction *action = Entry(name);
    action->setVisible(false);
    // One that is only invisible keeps its mnemonic, and windows lose theirs to it.
    main_->menuBar()->removeAction(action);
}

void MenuBar::YieldMnemonics(const QSet<QChar> &letters)
{
    for (const MenuRow &row : MenuTable()) {
        if (row.kind != MenuKind::Menu)
            continue;
        const QString caption = QString::fromLatin1(row.caption);
        const bool yields = letters.contains(MnemonicOf(caption));
        Entry(QString::fromLatin1(row.name))->setText(yields ? QString(caption).remove(u'&') : caption);
    }
}

QWidget *MenuBar::Lend(QWidget *form) const
{
    auto *bar = new QMenuBar(form);
    bar->setNativeMenuBar(false);
    bar->addMenu(Menu(QStringLiteral("mnuWindow")));
    if (form->layout())
        form->layout()->setMenuBar(bar);
    for (const MenuRow &row : MenuTable())
        if (*row.shortcut)
            form->addAction(Entry(QString::fromLatin1(row.name)));
    return bar;
}

void MenuBar::TakeBack(QWidget *form) const
{
    for (const MenuRow &row : MenuTable())
        if (*row.shortcut)
            form->removeAction(Entry(QString::fromLatin1(row.name)));
    delete form->findChild<QMenuBar *>(QString(), Qt::FindDirectChildrenOnly);
}

void MenuBar::FollowFront(const WindowCommands &windows)
{
    QWidget *front = windows.InFront();
    QAction *frame = Entry(QStringLiteral("mnuWindowFrame"));
    frame->setEnabled(front != nullptr);
    frame->setText(front && windows.IsOutside(front) ? QStringLiteral("&Put Back into the Frame")
                                                     : QStringLiteral("&Take Out of the Frame"));
    for (const char *zoom : {"mnuWindowZoomIn", "mnuWindowZoomOut", "mnuWindowFit"})
        Entry(QString::fromLatin1(zoom))->setEnabled(windows.DrawingInFront() != nullptr);
    YieldMnemonics(front ? MnemonicsIn(*front) : QSet<QChar>());
}

void MenuBar::FollowLink(bool isOnline)
{
    for (const MenuRow &row : MenuTable())
        if (row.enabled != MenuEnabled::Always)
            Entry(QString::fromLatin1(row.name))
                ->setEnabled((row.enabled == MenuEnabled::Online) == isOnline);
    Entry(QStringLiteral("mnuToolsOnline"))->setChecked(isOnline);
}

} // namespace quorvik
