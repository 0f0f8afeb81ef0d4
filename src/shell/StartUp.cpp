#include "desktop/HTMLHelp.h"
#include "model/PathFunctions.h"
#include "operations/Recovery.h"
#include "platform/Asker.h"
#include "platform/CommandLine.h"
#include "platform/Guard.h"
#include "platform/LoginName.h"
#include "platform/SettingsStore.h"
#include "platform/cRegistry.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/StatusBarMain.h"
#include "shell/UserSettings.h"
#include "shell/WindowCommands.h"
#include "shell/WindowLayout.h"
#include "trend/forms/TrendSettings.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QStandardPaths>
#include <utility>

namespace quorvik
{

bool MDIFormMain::Load(const QString &commandLine)
{
    for (const char *hidden : {"mnuDebug", "mnuCheckout"})
        menus_.Hide(QString::fromLatin1(hidden));

    Asker &asker = surroundings_.asker;
    if (!instance_.Acquire()) {
        asker.MsgBox(QStringLiteral("Quorvik is already running!"), MsgButtons::Ok, MsgIcon::Exclamation,
                     AppTitle());
        return false;
    }
    const SettingsStore &settings = surroundings_.settings;
    engines_.journal.Begin(ReadKeepLoginName(settings) ? LoginName() : QString());
    if (const QString sentence = engines_.InitGlobals(surroundings_.programFolder); !sentence.isEmpty()) {
        asker.MsgBox(sentence, MsgButtons::Ok, MsgIcon::None, {});
        return false;
    }
    isLoaded_ = true;
    engines_.emulator.TimerEmulateSvx.start();

    ReadWindowPlace(settings, *this);
    ReadColors(settings, colors_);
    menus_.Entry(QStringLiteral("mnuOptionsShowTipsonStartup"))->setChecked(ReadShowTips(settings));
    menus_.Entry(QStringLiteral("mnuOptionsAskBeforeRisky"))->setChecked(ReadAskBeforeRisky(settings));
    menus_.Entry(QStringLiteral("mnuOptionsReconnect"))->setChecked(ReadReconnect(settings));
    menus_.Entry(QStringLiteral("mnuOptionsKeepLayout"))->setChecked(ReadKeepLayout(settings));
    menus_.Entry(QStringLiteral("mnuOptionsKeepLoginName"))->setChecked(ReadKeepLoginName(settings));
    engines_.backups.Newest = ReadBackups(settings);
    LoadTripTrend(settings, engines_.tripTrend);
    // On the screen before the first dialog, which needs something to stand on.
    show();
    QCoreApplication::processEvents();

    if (const int port = ReadCommPort(settings)) {
        engines_.link.MSComm1.SetCommPort(port);
        FollowPort();
    } else {
        ShowCommunications(*this);
    }

    cRegistry(surroundings_.dataHome,
              QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation).mid(1))
        .CreateEXEAssociation(surroundings_.programPath, AppTitle(), QStringLiteral("Svx Parameter Files"),
                              QStringLiteral("Svx"));

    const QString path = SettingsPathOf(commandLine);
    // What a crash left goes before what was asked for, which can be opened again at any time.
    if (OfferLeftover(engines_.recoveryCopy, engines_.table, asker)) {
        statusBar_->SetComStatus(false);
        if (!path.isEmpty() && path != engines_.document.FileName)
            strip_.Show({QStringLiteral("leftover"), Urgency::Warning,
                         QStringLiteral("\"%1\" was not opened: the recovered changes stand in its place. "
                                        "Save them, then open it with File, Open.")
                             .arg(FileTitle(path))});
    } else if (path.isEmpty()) {
        if (engines_.drive.ChooseCommMode().outcome == Outcome::Cancelled && !engines_.link.PortOpen())
            statusBar_->SetComStatus(false);
    } else if (const QString sentence = engines_.file.LoadSettings(path); !sentence.isEmpty()) {
        asker.MsgBox(sentence, MsgButtons::Ok, MsgIcon::None, {});
    }

    // The user may have closed the window while the link was waiting for the drive.
    if (!isUnloaded_ && ReadKeepLayout(settings))
        Guarded([this] { RestoreLayout(*this); });
    if (!isUnloaded_ && ReadShowTips(settings))
        ShowGettingStarted(*this);
    return true;
}

bool MDIFormMain::Unload(bool asks)
{
    const bool keepsLayout = menus_.Entry(QStringLiteral("mnuOptionsKeepLayout"))->isChecked();
    Guarded([&] {
        StoreKeepLayout(surroundings_.settings, keepsLayout);
        if (keepsLayout)
            StoreLayout(*this);
    });
    if (!asks) {
        engines_.recoveryCopy.WriteNow();
        // While the line is there: a jog ends with the panel that gave it.
        windows_->CloseAll();
        // Nobody is there to say whether the drive is to keep what it was given.
        engines_.document.DriveModified = false;
    }
    engines_.drive.GiveUpReaching();
    if (engines_.link.PortOpen())
        Guarded([&] { engines_.drive.GoOffLine(OffLineReason::User); });
    // Before the number of the port is stored, which is the user's own again then.
    simulation_.End();

    // Each step stands for itself: what fails in one does not stop the rest.
    SettingsStore &settings = surroundings_.settings;
    Guarded([&] { StoreCommPort(settings, engines_.link.MSComm1.CommPort()); });
    Guarded([&] {
        StoreShowTips(settings, menus_.Entry(QStringLiteral("mnuOptionsShowTipsonStartup"))->isChecked());
    });
    Guarded([&] { StoreAskBeforeRisky(settings, engines_.guards.Asking); });
    Guarded([&] { StoreReconnect(settings, engines_.reconnection.BySelf); });
    Guarded([&] {
        StoreKeepLoginName(settings, menus_.Entry(QStringLiteral("mnuOptionsKeepLoginName"))->isChecked());
    });
    Guarded([&] { StoreTripTrend(settings, engines_.tripTrend); });
    Guarded([&] { StoreWindowPlace(settings, *this); });
    Guarded([&] { StoreColors(settings, colors_); });

    if (!asks) {
        surroundings_.help.Close();
        return true;
    }
    bool cancel = false;
    // A save that failed counts as a cancel, however it failed: nothing may be lost on the way out.
    if (!Guarded([&] { cancel = !engines_.saving.PromptSaveChanges(); }) || cancel)
        return false;
    windows_->CloseAll();
    engines_.recoveryCopy.Remove();
    surroundings_.help.Close();
    return true;
}

void MDIFormMain::EndUnasked()
{
    if (isLoaded_ && !std::exchange(isUnloaded_, true))
        Guarded([&] { Unload(false); });
    Q_EMIT Unloaded();
}

void MDIFormMain::closeEvent(QCloseEvent *event)
{
    bool isDone = !isLoaded_ || isUnloaded_;
    if (!isDone)
        Guarded([&] { isDone = Unload(true); });
    event->setAccepted(isDone);
    if (isDone && !std::exchange(isUnloaded_, true))
        Q_EMIT Unloaded();
}

} // namespace quorvik
