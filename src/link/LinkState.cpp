#include "link/DriveLink.h"
#include "model/EntryRules.h"
#include "model/Model.h"
#include "platform/Asker.h"
#include "platform/Waiting.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int ReadingAll = 1;
constexpr int WritingAll = 2;

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
    OnComStatusChange();

    PropMax = 0;
    // The highest value of the first selector is the drive's last parameter.
    ReadPropsIndex = Param::FirstSelector;
    SerialCommTimer.start();
    {
        const QScopedValueRollback waiting(waitingForDrive_, true);
        PumpWhile([this] { return PortOpen() && PropMax == 0; });
    }
    if (PortOpen() && PropMax != 0)
        model_.LastParam = std::int16_t(std::min<std::int32_t>(PropMax, model_.FileLastParam));
    else
        ReadPropsIndex = 0;
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
    }
    Q_EMIT ComStatusChanged();
}

void DriveLink::GoOffLine(int reason)
{
    const QScopedValueRollback leaving(leaving_, true);
    rules_.PromptSaveToDrive(reason);
    MSComm1.SetPortOpen(false);
    OnComStatusChange();
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
        ScanKind = WritingAll;
        ShowProgressBar();
        return;
    case MsgAnswer::No:
        if (!PromptSaveChanges())
            return;
        model_.SetAllWriteFlags(WriteState::None);
        GoOnLine();
        if (!PortOpen())
            return;
        SetAllReadFlags(1);
        ScanKind = ReadingAll;
        ShowProgressBar();
        model_.FileModified = false;
        model_.FileName = QStringLiteral("unnamed");
        model_.UpdateTitle();
        return;
    default:
        return;
    }
}

void DriveLink::SaveDriveParameters()
{
    model_.SetParamValue(Param::SaveParameters, 1, true, false);
    model_.DriveModified = false;
}

void DriveLink::LoadDriveParameters()
{
    model_.SetParamValue(Param::LoadParameters, 1, true, false);
    model_.DriveModified = false;
}

} // namespace quorvik
