#pragma once

#include <QString>
#include <span>

class QWidget;

namespace quorvik
{

class BlockForm;
struct Desk;

/** Makes a loaded block window. @param member the member of a family, 0 where the block has none. */
using BlockFactory = BlockForm *(*)(Desk &desk, int member);

/** A line of the Blocks menu, in menu order; a submenu stands before what it holds. */
struct BlockMenuEntry {
    const char *control;         ///< mnuBlockAnalogInput
    const char *caption = "";    ///< empty for a family, see MenuCaption()
    const char *parent = "";     ///< control of the submenu that holds it, "" for the Blocks menu itself
    const char *window = "";     ///< the window's caption; of a family without its member
    const char *form = "";       ///< the window's stated name; empty for a submenu
    BlockFactory make = nullptr; ///< null where there is no window to open
    int firstMember = -1; ///< members of a family, -1 for a block without; the indexes of the control array
    int lastMember = -1;
    const char *allControl = nullptr; ///< the entry that opens the whole family; stands before its members
    const char *allCaption = "&All";
    bool activate = true; ///< the window gets the focus when it opens
    bool afterSeparator = false;

    bool IsFamily() const { return firstMember >= 0; }
    /** "Analog Input &1": the menu's caption of one member of a family. */
    QString MenuCaption(int member) const;
    /** "Analog Input 1": the caption of the window of a member; any number for a block without members. */
    QString WindowCaption(int member) const;

private:
    QString MemberText(int member) const;
};

/** All entries of the Blocks menu. */
std::span<const BlockMenuEntry> BlockCatalogue();

/**
 * Shows the block's window: the open one where there is one, a new one else.
 * @param member 0 for a block without members.
 */
void OpenBlock(Desk &desk, const BlockMenuEntry &entry, int member);

} // namespace quorvik
