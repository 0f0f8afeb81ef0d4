#pragma once

#include <span>

namespace quorvik
{

class MDIFormMain;

enum class MenuKind { Menu, Submenu, Command, Check, Separator };

enum class MenuEnabled { Always, Online, Offline };

/** One line of the menu tree. */
struct MenuRow {
    MenuKind kind;
    const char *name; ///< control name, with its index: "mnuFileSave(1)"
    const char *caption = "";
    void (*run)(MDIFormMain &main) = nullptr; ///< what a click does; null for nothing
    const char *shortcut = "";                ///< several after "; "
    const char *icon = "";                    ///< file name under :/icons
    MenuEnabled enabled = MenuEnabled::Always;
};

/** The menus of the bar, each before its entries, as shown. The Blocks menu is empty here: it shows the
 * catalogue of blocks. */
std::span<const MenuRow> MenuTable();

} // namespace quorvik
