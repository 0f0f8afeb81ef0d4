#include "operations/FileCommands.h"

#include "model/Model.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/SaveCommands.h"
#include "settings/SettingsFile.h"

#include <vector>

namespace quorvik
{

namespace
{

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
                           SaveCommands &saving, DriveOperations &drive)
    : model_(model)
    , rules_(rules)
    , asker_(asker)
    , file_(file)
    , saving_(saving)
    , drive_(drive)
{
}

OperationResult FileCommands::New()
{
    if (!saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    model_.ResetToDefaults();
    model_.Notes.clear();
    BecomeUnnamed(false);
    asker_.SelectDriveModel();
    return {};
}

OperationResult FileCommands::Open()
{
    if (!saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    const std::optional<QString> path = saving_.ChooseFile();
    if (!path)
        return {Outcome::Cancelled};
    OperationResult result = LoadAndAssignSettingsFromFile(*path);
    if (result.outcome != Outcome::Refused)
        saving_.SaveTo(*path);
    return result;
}

OperationResult FileCommands::ReadFromDrive()
{
    if (!saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    model_.DropAllWrites();
    if (const OperationResult online = drive_.GoOnLine(); !online.IsDone())
        return online;
    OperationResult result = drive_.ReadAll();
    // What came from the drive is a new set that nobody saved. A reading that did not come to its end has
    // said so itself.
    if (model_.PortOpen() && !model_.HalfRead)
        BecomeUnnamed(true);
    drive_.GoOffLine(OffLineReason::CommandEnded);
    return result;
}

OperationResult FileCommands::WriteToDrive()
{
    if (!model_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return {Outcome::Refused};
    }
    if (const OperationResult online = drive_.GoOnLine(); !online.IsDone())
        return online;
    model_.SetAllWriteFlags(WriteState::Queued);
    model_.DriveModified = true;
    OperationResult result = drive_.SendAll();
    drive_.GoOffLine(OffLineReason::CommandEnded);
    return result;
}

OperationResult FileCommands::LoadAndAssignSettingsFromFile(const QString &path)
{
    if (!model_.PortOpen())
        return ResultOf(file_.LoadSettings(path));
    if (!model_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return {Outcome::Refused};
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
    return failure.isEmpty() ? drive_.SendAll() : ResultOf(failure);
}

void FileCommands::BecomeUnnamed(bool modified)
{
    model_.FileName = Model::Unnamed();
    model_.MarkFile(modified);
}

OperationResult FileCommands::ResultOf(const QString &failure)
{
    if (failure.isEmpty())
        return {};
    asker_.MsgBox(failure, MsgButtons::Ok, MsgIcon::None, AppTitle());
    return {Outcome::Refused};
}

} // namespace quorvik
