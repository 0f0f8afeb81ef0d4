#include "shell/MenuTable.h"

#include "desktop/HTMLHelp.h"
#include "map/FormMap.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/WindowCommands.h"

#include <QDesktopServices>
#include <QUrl>

namespace quorvik
{

namespace
{

using enum MenuKind;
using enum MenuEnabled;
using Main = MDIFormMain;

FileCommands &Files(Main &main)
{
    return main.AllEngines().fileCommands;
}

SaveCommands &Saving(Main &main)
{
    return main.AllEngines().saving;
}

DriveOperations &Drive(Main &main)
{
    return main.AllEngines().drive;
}

HTMLHelp &Help(Main &main)
{
    return main.TheDesk().help;
}

void ListParameters(Main &main, int index)
{
    OpenViewParameters(main.TheDesk(), main.Print(),
                       index == 0 ? ReportFilter::All : ReportFilter::ChangedFromDefault);
}

void ShowManual(Main &main)
{
    Help(main).DisplayTopic(QStringLiteral("Sarvex Manual.htm"), &main);
}

void ShowMakersPage(Main &)
{
    QDesktopServices::openUrl(QUrl(QStringLiteral("https://www.halvane.example/")));
}

constexpr MenuRow table[] = {
    {Menu, "mnuFile", "&File"},
    {Command, "mnuFileNew", "&New", [](Main &main) { Files(main).New(); }, "Ctrl+N", "new", Offline},
    {Command, "mnuFileOpen", "&Open...", [](Main &main) { Files(main).Open(); }, "Ctrl+O", "open"},
    {Command, "mnuFileSave(0)", "&Save", [](Main &main) { Saving(main).Save(0); }, "Ctrl+S", "save"},
    {Command, "mnuFileSave(1)", "Save &As...", [](Main &main) { Saving(main).Save(1); }, "Ctrl+Shift+S"},
    {Separator, "mnuFileSeparator"},
    {Command, "mnuFileRead", "&Read Settings from Drive", [](Main &main) { Files(main).ReadFromDrive(); }, "",
     "read", Offline},
    {Command, "mnuFileWrite", "&Write Settings to Drive", [](Main &main) { Files(main).WriteToDrive(); }, "",
     "write", Offline},
    {Separator, "mnuSettingsSeparator"},
    {Command, "mnuFileNotes", "No&tes", ShowNotes, "", "notes"},
    {Separator, "mnuPrintSeparator"},
    {Command, "mnuFilePrint", "&Print...", [](Main &main) { main.Print().mnuFilePrint_Click(&main); },
     "Ctrl+P", "print"},
    {Separator, "mnuExitSeparator"},
    {Command, "mnuFileExit", "E&xit", [](Main &main) { main.close(); }},
    {Separator, "mnuVerifySeparator"},
    {Command, "mnuFileWriteVerify", "Write and &Verify...",
     [](Main &main) { main.AllEngines().safeWrites.WriteOpenSet(); }, "", "write"},
    {Submenu, "mnuFileRecent", "Recent &Files"},
    {Command, "mnuFileReport", "Commissionin&g Report...", ShowCommissioningReport, "", "print"},

    {Menu, "mnuOptions", "&Options"},
    {Command, "mnuOptionsCommunications", "&Communications", ShowCommunications, "", "port"},
    {Command, "mnuOptionsColorSettings", "Color &Settings", ShowColorSettings, "", "colors"},
    // The check marks themselves are the settings.
    {Check, "mnuOptionsShowTipsonStartup", "Show Tips on Startup"},
    {Check, "mnuOptionsAskBeforeRisky", "Ask Before &Risky Commands"},
    {Check, "mnuOptionsReconnect", "Reconnect by &Itself"},
    {Check, "mnuOptionsKeepLayout", "Keep &Window Layout"},
    {Check, "mnuOptionsKeepLoginName", "Keep Login &Name in History"},

    {Menu, "mnuBlock", "&Blocks"},

    {Menu, "mnuTools", "&Tools"},
    {Check, "mnuToolsOnline", "&Online", [](Main &main) { main.ToggleComStatus(); }},
    {Command, "mnuToolsSelectModel", "&Select Drive Model...", ShowSelectDriveModel, "", "", Offline},
    {Command, "mnuListParameters(0)", "List &All Parameters", [](Main &main) { ListParameters(main, 0); }, "",
     "list"},
    {Command, "mnuListParameters(1)", "List Parameters &Changed from Defaults...",
     [](Main &main) { ListParameters(main, 1); }},
    {Separator, "mnuToolsSeparator"},
    {Command, "mnuToolsReInitDrive(1)", "Re-&Initialize Drive",
     [](Main &main) { Drive(main).RestartDrive(Restart::ReInitialize); }, "", "", Online},
    {Command, "mnuToolsReInitDrive(2)", "&Reset Drive",
     [](Main &main) { Drive(main).RestartDrive(Restart::Reset); }, "", "", Online},
    {Command, "mnuToolsLoadDrive", "&Load Drive Parameters from EE",
     [](Main &main) { Drive(main).LoadDriveParameters(); }, "", "", Online},
    {Command, "mnuToolsSaveDrive", "S&ave Drive Parameters to EE",
     [](Main &main) { Drive(main).SaveDriveParameters(); }, "", "", Online},
    {Separator, "mnuToolsSeparator2"},
    {Command, "mnuToolsIOSimulator", "I/O Simulator", ShowIOSimulator, "", "terminals", Offline},
    {Command, "mnuToolsVirtualOperator", "Virtual Operator", ShowVirtualOperator, "", "operator"},
    {Separator, "mnuToolsSeparator3"},
    {Command, "mnuToolsCompare", "Com&pare...", [](Main &main) { ShowCompare(main, false); }, "", "compare"},
    {Command, "mnuToolsLinkDetails", "Lin&k Details...", ShowLinkDetails},
    {Command, "mnuToolsFind", "&Find...", ShowFind, "Ctrl+F"},
    {Command, "mnuToolsMap", "&Map of the Drive", [](Main &main) { OpenMap(main.TheDesk(), -1); }, "Ctrl+M"},
    {Command, "mnuToolsWhyNot", "Wh&y Does It Not Run?", ShowWhyNot},
    {Separator, "mnuToolsSeparator4"},
    {Command, "mnuToolsUndo", "&Undo", [](Main &main) { main.AllEngines().undo.Undo(); }, "Ctrl+Z"},
    {Command, "mnuToolsRedo", "Re&do", [](Main &main) { main.AllEngines().undo.Redo(); },
     "Ctrl+Shift+Z; Ctrl+Y"},
    {Command, "mnuToolsHistory", "&History...", ShowHistory, "Ctrl+H"},
    {Command, "mnuToolsTrend", "&Trend...", ShowTrend, "Ctrl+T", "trend"},

    {Menu, "mnuMentors", "&MENTORs"},
    {Command, "mnuMentorsBasic", "&Basic Setup...", ShowBasicMentor, "", "mentor"},
    {Command, "mnuMentorIO", "&Inputs/Outputs...", ShowIOMentor},

    // The two are hidden, and their entries do nothing.
    {Menu, "mnuDebug", "Debug"},
    {Command, "mnuDebugDebug", "&Debug"},
    {Command, "mnuDebugShowall", "&Show All"},
    {Menu, "mnuCheckout", "&Checkout"},
    {Command, "mnuCheckoutCheckout", "&Checkout"},

    {Menu, "mnuWindow", "&Window"},
    {Command, "mnuWindowCascade", "&Cascade", [](Main &main) { main.Windows().Cascade(); }, "", "cascade"},
    {Command, "mnuWindowTileHorizontal", "Tile &Horizontal",
     [](Main &main) { main.Windows().Tile(Qt::Horizontal); }, "", "tile-horizontal"},
    {Command, "mnuWindowTileVertical", "Tile &Vertical",
     [](Main &main) { main.Windows().Tile(Qt::Vertical); }, "", "tile-vertical"},
    {Command, "mnuWindowArrangeIcons", "&Arrange Icons", [](Main &main) { main.Windows().ArrangeIcons(); }},
    {Separator, "mnuWindowSeparator"},
    {Command, "mnuWindowMinimizeAll", "&Minimize All", [](Main &main) { main.Windows().MinimizeAll(); }},
    {Command, "mnuWindowRestoreAll", "&Restore All", [](Main &main) { main.Windows().RestoreAll(); }},
    {Command, "mnuWindowCloseAll", "C&lose All", [](Main &main) { main.Windows().CloseAll(); }},
    {Separator, "mnuWindowSeparator2"},
    {Command, "mnuWindowZoomIn", "Zoom &In", [](Main &main) { main.Windows().ZoomIn(); }, "Ctrl++; Ctrl+="},
    {Command, "mnuWindowZoomOut", "Zoom &Out", [](Main &main) { main.Windows().ZoomOut(); }, "Ctrl+-"},
    {Command, "mnuWindowFit", "&Fit Drawing", [](Main &main) { main.Windows().FitDrawing(); }, "Ctrl+0"},
    {Separator, "mnuWindowSeparator3"},
    {Command, "mnuWindowFrame", "&Take Out of the Frame",
     [](Main &main) { main.Windows().TakeOutOrPutBack(); }, "F11"},

    {Menu, "mnuHelp", "&Help"},
    {Command, "mnuHelpContents", "&Contents", [](Main &main) { Help(main).DisplayContents(&main); }, "",
     "help"},
    {Command, "mnuHelpSearch", "&Search for Help On...", [](Main &main) { Help(main).DisplaySearch(&main); }},
    {Command, "mnuHalvaneWeb", "&Halvane on the Web", ShowMakersPage},
    {Command, "mnuHelpSarvexManual", "&Sarvex Manual", ShowManual},
    {Command, "mnuHelpAbout", "&About...", ShowAbout},
};

} // namespace

std::span<const MenuRow> MenuTable()
{
    return table;
}

} // namespace quorvik
