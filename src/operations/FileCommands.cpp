#include "operations/FileCommands.h"

#include "compare/ParameterSet.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/SaveCommands.h"
#include "operations/WriteHold.h"
#include "settings/SettingsFile.h"

namespace quorvik
{

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
    Intent intent(table_, Origin::File, QStringLiteral("New"));
    intent.Note(QStringLiteral("New set"));
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
    return LoadChosen(*path);
}

OperationResult FileCommands::Open(const QString &path)
{
    if (!saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    return LoadChosen(path);
}

OperationResult FileCommands::LoadChosen(const QString &path)
{
    bool isLoaded = false;
    OperationResult result = Load(path, isLoaded);
    if (isLoaded)
        saving_.SaveTo(path);
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
    if (OperationResult queued = drive_.QueueOpenSet(); !queued.IsDone())
        return queued;
    document_.DriveModified = true;
    OperationResult result = drive_.SendAll();
    drive_.GoOffLine(OffLineReason::CommandEnded);
    return result;
}

OperationResult FileCommands::LoadAndAssignSettingsFromFile(const QString &path)
{
    bool isLoaded = false;
    return Load(path, isLoaded);
}

OperationResult FileCommands::Load(const QString &path, bool &isLoaded)
{
    if (!table_.PortOpen()) {
        const QString failure = file_.LoadSettings(path);
        isLoaded = failure.isEmpty();
        return ResultOf(failure);
    }
    if (!table_.DriveIsStopped()) {
        rules_.ShowStopModeMessage();
        return {Outcome::Refused};
    }
    QString failure;
    DriveOperations::LeftOut leftOut;
    if (drive_.AsksFirst()) {
        // Read apart: the open set stays what it is until the user has answered.
        const ParameterSet set = ParameterSet::FromFile(path, table_, failure);
        if (!failure.isEmpty())
            return ResultOf(failure);
        if (OperationResult allowed = drive_.MaySendAll(set, leftOut); !allowed.IsDone())
            return allowed;
    }
    const Intent intent(table_, Origin::File, QStringLiteral("Open %1").arg(FileTitle(path)));
    {
        WriteHold hold(table_);
        failure = file_.LoadSettings(path);
        isLoaded = failure.isEmpty();
        if (isLoaded) {
            table_.RefreshAllDependents(Attr::RefreshAfterLoad);
            hold.Release();
            drive_.LeaveOut(leftOut);
        }
    }
    // A file that was refused changed nothing, so there is nothing to send.
    return isLoaded ? drive_.SendAll() : ResultOf(failure);
}

OperationResult FileCommands::ResultOf(const QString &failure)
{
    if (failure.isEmpty())
        return {};
    asker_.MsgBox(failure, MsgButtons::Ok, MsgIcon::None, AppTitle());
    return {Outcome::Refused};
}

} // namespace quorvik
