#include "operations/DriveOperations.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "platform/Guard.h"
#include "platform/Progress.h"
#include "platform/Waiting.h"

#include <QScopedValueRollback>

namespace quorvik
{

namespace
{

constexpr int MostStopOnlyRefusals = 3;

Question OnLineQuestion(const Guards &guards)
{
    return {.text = QStringLiteral("Write current parameter settings to drive?"),
            .title = QStringLiteral("Write Parameters"),
            .explanation = QStringLiteral("Yes writes the open set to the drive, over the drive's values.\r\n"
                                          "No reads the drive's values, over the open set.\r\n"
                                          "Compare leaves both as they are."),
            .choices = {{MsgAnswer::Yes},
                        {MsgAnswer::No},
                        {MsgAnswer::Other, QStringLiteral("&Compare...")},
                        {MsgAnswer::Cancel}},
            .safe = guards.DefaultOf(MsgAnswer::Yes, MsgAnswer::No)};
}

} // namespace

DriveOperations::DriveOperations(ParameterTable &table, Document &document, DriveLink &link,
                                 EntryRules &rules, SaveCommands &saving, Asker &asker, Snapshots &snapshots,
                                 Guards &guards)
    : table_(table)
    , document_(document)
    , link_(link)
    , rules_(rules)
    , saving_(saving)
    , asker_(asker)
    , snapshots_(snapshots)
    , guards_(guards)
{
    On(&link_, &DriveLink::Broken, this,
       [this](LinkFault fault, bool mayBeMoving) { OnBroken(fault, mayBeMoving); });
    On(&link_, &DriveLink::BreakingOff, this, [this] { BeforeLeaving(OffLineReason::BrokenOff); });
    On(&link_, &DriveLink::WriteGivenUp, this,
       [this](int p, std::int32_t rawValue, bool isTold) { OnWriteGivenUp(p, rawValue, isTold); });
    On(&link_, &DriveLink::StopOnlyGivenUp, this,
       [this](const std::vector<int> &params) { OnStopOnlyGivenUp(params); });
    On(&link_, &DriveLink::FatalError, this, [this](const QString &sentence) {
        Later([this, sentence] {
            asker_.MsgBox(sentence, MsgButtons::Ok, MsgIcon::Critical, AppTitle());
            Q_EMIT FatalError();
        });
    });
}

OperationResult DriveOperations::GoOnLine()
{
    if (waitingForDrive_ || leaving_)
        return {Outcome::Refused};
    {
        // A server in the network takes its time to be reached.
        const QScopedValueRollback waiting(waitingForDrive_, true);
        isGivenUp_ = false;
        link_.MSComm1.Prepare();
        PumpWhile([this] { return link_.MSComm1.IsPreparing(); });
    }
    if (isGivenUp_)
        return {Outcome::Cancelled};
    if (const QString failure = link_.Open(); !failure.isEmpty()) {
        asker_.MsgBox(failure, MsgButtons::Ok, MsgIcon::None, AppTitle());
        return {Outcome::Refused};
    }
    {
        const QScopedValueRollback waiting(waitingForDrive_, true);
        PumpWhile([this] { return link_.IsAskingForSize(); });
    }
    if (!link_.PortOpen())
        return {Outcome::LinkLost};
    if (link_.TakeSize())
        return {};
    const int last = link_.PropMax;
    link_.Close();
    Announce(QStringLiteral("The drive says that the number of its last parameter is %1, which no drive "
                            "has. Switching OffLine. Check that a Sarvex drive is connected to this port.")
                 .arg(last),
             AppTitle());
    return {Outcome::Refused};
}

void DriveOperations::GiveUpReaching()
{
    isGivenUp_ = true;
    link_.MSComm1.CancelPreparing();
}

void DriveOperations::GoOffLine(OffLineReason reason)
{
    if (!link_.PortOpen())
        return;
    const QScopedValueRollback leaving(leaving_, true);
    if (reason != OffLineReason::BrokenOff)
        Q_EMIT Leaving();
    BeforeLeaving(reason);
    // A Stop that was pressed a moment ago leaves before the line does.
    if (reason != OffLineReason::BrokenOff)
        PumpWhile([this] { return link_.PortOpen() && !link_.OffLineRequested && link_.HasFirstWrite(); },
                  QDeadlineTimer(link_.Timings().lastCommand));
    if (link_.PortOpen())
        link_.Close();
}

OperationResult DriveOperations::ToggleComStatus()
{
    // A second click that arrives while the first is still being served: nothing it could mean is left to do.
    if (link_.MSComm1.IsPreparing()) {
        GiveUpReaching();
        return {Outcome::Cancelled};
    }
    if (leaving_ || (waitingForDrive_ && !link_.PortOpen()))
        return {Outcome::Refused};
    if (link_.PortOpen()) {
        GoOffLine(OffLineReason::User);
        return {};
    }
    switch (asker_.Ask(OnLineQuestion(guards_))) {
    case MsgAnswer::Yes:
        if (!table_.DriveIsStopped()) {
            rules_.ShowStopModeMessage();
            return {Outcome::Refused};
        }
        if (OperationResult queued = QueueOpenSet(); !queued.IsDone())
            return queued;
        return SendAll();
    case MsgAnswer::No:
        return ReadOverOpenSet();
    case MsgAnswer::Other:
        return GoOnLineToCompare();
    default:
        return {Outcome::Cancelled};
    }
}

OperationResult DriveOperations::ReadOverOpenSet()
{
    if (!saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    OperationResult result = ReadAnew();
    if (result.IsDone())
        document_.BecomeUnnamed(false);
    return result;
}

OperationResult DriveOperations::GoOnLineToCompare()
{
    OperationResult online = GoOnLineAside();
    if (online.IsDone())
        Q_EMIT CompareWanted();
    return online;
}

OperationResult DriveOperations::ChooseCommMode()
{
    return asker_.ChooseOnLine() ? ReadAnew() : OperationResult{Outcome::Cancelled};
}

OperationResult DriveOperations::ReadAnew()
{
    // Before the link opens: what was to be sent would be in the way of the reading.
    table_.DropAllWrites();
    OperationResult online = GoOnLine();
    return online.IsDone() ? ReadAll() : online;
}

OperationResult DriveOperations::ReadAll()
{
    Intent intent(table_, Origin::DriveCommand, QStringLiteral("Read the drive"));
    OperationResult result = RunScan(WholeScan::Reading);
    intent.Note(
        QStringLiteral("Read the drive%1").arg(result.IsDone() ? QString() : QStringLiteral(", not whole")));
    return result;
}

OperationResult DriveOperations::SendAll()
{
    const Intent intent(table_, Origin::File, QStringLiteral("Write the open set to the drive"));
    link_.StopOnlyRefusals = guards_.Asking ? MostStopOnlyRefusals : 0;
    return RunScan(WholeScan::Writing);
}

OperationResult DriveOperations::RunScan(WholeScan kind)
{
    const bool isReading = kind == WholeScan::Reading;
    // A drive that claims to have no parameters at all leaves nothing to show.
    Progress progress(isReading ? QStringLiteral("Reading Parameters from Drive")
                                : QStringLiteral("Writing Parameters to Drive"),
                      int(kind), std::max(table_.LastParam + 1, 1));
    ScanResult scan;
    connect(&link_, &DriveLink::ScanProgress, &progress, &Progress::Advance);
    connect(&link_, &DriveLink::ScanFinished, &progress, [&](const ScanResult &result) {
        scan = result;
        progress.End();
    });
    connect(&progress, &Progress::CancelWanted, &link_, &DriveLink::CancelScan);
    link_.StartScan(kind);
    asker_.ShowProgress(progress);

    const bool isComplete = scan.end == ScanResult::End::Complete;
    if (isReading) {
        if (isComplete)
            Guarded([this] { table_.RefreshAllDependents(); });
        SettleReading(scan);
    } else {
        table_.NoteIntent(WriteSentence(scan));
        Q_EMIT WholeWriteEnded(WriteSentence(scan));
    }
    OperationResult result{.missing = {scan.missing.begin(), scan.missing.end()}};
    if (!isComplete)
        result.outcome = scan.end == ScanResult::End::LinkLost ? Outcome::LinkLost : Outcome::Cancelled;
    else if (!result.missing.empty() || scan.isInDoubt)
        result.outcome = Outcome::Partial;
    return result;
}

void DriveOperations::SaveDriveParameters()
{
    const Intent intent(table_, Origin::DriveCommand);
    table_.SetParamValue(Param::SaveParameters, 1, true, false);
    document_.DriveModified = false;
}

OperationResult DriveOperations::LoadDriveParameters()
{
    if (!guards_.MayLoadFromMemory())
        return {Outcome::Cancelled};
    // The link may have broken while the user was asked.
    if (!table_.PortOpen())
        return {Outcome::LinkLost};
    const Intent intent(table_, Origin::DriveCommand);
    wasModified_ = document_.DriveModified;
    table_.SetParamValue(Param::LoadParameters, 1, true, false);
    document_.DriveModified = false;
    return {};
}

OperationResult DriveOperations::RestartDrive(Restart command)
{
    if (!guards_.MayRestart(command))
        return {Outcome::Cancelled};
    if (!table_.PortOpen())
        return {Outcome::LinkLost};
    Intent intent(table_, Origin::DriveCommand);
    intent.Note(command == Restart::ReInitialize ? QStringLiteral("Re-initialized the drive")
                                                 : QStringLiteral("Reset the drive"));
    link_.SetDriveCommand(command);
    return {};
}

void DriveOperations::BeforeLeaving(OffLineReason reason)
{
    const QScopedValueRollback leaving(leaving_, true);
    // A save that was never answered is none.
    for (const int command : {Param::SaveParameters, Param::LoadParameters})
        if (table_[command].WriteFlag == WriteState::Queued)
            MemoryCommandFailed(command);
    PromptSaveToDrive(reason);
}

void DriveOperations::PromptSaveToDrive(OffLineReason reason)
{
    if (!document_.DriveModified)
        return;
    if (reason == OffLineReason::BrokenOff) {
        asker_.Tell(
            QStringLiteral("Drive parameters have not been saved!\r\n\r\nChanges not saved will be lost "
                           "on next power loss or processor reset."),
            MsgIcon::Exclamation, AppTitle());
        return;
    }
    if (asker_.MsgBox(
            QStringLiteral("Save Changes in Drive?\r\n\r\nParameter changes not saved will be lost on next "
                           "power loss or processor reset."),
            MsgButtons::YesNo, MsgIcon::Question, AppTitle()) != MsgAnswer::Yes)
        return;
    SaveInMemory();
}

OperationResult DriveOperations::SaveInMemory()
{
    if (SaveInDrive()) {
        document_.DriveModified = false;
        return {};
    }
    table_.DropCommand(Param::SaveParameters);
    ShowNotSavedMessage();
    return {table_.PortOpen() ? Outcome::Refused : Outcome::LinkLost};
}

bool DriveOperations::SaveInDrive()
{
    bool isRefused = false;
    QObject whileWaiting;
    connect(&link_, &DriveLink::WriteGivenUp, &whileWaiting,
            [&isRefused](int p) { isRefused = isRefused || p == Param::SaveParameters; });
    const auto mayStillSave = [&] { return table_.PortOpen() && !isRefused; };
    const auto isAsked = [this] { return table_.Value(Param::SaveParameters) == 1; };
    if (!mayStillSave())
        return false;
    const Intent intent(table_, Origin::DriveCommand);
    table_.SetParamValue(Param::SaveParameters, 1, true, false);
    // While it is polled the table holds what the drive says, which is 1 until it has saved.
    table_.AddReadInterest(Param::SaveParameters);
    PumpWhile([&] { return isAsked() && mayStillSave(); }, QDeadlineTimer(SaveLimitMs));
    table_.RemoveReadInterest(Param::SaveParameters);
    return !isAsked() && mayStillSave();
}

void DriveOperations::MemoryCommandFailed(int command)
{
    table_.DropCommand(command);
    if (command == Param::SaveParameters)
        document_.DriveModified = true;
    else if (command == Param::LoadParameters)
        document_.DriveModified = wasModified_;
}

} // namespace quorvik
