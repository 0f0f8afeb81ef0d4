#include "desktop/SaveDialog.h"

#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/LastFolder.h"

#include <QFileDialog>
#include <QFileInfo>

namespace quorvik
{

std::optional<QString> RunSaveDialog(QFileDialog &dialog, Asker &asker)
{
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    for (;;) {
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return std::nullopt;
        const QString path = dialog.selectedFiles().constFirst();
        if (!QFileInfo::exists(path) ||
            asker.MsgBox(QStringLiteral("\"%1\" exists already.\r\n\r\nReplace it?").arg(FileTitle(path)),
                         MsgButtons::YesNo, MsgIcon::Exclamation, dialog.windowTitle()) == MsgAnswer::Yes)
            return path;
        dialog.selectFile(path);
    }
}

std::optional<QString> RunExportDialog(QFileDialog &dialog, const QString &suggested, SettingsStore &settings,
                                       Asker &asker)
{
    dialog.setDirectory(FolderFor(FolderUse::Exports, settings, suggested));
    if (const QString name = FileTitle(suggested); !name.isEmpty())
        dialog.selectFile(name);
    std::optional<QString> path = RunSaveDialog(dialog, asker);
    if (path)
        KeepFolder(FolderUse::Exports, settings, *path);
    return path;
}

} // namespace quorvik
