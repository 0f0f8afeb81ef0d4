#include "operations/SaveCommands.h"

#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/DBEngine.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"
#include "settings/SettingsTables.h"

#include <QDir>
#include <QFileInfo>
#include <utility>

namespace quorvik
{

namespace
{

/** A name beside a file of the older format, for the same set in the present one. */
QString ConvertedName(const QString &path)
{
    return QFileInfo(path).completeBaseName() + QStringLiteral(" (converted).Svx");
}

} // namespace

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
    return asker_.ShowOpen(OpenRequest());
}

void SaveCommands::Save(int index)
{
    bool dialogShown = false;
    QString chosen = dialogFileName_;
    // Refusing the factory table leaves the set unnamed, so the next round shows the dialog; so does a file
    // of the older format as long as it is the chosen one.
    do {
        if (index == 1 || document_.FileName == Document::Unnamed() ||
            DBEngine::IsOlderFormat(document_.FileName) || DBEngine::IsOlderFormat(chosen)) {
            const std::optional<QString> path = asker_.ShowSave(SaveRequest());
            if (!path)
                return;
            chosen = *path;
            dialogShown = true;
        }
    } while (Refuses(chosen));

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

FileDialogRequest SaveCommands::OpenRequest() const
{
    const QString title = QStringLiteral("Open");
    const QString folder = FilePath(document_.FileName);
    if (folder.isEmpty())
        return {title, QString(), dialogFileName_};
    return {title, folder, FileTitle(document_.FileName)};
}

FileDialogRequest SaveCommands::SaveRequest() const
{
    FileDialogRequest request = OpenRequest();
    request.title = QStringLiteral("Save As");
    const QString folder = FilePath(document_.FileName);
    const QString &present = folder.isEmpty() ? dialogFileName_ : document_.FileName;
    if (DBEngine::IsOlderFormat(present))
        request.fileName = FilePath(request.fileName) + ConvertedName(present);
    return request;
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

QString SaveCommands::RefusalOf(const QString &path) const
{
    if (IsPresets(path))
        return QStringLiteral("Cannot overwrite default file. Choose another name.");
    return OlderFormatRefusal(path);
}

bool SaveCommands::Refuses(const QString &path)
{
    const QString refusal = RefusalOf(path);
    if (refusal.isEmpty())
        return false;
    asker_.MsgBox(refusal, MsgButtons::Ok, MsgIcon::Exclamation, AppTitle());
    if (IsPresets(path)) {
        document_.FileName = Document::Unnamed();
        document_.UpdateTitle();
    }
    return true;
}

} // namespace quorvik
