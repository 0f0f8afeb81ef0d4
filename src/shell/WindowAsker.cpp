#include "shell/WindowAsker.h"

#include "desktop/FormModifyParameterValue.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "platform/LastFolder.h"
#include "platform/Progress.h"
#include "settings/forms/FormSelectDriveModel.h"
#include "shell/MDIFormMain.h"
#include "shell/WindowCommands.h"

namespace quorvik
{

FileDialogRequest WindowAsker::WithFolder(FileDialogRequest request) const
{
    request.folder = FolderFor(FolderUse::Sets, main_.TheDesk().settings, request.folder);
    return request;
}

std::optional<QString> WindowAsker::Remembered(std::optional<QString> chosen) const
{
    if (chosen)
        KeepFolder(FolderUse::Sets, main_.TheDesk().settings, *chosen);
    return chosen;
}

std::optional<std::int32_t> WindowAsker::EditValue(int p, std::int32_t rawValue)
{
    // On the screen where the value stands.
    QWidget *front = main_.Windows().InFront();
    QWidget *owner = front && front->isWindow() ? front : &main_;
    FormModifyParameterValue window(main_.TheDesk(), owner, p, rawValue);
    window.exec();
    return window.EditedValue();
}

bool WindowAsker::ChooseOnLine()
{
    FormSelectCommMode window(main_.TheDesk(), &main_, main_.AllEngines().link);
    window.exec();
    return window.OnlineChosen();
}

void WindowAsker::SelectDriveModel()
{
    FormSelectDriveModel(main_.TheDesk(), &main_).exec();
}

void WindowAsker::ShowProgress(Progress &progress)
{
    FormProgressBar window(main_.TheDesk(), &main_, progress);
    if (!progress.IsOver())
        window.exec();
}

} // namespace quorvik
