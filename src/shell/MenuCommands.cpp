#include "settings/forms/FilePrint.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/Commands.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"

#include <QAction>

namespace quorvik
{

namespace
{

void ListParameters(MDIFormMain &main, int index)
{
    OpenViewParameters(main.TheDesk(), main.Print(),
                       index == 0 ? ReportFilter::All : ReportFilter::ChangedFromDefault);
}

} // namespace

CommandTable AllCommands(MDIFormMain &main)
{
    CommandTable commands;
    AddFileCommands(commands, main);
    AddToolCommands(commands, main);
    AddBlockCommands(commands, main);
    AddWindowAndHelpCommands(commands, main);
    return commands;
}

void AddFileCommands(CommandTable &commands, MDIFormMain &main)
{
    MDIFormMain *owner = &main;
    FileCommands *files = &main.AllEngines().fileCommands;
    SaveCommands *saving = &main.AllEngines().saving;
    commands.insert({
        {QStringLiteral("mnuFileNew"), [files] { files->New(); }},
        {QStringLiteral("mnuFileOpen"), [files] { files->Open(); }},
        {QStringLiteral("mnuFileSave(0)"), [saving] { saving->Save(0); }},
        {QStringLiteral("mnuFileSave(1)"), [saving] { saving->Save(1); }},
        {QStringLiteral("mnuFileRead"), [files] { files->ReadFromDrive(); }},
        {QStringLiteral("mnuFileWrite"), [files] { files->WriteToDrive(); }},
        {QStringLiteral("mnuFileNotes"), [owner] { ShowNotes(*owner); }},
        {QStringLiteral("mnuFilePrint"), [owner] { owner->Print().mnuFilePrint_Click(owner); }},
        {QStringLiteral("mnuFileExit"), [owner] { owner->close(); }},
        {QStringLiteral("mnuOptionsCommunications"), [owner] { ShowCommunications(*owner); }},
        {QStringLiteral("mnuOptionsColorSettings"), [owner] { ShowColorSettings(*owner); }},
        // The check mark itself is the setting; the click has flipped it already.
        {QStringLiteral("mnuOptionsShowTipsonStartup"), [] {}},
    });
}

void AddToolCommands(CommandTable &commands, MDIFormMain &main)
{
    MDIFormMain *owner = &main;
    Engines *engines = &main.AllEngines();
    commands.insert({
        {QStringLiteral("mnuToolsOnline"), [owner] { owner->ToggleComStatus(); }},
        {QStringLiteral("mnuToolsSelectModel"), [owner] { ShowSelectDriveModel(*owner); }},
        {QStringLiteral("mnuListParameters(0)"), [owner] { ListParameters(*owner, 0); }},
        {QStringLiteral("mnuListParameters(1)"), [owner] { ListParameters(*owner, 1); }},
        {QStringLiteral("mnuToolsReInitDrive(1)"),
         [engines] { engines->drive.RestartDrive(Restart::ReInitialize); }},
        {QStringLiteral("mnuToolsReInitDrive(2)"),
         [engines] { engines->drive.RestartDrive(Restart::Reset); }},
        {QStringLiteral("mnuToolsLoadDrive"), [engines] { engines->drive.LoadDriveParameters(); }},
        {QStringLiteral("mnuToolsSaveDrive"), [engines] { engines->drive.SaveDriveParameters(); }},
        {QStringLiteral("mnuToolsIOSimulator"), [owner] { ShowIOSimulator(*owner); }},
        {QStringLiteral("mnuToolsVirtualOperator"), [owner] { ShowVirtualOperator(*owner); }},
        {QStringLiteral("mnuMentorsBasic"), [owner] { ShowBasicMentor(*owner); }},
        {QStringLiteral("mnuMentorIO"), [owner] { ShowIOMentor(*owner); }},
    });
}

} // namespace quorvik
