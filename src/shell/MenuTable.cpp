#include "shell/MenuTable.h"

namespace quorvik
{

namespace
{

using enum MenuKind;

constexpr MenuEntry table[] = {
    {"", "mnuFile", -1, "&File", Menu},
    {"mnuFile", "mnuFileNew", -1, "&New", Command, "Ctrl+N", "new"},
    {"mnuFile", "mnuFileOpen", -1, "&Open...", Command, "Ctrl+O", "open"},
    {"mnuFile", "mnuFileSave", 0, "&Save", Command, "Ctrl+S", "save"},
    {"mnuFile", "mnuFileSave", 1, "Save &As...", Command, "Ctrl+Shift+S"},
    {"mnuFile", "mnuFileSeparator", -1, "", Separator},
    {"mnuFile", "mnuFileRead", -1, "&Read Settings from Drive", Command, "", "read"},
    {"mnuFile", "mnuFileWrite", -1, "&Write Settings to Drive", Command, "", "write"},
    {"mnuFile", "mnuSettingsSeparator", -1, "", Separator},
    {"mnuFile", "mnuFileNotes", -1, "No&tes", Command, "", "notes"},
    {"mnuFile", "mnuPrintSeparator", -1, "", Separator},
    {"mnuFile", "mnuFilePrint", -1, "&Print...", Command, "Ctrl+P", "print"},
    {"mnuFile", "mnuExitSeparator", -1, "", Separator},
    {"mnuFile", "mnuFileExit", -1, "E&xit"},

    {"", "mnuOptions", -1, "&Options", Menu},
    {"mnuOptions", "mnuOptionsCommunications", -1, "&Communications", Command, "", "port"},
    {"mnuOptions", "mnuOptionsColorSettings", -1, "Color &Settings", Command, "", "colors"},
    {"mnuOptions", "mnuOptionsShowTipsonStartup", -1, "Show Tips on Startup", Check},

    {"", "mnuBlock", -1, "&Blocks", Menu},

    {"", "mnuTools", -1, "&Tools", Menu},
    {"mnuTools", "mnuToolsOnline", -1, "&Online", Check},
    {"mnuTools", "mnuToolsSelectModel", -1, "&Select Drive Model..."},
    {"mnuTools", "mnuListParameters", 0, "List &All Parameters", Command, "", "list"},
    {"mnuTools", "mnuListParameters", 1, "List Parameters &Changed from Defaults..."},
    {"mnuTools", "mnuToolsSeparator", -1, "", Separator},
    {"mnuTools", "mnuToolsReInitDrive", 1, "Re-&Initialize Drive"},
    {"mnuTools", "mnuToolsReInitDrive", 2, "&Reset Drive"},
    {"mnuTools", "mnuToolsLoadDrive", -1, "&Load Drive Parameters from EE"},
    {"mnuTools", "mnuToolsSaveDrive", -1, "S&ave Drive Parameters to EE"},
    {"mnuTools", "mnuToolsSeparator2", -1, "", Separator},
    {"mnuTools", "mnuToolsIOSimulator", -1, "I/O Simulator", Command, "", "terminals"},
    {"mnuTools", "mnuToolsVirtualOperator", -1, "Virtual Operator", Command, "", "operator"},

    {"", "mnuMentors", -1, "&MENTORs", Menu},
    {"mnuMentors", "mnuMentorsBasic", -1, "&Basic Setup...", Command, "", "mentor"},
    {"mnuMentors", "mnuMentorIO", -1, "&Inputs/Outputs..."},

    {"", "mnuDebug", -1, "Debug", Menu},
    {"mnuDebug", "mnuDebugDebug", -1, "&Debug"},
    {"mnuDebug", "mnuDebugShowall", -1, "&Show All"},
    {"", "mnuCheckout", -1, "&Checkout", Menu},
    {"mnuCheckout", "mnuCheckoutCheckout", -1, "&Checkout"},

    {"", "mnuWindow", -1, "&Window", Menu},
    {"mnuWindow", "mnuWindowCascade", -1, "&Cascade", Command, "", "cascade"},
    {"mnuWindow", "mnuWindowTileHorizontal", -1, "Tile &Horizontal", Command, "", "tile-horizontal"},
    {"mnuWindow", "mnuWindowTileVertical", -1, "Tile &Vertical", Command, "", "tile-vertical"},
    {"mnuWindow", "mnuWindowArrangeIcons", -1, "&Arrange Icons"},
    {"mnuWindow", "mnuWindowSeparator", -1, "", Separator},
    {"mnuWindow", "mnuWindowMinimizeAll", -1, "&Minimize All"},
    {"mnuWindow", "mnuWindowRestoreAll", -1, "&Restore All"},
    {"mnuWindow", "mnuWindowCloseAll", -1, "C&lose All"},

    {"", "mnuHelp", -1, "&Help", Menu},
    {"mnuHelp", "mnuHelpContents", -1, "&Contents", Command, "", "help"},
    {"mnuHelp", "mnuHelpSearch", -1, "&Search for Help On..."},
    {"mnuHelp", "mnuHalvaneWeb", -1, "&Halvane on the Web"},
    {"mnuHelp", "mnuHelpSarvexManual", -1, "&Sarvex Manual"},
    {"mnuHelp", "mnuHelpAbout", -1, "&About..."},
};

} // namespace

std::span<const MenuEntry> MenuTable()
{
    return table;
}

} // namespace quorvik
