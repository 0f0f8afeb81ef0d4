#pragma once

#include "desktop/BoxColors.h"
#include "desktop/Desk.h"
#include "operations/DriveSimulation.h"
#include "operations/Engines.h"
#include "operator/FormVirtualOperator.h"
#include "platform/SingleInstance.h"
#include "platform/Strip.h"
#include "settings/forms/FilePrint.h"
#include "shell/CommissioningAccess.h"
#include "shell/CompareAccess.h"
#include "shell/FindAccess.h"
#include "shell/HistoryAccess.h"
#include "shell/MenuBar.h"
#include "shell/Surroundings.h"
#include "shell/TrendAccess.h"
#include "shell/WindowAsker.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>

class QMdiArea;

namespace quorvik
{

class Circuit;
class DriveCircuit;
class LessonCard;
class NoticeStrip;
class RecentFiles;
class StartPage;
class StatusBarMain;
class StatusLines;
class WindowCommands;

/**
 * The one main window and the life of the run: menus, status bar, child windows, and what ties the
 * engines to the windows. It owns the engines; nothing outside the shell knows it.
 */
class MDIFormMain : public QMainWindow
{
    Q_OBJECT

public:
    explicit MDIFormMain(const Surroundings &surroundings);
    ~MDIFormMain() override;

    /**
     * Runs the start-up, from the factory table to the tips, with the modal dialogs on its way.
     * @param commandLine the arguments as given, with or without double quotes.
     * @return False when the run is to end at once, because another instance runs or there is no factory
     * table; the user has been told.
     */
    bool Load(const QString &commandLine);

    /**
     * Ends the run as a close without questions would: off line, the user's settings stored, the windows
     * closed. Unsaved edits stay in the recovery copy, which the next start offers.
     */
    void EndUnasked();

    /** Blocks the caller for a time, with everything else running. */
    void Delay(int milliseconds);

    Engines &AllEngines() { return engines_; }
    Desk &TheDesk() { return desk_; }
    FilePrint &Print() { return print_; }
    CompareHost &Comparing() { return compareAccess_; }
    FindHost &Finding() { return findAccess_; }
    HistoryHost &History() { return historyAccess_; }
    CommissioningHost &Commissioning() { return commissioningAccess_; }
    TrendHost &Trends() { return trendAccess_; }
    VirtualOperatorFields &VirtualOperator() { return virtualOperator_; }
    MenuBar &Menus() { return menus_; }
    DriveSimulation &Simulation() { return simulation_; }
    WindowCommands &Windows() { return *windows_; }
    StatusBarMain &StatusPanels() { return *statusBar_; }

    /** The caption of the first block that shows a parameter; empty where none does. */
    QString BlockOf(int p);
    Circuit &TheCircuit(); ///< with the values of this moment

    /** Has the start page show the port that is chosen, and what the link does with it. */
    void FollowPort();

    /** The user's switch of the link, from the menu and the status panel; may be entered while it waits. */
    void ToggleComStatus();

Q_SIGNALS:
    /** The window is unloaded, and the run is to end. */
    void Unloaded();

protected:
    void closeEvent(QCloseEvent *event) override;
    /** F1 that no child window took opens the help at its contents. */
    void keyPressEvent(QKeyEvent *event) override;

private:
    void OnComStatusChange();
    void ConnectCommands();
    /** The keys that no menu entry has, for the main window or one outside of the frame. */
    void AddKeys(QWidget *window);
    void ConnectEngines();
    /** The page of an empty frame, the lessons that it begins and the simulated drive that it starts. */
    void MakeStartPage(RecentFiles &recent);
    void Simulate(std::int32_t modelCode, bool moves);
    void SetTitle(const QString &title);
    /** @return False when the user would rather go on, which cannot be where nothing is asked. */
    bool Unload(bool asks);

    Surroundings surroundings_;
    SingleInstance instance_;
    WindowAsker asker_;
    Engines engines_;
    DriveSimulation simulation_;
    AccessColors colors_;
    FormsCollection forms_;
    QMdiArea *area_;
    StartPage *startPage_ = nullptr;
    LessonCard *lessonCard_ = nullptr;
    WindowCommands *windows_;
    Strip strip_;
    NoticeStrip *notices_;
    std::unique_ptr<StatusLines> lines_;
    StatusBarMain *statusBar_;
    MenuBar menus_;
    Desk desk_;
    FilePrint print_{desk_};
    CompareAccess compareAccess_{engines_};
    CommissioningAccess commissioningAccess_{*this};
    FindAccess findAccess_{*this, surroundings_.programFolder + QStringLiteral("/quorvik.words")};
    HistoryAccess historyAccess_{*this};
    TrendAccess trendAccess_{engines_};
    VirtualOperatorFields virtualOperator_;
    QTimer TimerDelay;
    std::unique_ptr<DriveCircuit> circuit_; ///< made when it is asked for first
    QElapsedTimer circuitAge_;              ///< since its last look at the table
    QStringList blocks_;                    ///< by parameter; filled when it is asked for first
    bool isLoaded_ = false;
    bool isUnloaded_ = false;
};

} // namespace quorvik
