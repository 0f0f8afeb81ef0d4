#include "settings/FileCommands.h"

#include "model/EntryRules.h"
#include "model/Model.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFileInfo>
#include <utility>

namespace quorvik
{

namespace
{

const QString &Unnamed()
{
    static const QString unnamed = QStringLiteral("unnamed");
    return unnamed;
}

/**
 * Holds all writable parameters, so that nothing is polled or sent while the table is being rewritten. Going
 * out of scope before Release() gives back the flags as they were, so that no parameter stays held.
 */
class WriteHold
{
public:
    explicit WriteHold(Model &model)
        : model_(model)
    {
        for (int i = 0; i <= model_.LastParam; ++i)
            flags_.push_back(model_.ParamTable[i].WriteFlag);
        model_.SetAllWriteFlags(WriteState::Held);
    }
    ~WriteHold()
    {
        for (std::size_t i = 0; i < flags_.size(); ++i)
            model_.ParamTable[int(i)].WriteFlag = flags_[i];
    }
    WriteHold(const WriteHold &) = delete;
    WriteHold &operator=(const WriteHold &) = delete;

    /** Queues all of them instead. */
    void Release()
    {
        flags_.clear();
        model_.SetAllWriteFlags(WriteState::Queued);
    }

private:
    Model &model_;
    std::vector<std::uint8_t> flags_;
};

} // namespace

FileCommands::FileCommands(Model &model, EntryRules &rules, Asker &asker, SettingsFile &file,
                           QString programFolder)
    : model_(model)
    , rules_(rules)
    , asker_(asker)
    , file_(file)
    , programFolder_(std::move(programFolder))
{
}

void FileCommands::PromptSaveChanges(bool &cancel)
{
    // Edits whose mark was taken away again are not to be lost without a word either.
    if (!model_.FileModified && !model_.HasUnsavedEdits)
        return;
    const QString text =
        FileTitle(model_.FileName) + QStringLiteral(" has been modified.\r\n\r\nSave changes?");
    switch (asker_.MsgBox(text, MsgButtons::YesNoCancel, MsgIcon::Question, AppTitle())) {
    case MsgAnswer::Yes:
        Save(0);
        if (model_.FileModified || model_.HasUnsavedEdits)
            cancel = true;
        break;
    case MsgAnswer::No:
        model_.MarkFile(false);
        break;
    default:
        cancel = true;
        break;
    }
}

void FileCommands::New()
{
    bool cancel = false;
    PromptSaveChanges(cancel);
    if (cancel)
        return;
    model_.ResetToDefaults();
    model_.Notes.clear();
    BecomeUnnamed(false);
    ShowSelectDriveModel();
}

void FileCommands::Open()
{
    bool cancel = false;
    PromptSaveChanges(cancel);
    if (cancel)
        return;
    const std::optional<QString> path = asker_.ShowOpen(DialogRequest(QStringLiteral("Open")));
    if (!path)
        return;
    if (LoadAndAssignSettingsFromFile(*path))
        dialogFileName_ = *path;
}

void FileCommands::Save(int index)
{
    bool dialogShown = false;
    QString chosen = dialogFileName_;
    // Refusing the factory table leaves the set unnamed, so the next round shows the dialog.
    do {
        if (index == 1 || model_.FileName == Unnamed()) {
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
        model_.FileName = chosen;
        model_.MarkFile(false);
        return;
    }
    // Once the dialog was shown, a failure is told without a box.
    if (!dialogShown)
        throw RuntimeFailure(failure);
    Q_EMIT SaveFailed(failure);
}

void FileCommands::ReadFromDrive()
{
    bool cancel = false;
    PromptSaveChanges(cancel);
    if (cancel)
        return;
    model_.DropAllWrites();
    Link.GoOnLine();
    if (!model_.PortOpen())
        return;
    Link.SetAllReadFlags(1);
    Link.RunScan(1);
    // What came from the drive is a new set that nobody saved. A reading that did not come to its end has
    // said so itself.
    if (model_.PortOpen() && !model_.HalfRead)
        BecomeUnnamed(true);
    Link.GoOffLine(1);
}

void FileCommands::WriteToDrive()
{
    if (!model_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return;
    }
    Link.GoOnLine();
    if (!model_.PortOpen())
        return;
    model_.SetAllWriteFlags(WriteState::Queued);
    model_.DriveModified = true;
    Link.RunScan(2);
    Link.GoOffLine(1);
}

bool FileCommands::LoadAndAssignSettingsFromFile(const QString &path)
{
    if (!model_.PortOpen()) {
        const QString failure = file_.LoadSettings(path);
        ShowFailure(failure);
        return failure.isEmpty();
    }
    if (!model_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return false;
    }
    QString failure;
    {
        WriteHold hold(model_);
        failure = file_.LoadSettings(path);
        if (failure.isEmpty()) {
            model_.RefreshAllDependents(Attr::RefreshAfterLoad);
            hold.Release();
        }
    }
    // A file that was refused changed nothing, so there is nothing to send.
    if (failure.isEmpty())
        Link.RunScan(2);
    else
        ShowFailure(failure);
    return failure.isEmpty();
}

FileDialogRequest FileCommands::DialogRequest(const QString &title) const
{
    const QString folder = FilePath(model_.FileName);
    if (folder.isEmpty())
        return {title, programFolder_, dialogFileName_};
    return {title, folder, FileTitle(model_.FileName)};
}

bool FileCommands::RefusesPresets(const QString &path)
{
    const QFileInfo presets(programFolder_ + QStringLiteral("/Presets.fil"));
    const QFileInfo chosen(path);
    const QString behind = chosen.canonicalFilePath();
    const bool isPresets =
        QDir::cleanPath(chosen.absoluteFilePath())
                .compare(QDir::cleanPath(presets.absoluteFilePath()), Qt::CaseInsensitive) == 0 ||
        (!behind.isEmpty() && behind == presets.canonicalFilePath());
    if (path.isEmpty() || !isPresets)
        return false;
    asker_.MsgBox(QStringLiteral("Cannot overwrite default file. Choose another name."), MsgButtons::Ok,
                  MsgIcon::Exclamation, AppTitle());
    model_.FileName = Unnamed();
    model_.UpdateTitle();
    return true;
}

void FileCommands::BecomeUnnamed(bool modified)
{
    model_.FileName = Unnamed();
    model_.MarkFile(modified);
}

void FileCommands::ShowFailure(const QString &sentence)
{
    if (!sentence.isEmpty())
        asker_.MsgBox(sentence, MsgButtons::Ok, MsgIcon::None, AppTitle());
}

} // namespace quorvik
