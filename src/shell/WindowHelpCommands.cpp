#include "desktop/HTMLHelp.h"
#include "shell/Commands.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/WindowCommands.h"

#include <QDesktopServices>
#include <QUrl>

namespace quorvik
{

namespace
{

QUrl MakersPage()
{
    return QUrl(QStringLiteral("https://www.halvane.example/"));
}

} // namespace

void AddWindowAndHelpCommands(CommandTable &commands, MDIFormMain &main)
{
    WindowCommands *windows = &main.Windows();
    commands.insert({
        {QStringLiteral("mnuWindowCascade"), [windows] { windows->Cascade(); }},
        {QStringLiteral("mnuWindowTileHorizontal"), [windows] { windows->Tile(Qt::Horizontal); }},
        {QStringLiteral("mnuWindowTileVertical"), [windows] { windows->Tile(Qt::Vertical); }},
        {QStringLiteral("mnuWindowArrangeIcons"), [windows] { windows->ArrangeIcons(); }},
        {QStringLiteral("mnuWindowMinimizeAll"), [windows] { windows->MinimizeAll(); }},
        {QStringLiteral("mnuWindowRestoreAll"), [windows] { windows->RestoreAll(); }},
        {QStringLiteral("mnuWindowCloseAll"), [windows] { windows->CloseAll(); }},
    });

    MDIFormMain *owner = &main;
    HTMLHelp *help = &main.TheDesk().help;
    commands.insert({
        {QStringLiteral("mnuHelpContents"), [=] { help->DisplayContents(owner); }},
        {QStringLiteral("mnuHelpSearch"), [=] { help->DisplaySearch(owner); }},
        {QStringLiteral("mnuHelpSarvexManual"),
         [=] { help->DisplayTopic(QStringLiteral("Sarvex Manual.htm"), owner); }},
        {QStringLiteral("mnuHalvaneWeb"), [] { QDesktopServices::openUrl(MakersPage()); }},
        {QStringLiteral("mnuHelpAbout"), [owner] { ShowAbout(*owner); }},
    });
}

} // namespace quorvik
