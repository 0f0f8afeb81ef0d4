#include "operations/FileCommands.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
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
    explicit WriteHold(ParameterTable &table)
        : table_(table)
    {
        for (int i = 0; i <= table_.LastParam; ++i)
            flags_.push_back(table_[i].WriteFlag);
        table_.SetAllWriteFlags(WriteState::Held);
    }
    ~WriteHold()
    {
        for (std::size_t i = 0; i < flags_.size(); ++i)
            table_.Row(int(i)).WriteFlag = flags_[i];
    }
    WriteHold(const WriteHold &) = delete;
    WriteHold &operator=(const WriteHold &) = delete;

    /** Queues all of them instead. */
    void Release()
    {
        flags_.clear();
        table_.SetAllWriteFlags(WriteState::Queued);
    }

private:
    ParameterTable &table_;
    std::vector<std::uint8_t> flags_;
};

} // namespace

FileCommands::FileCommands(ParameterTable &table, Document &document, EntryRules &rules, Asker &asker,
                           SettingsFile &file, SaveCommands &saving, DriveOperations &drive)
    : table_(table)
    , document_(document)
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
    table_.ResetToDefaults();
    document_.BeginAnew();
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
    table_.DropAllWrites();
    if (OperationResult online = drive_.GoOnLine(); !online.IsDone())
        return online;
    OperationResult result = drive_.ReadAll();
    // What came from the drive is a new set that nobody saved. A reading that did not come to its end has
    // said so itself.
    if (table_.PortOpen() && !document_.HalfRead)
        document_.BecomeUnnamed(true);
    drive_.GoOffLine(OffLineReason::CommandEnded);
    return result;
}

OperationResult FileCommands::WriteToDrive()
{
    if (!table_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return {Outcome::Refused};
    }
    if (OperationResult online = drive_.GoOnLine(); !online.IsDone())
        return online;
    table_.SetAllWriteFlags(WriteState::Queued);
    document_.DriveModified = true;
    OperationResult result = drive_.SendAll();
    drive_.GoOffLine(OffLineReason::CommandEnded);
    return result;
}

OperationResult FileCommands::LoadAndAssignSettingsFromFile(const QString &path)
{
    if (!table_.PortOpen())
        return ResultOf(file_.LoadSettings(path));
    if (!table_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return {Outcome::Refused};
    }
    QString failure;
    {
        WriteHold hold(table_);
        failure = file_.LoadSettings(path);
        if (failure.isEmpty()) {
            table_.RefreshAllDependents(Attr::RefreshAfterLoad);
            hold.Release();
        }
    }
    // A file that was refused changed nothing, so there is nothing to send.
    return failure.isEmpty() ? drive_.SendAll() : ResultOf(failure);
}

OperationResult FileCommands::ResultOf(const QString &failure)
{
    if (failure.isEmpty())
        return {};
    asker_.MsgBox(failure, MsgButtons::Ok, MsgIcon::None, AppTitle());
    return {Outcome::Refused};
}

} // namespace quorvik
