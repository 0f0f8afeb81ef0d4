#include "operations/SaveCommands.h"

#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFileInfo>
#include <utility>

namespace quorvik
{

SaveCommands::SaveCommands(Document &document, Asker &asker, SettingsFile &file, QString programFolder)
    : document_(document)
    , asker_(asker)
    , file_(file)
    , programFolder_(std::move(programFolder))
{
}

bool SaveCommands::PromptSaveChanges()
{
    // Edits whose mark was taken away again are not to be lost without a word either.
    if (!document_.FileModified && !document_.HasUnsavedEdits)
        return true;
    const QString text =
        FileTitle(document_.FileName) + QStringLiteral(" has been modified.\r\n\r\nSave changes?");
    switch (asker_.MsgBox(text, MsgButtons::YesNoCancel, MsgIcon::Question, AppTitle())) {
    case MsgAnswer::Yes:
        Save(0);
        return !document_.FileModified && !document_.HasUnsavedEdits;
    case MsgAnswer::No:
        document_.MarkFile(false);
        return true;
    default:
        return false;
    }
}

std::optional<QString> SaveCommands::ChooseFile()
{
    return asker_.ShowOpen(DialogRequest(QStringLiteral("Open")));
}

void SaveCommands::Save(int index)
{
    bool dialogShown = false;
    QString chosen = dialogFileName_;
    // Refusing the factory table leaves the set unnamed, so the next round shows the dialog.
    do {
        if (index == 1 || document_.FileName == Document::Unnamed()) {
            const std::optional<QString> path = asker_.ShowSave(DialogRequest(QStringLiteral("Save As")));
            if (!path)
                return;
            chosen = *path;
            dialogShown = true;
        }
    } while (RefusesPresets(chosen));

    // Save writes to the dialog's path and not to FileName: after a start with a file on the command line
    // there is none yet.
    const QString failure =
        chosen.isEmpty()
            ? QStringLiteral("The file was not saved: no file has been chosen in a dialog yet. Use Save As.")
            : file_.Save(chosen);
    if (failure.isEmpty()) {
        dialogFileName_ = chosen;
        document_.BecomeSaved(chosen);
        return;
    }
    // Once the dialog was shown, a failure is told without a box.
    if (!dialogShown)
        throw RuntimeFailure(failure);
    Q_EMIT SaveFailed(failure);
}

FileDialogRequest SaveCommands::DialogRequest(const QString &title) const
{
    const QString folder = FilePath(document_.FileName);
    if (folder.isEmpty())
        return {title, programFolder_, dialogFileName_};
    return {title, folder, FileTitle(document_.FileName)};
}

bool SaveCommands::IsPresets(const QString &path) const
{
    if (path.isEmpty())
        return false;
    const QFileInfo presets(programFolder_ + QStringLiteral("/Presets.fil"));
    const QFileInfo chosen(path);
    const QString behind = chosen.canonicalFilePath();
    return QDir::cleanPath(chosen.absoluteFilePath())
                   .compare(QDir::cleanPath(presets.absoluteFilePath()), Qt::CaseInsensitive) == 0 ||
           (!behind.isEmpty() && behind == presets.canonicalFilePath());
}

bool SaveCommands::RefusesPresets(const QString &path)
{
    if (!IsPresets(path))
        return false;
    asker_.MsgBox(QStringLiteral("Cannot overwrite default file. Choose another name."), MsgButtons::Ok,
                  MsgIcon::Exclamation, AppTitle());
    document_.FileName = Document::Unnamed();
    document_.UpdateTitle();
    return true;
}

} // namespace quorvik
