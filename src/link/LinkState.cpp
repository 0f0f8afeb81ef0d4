#include "link/DriveLink.h"
#include "model/EntryRules.h"
#include "model/Model.h"
#include "platform/Waiting.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int ReadingAll = 1;
constexpr int WritingAll = 2;
constexpr int MostNamed = 12;
/** The reason of GoOffLine() with which the line may be dead. */
constexpr int BrokenOff = 2;

} // namespace

void DriveLink::GoOnLine()
{
    if (waitingForDrive_ || leaving_)
        return;
    const QString failure = MSComm1.SetPortOpen(true);
    if (!failure.isEmpty()) {
        asker_.MsgBox(failure, MsgButtons::Ok, MsgIcon::None, AppTitle());
        return;
    }
    // What an earlier session left undone must not strike this one.
    OffLineRequested = false;
    DriveCommand = 0;
    NoResponseCount = PacketSizeErrorCount = BCCErrorCount = WriteRetryCount = 0;
    refusals_.clear();
    isJogUnsettled_ = true;
    // A button that was pressed before is no command for now.
    for (const int p : {Param::Run, Param::Stop, Param::Jog})
        if (p <= model_.LastParam)
            model_.ParamTable[p].WriteFirst = false;
    model_.DriveStateUnread = true;
    OnComStatusChange();

    PropMax = 0;
    // The highest value of the first selector is the drive's last parameter.
    ReadPropsIndex = Param::FirstSelector;
    SerialCommTimer.start();
    {
        const QScopedValueRollback waiting(waitingForDrive_, true);
        // An answer that tells 0 ends it too.
        PumpWhile([this] { return PortOpen() && PropMax == 0 && ReadPropsIndex != 0; });
    }
    ReadPropsIndex = 0;
    if (!PortOpen())
        return;
    if (PropMax < Param::FirstSelector) {
        CloseLink();
        Announce(
            QStringLiteral("The drive says that the number of its last parameter is %1, which no drive "
                           "has. Switching OffLine. Check that a Sarvex drive is connected to this port.")
                .arg(PropMax),
            MsgIcon::Exclamation, AppTitle());
        return;
    }
    model_.LastParam = std::int16_t(std::min<std::int32_t>(PropMax, model_.FileLastParam));
}

void DriveLink::CloseLink()
{
    MSComm1.SetPortOpen(false);
    OnComStatusChange();
}

void DriveLink::OnComStatusChange()
{
    if (PortOpen()) {
        SerialCommTimer.start();
    } else {
        SerialCommTimer.stop();
        SerialCommTimeout.stop();
        timerDelay_.stop();
        model_.LastParam = model_.FileLastParam;
        model_.DriveStateUnread = false;
        wholeRead_.End();
    }
    Q_EMIT ComStatusChanged();
}

void DriveLink::GoOffLine(int reason)
{
    if (!PortOpen())
        return;
    const QScopedValueRollback leaving(leaving_, true);
    // A save that was never answered is none.
    for (const int command : {Param::SaveParameters, Param::LoadParameters})
        if (model_.ParamTable[command].WriteFlag != WriteState::None)
            MemoryCommandFailed(command);
    rules_.PromptSaveToDrive(reason);
    // A Stop that was pressed a moment ago leaves before the line does.
    if (reason != BrokenOff)
        PumpWhile([this] { return PortOpen() && !OffLineRequested && FirstWrite(); },
                  QDeadlineTimer(timings_.lastCommand));
    if (PortOpen())
        CloseLink();
}

void DriveLink::ToggleComStatus()
{
    // A second click that arrives while the first is still being served: nothing it could mean is left to do.
    if (leaving_ || (waitingForDrive_ && !PortOpen()))
        return;
    if (PortOpen()) {
        GoOffLine(0);
        return;
    }
    switch (asker_.MsgBox(QStringLiteral("Write current parameter settings to drive?"),
                          MsgButtons::YesNoCancel, MsgIcon::Question, QStringLiteral("Write Parameters"))) {
    case MsgAnswer::Yes:
        if (!model_.DriveIsStopped()) {
            rules_.ShowStopModeMessage();
            return;
        }
        GoOnLine();
        if (!PortOpen())
            return;
        model_.SetAllWriteFlags(WriteState::Queued);
        RunWholeScan(WritingAll);
        return;
    case MsgAnswer::No:
        if (!PromptSaveChanges())
            return;
        // Before the link opens: what was to be sent would be in the way of the reading.
        model_.DropAllWrites();
        GoOnLine();
        if (!PortOpen())
            return;
        SetAllReadFlags(1);
        RunWholeScan(ReadingAll);
        if (!wholeRead_.IsOver() || model_.HalfRead)
            return;
        model_.FileName = QStringLiteral("unnamed");
        model_.MarkFile(false);
        return;
    default:
        return;
    }
}

void DriveLink::RunWholeScan(int kind)
{
    ScanKind = std::uint8_t(kind);
    wholeRead_ = {};
    ShowProgressBar();
    if (kind == ReadingAll)
        SettleWholeRead();
}

void DriveLink::BeginWholeScan()
{
    if (ScanKind == ReadingAll)
        wholeRead_.Begin();
    BeginScanAnew();
}

bool DriveLink::IsWholeScanOver() const
{
    return ScanKind == ReadingAll ? wholeRead_.IsOver() : CurrentParam > model_.LastParam;
}

void DriveLink::SettleWholeRead()
{
    wholeRead_.End();
    const std::set<int> unread = wholeRead_.UnreadRows();
    if (wholeRead_.IsOver() && unread.empty() && !wholeRead_.IsInDoubt()) {
        model_.HalfRead = false;
        return;
    }
    // Where nothing was read, the set is what it was.
    if (!wholeRead_.HasRead())
        return;
    model_.HalfRead = true;
    model_.FileName = QStringLiteral("unnamed");
    model_.MarkFile(true);
    // A user who pressed Cancel knows.
    if (!wholeRead_.IsOver() && PortOpen())
        return;

    QString sentence;
    if (!wholeRead_.IsOver()) {
        sentence = QStringLiteral("The reading did not come to its end. Part of the set is the drive's, the "
                                  "rest is what stood there before.");
    } else if (unread.empty()) {
        sentence = QStringLiteral("The drive's answers came out of step with the questions, so values may "
                                  "stand at the wrong parameters.");
    } else {
        sentence = QStringLiteral("These parameters could not be read, and have the values from before:");
        int named = 0;
        for (const int p : unread) {
            if (++named > MostNamed) {
                sentence += QStringLiteral("\r\nand %1 more").arg(int(unread.size()) - MostNamed);
                break;
            }
            sentence += QStringLiteral("\r\n") + model_.FullName(p);
        }
    }
    Announce(sentence + QStringLiteral("\r\n\r\nRead the drive again before you rely on this set."),
             MsgIcon::Exclamation, QStringLiteral("Half Read"));
}

void DriveLink::SaveDriveParameters()
{
    model_.SetParamValue(Param::SaveParameters, 1, true, false);
    model_.DriveModified = false;
}

void DriveLink::LoadDriveParameters()
{
    wasModified_ = model_.DriveModified;
    model_.SetParamValue(Param::LoadParameters, 1, true, false);
    model_.DriveModified = false;
}

void DriveLink::MemoryCommandFailed(int command)
{
    ParamRecord &record = model_.ParamTable[command];
    record.Value = 0;
    record.WriteFlag = WriteState::None;
    if (command == Param::SaveParameters)
        model_.DriveModified = true;
    else if (command == Param::LoadParameters)
        model_.DriveModified = wasModified_;
}

} // namespace quorvik
