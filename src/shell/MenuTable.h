#pragma once

#include <span>

namespace quorvik
{

enum class MenuKind { Menu, Command, Check, Separator };

/** One line of the menu tree, named as its control is. */
struct MenuEntry {
    const char *parent; ///< control name of the menu it stands in; empty for the menu bar
    const char *name;
    int index; ///< index in its control array, -1 for none
    const char *caption;
    MenuKind kind = MenuKind::Command;
    const char *shortcut = "";
    const char *icon = ""; ///< file name under :/icons
};

/** The menu tree, a menu before its entries, top to bottom as shown. The Blocks menu is empty here: it shows
 * the catalogue of blocks. */
std::span<const MenuEntry> MenuTable();

} // namespace quorvik
