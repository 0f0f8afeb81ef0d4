#include "shell/Wiring.h"

#include "platform/Ports.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/WindowCommands.h"

namespace quorvik
{

namespace
{

void WireDesk(MDIFormMain &main)
{
    Desk &desk = main.TheDesk();
    desk.ShowChild = [&main](QWidget *form, bool activate) { main.Windows().ShowChild(form, activate); };
    desk.OpenIOMentor = [&main] { ShowIOMentor(main); };
}

void WireLink(MDIFormMain &main)
{
    Engines &engines = main.AllEngines();
    engines.link.MSComm1.DeviceOf = [ports = Ports(main.TheDesk().settings)](int number) {
        return ports.DeviceOf(number);
    };
    engines.link.ShowProgressBar = [&main] { ShowProgressBar(main); };
    engines.link.PromptSaveChanges = [&engines] {
        bool cancel = false;
        engines.fileCommands.PromptSaveChanges(cancel);
        return !cancel;
    };
}

void WireFileCommands(MDIFormMain &main)
{
    Engines &engines = main.AllEngines();
    DriveLink &link = engines.link;
    engines.fileCommands.Link.GoOnLine = [&link] { link.GoOnLine(); };
    engines.fileCommands.Link.GoOffLine = [&link](int reason) { link.GoOffLine(reason); };
    engines.fileCommands.Link.SetAllReadFlags = [&link](int delta) { link.SetAllReadFlags(delta); };
    engines.fileCommands.Link.RunScan = [&link](int scanKind) { link.RunWholeScan(scanKind); };
    engines.fileCommands.ShowSelectDriveModel = [&main] { ShowSelectDriveModel(main); };
}

} // namespace

void WireSeams(MDIFormMain &main)
{
    WireDesk(main);
    WireLink(main);
    WireFileCommands(main);
    main.AllEngines().rules.ShowEditDialog = [&main] { ShowEditDialog(main); };
}

} // namespace quorvik
