#pragma once

#include "blocks/BlockDescriptor.h"

#include <QStringList>
#include <span>

namespace quorvik
{

/** A line of the Blocks menu; a submenu stands before what it holds. */
struct BlockMenuLine {
    const char *control;              ///< mnuBlockAnalogInput
    const char *caption = "";         ///< empty for a family, see BlockMenuEntry::MenuCaption()
    const char *parent = "";          ///< control of the submenu that holds it, "" for the Blocks menu itself
    const char *allControl = nullptr; ///< the entry that opens the whole family; stands before its members
    const char *allCaption = "&All";
    bool activate = true; ///< the window gets the focus when it opens
    bool afterSeparator = false;
};

/** The line with the block that it opens; a submenu has none, and nothing to make. */
struct BlockMenuEntry : BlockMenuLine, BlockDescriptor {
    /** "Analog Input &1": the menu's caption of one member of a family. */
    QString MenuCaption(int member) const;
};

/** All entries of the Blocks menu, in its order. */
std::span<const BlockMenuEntry> BlockCatalogue();

/** By parameter number below count, the caption of the first block in the menu's order that shows it; empty
 * where none does. */
QStringList BlockNames(int count);

/** The captions of all blocks that have a row for a parameter, in the menu's order. */
QStringList BlocksShowing(int p);

/**
 * Shows the block's window: the open one where there is one, a new one else.
 * @param member 0 for a block without members.
 */
QWidget *OpenBlock(Desk &desk, const BlockMenuEntry &entry, int member);

/** Shows the block window of that caption, open or not; null where no block has it. */
BlockForm *OpenBlockCalled(Desk &desk, const QString &window);

/**
 * Shows a window in which the parameter stands, scrolls to its box and pulses it: an open one before all
 * others, else the first one in the menu's order. @return false where no block shows it.
 */
bool RevealParameter(Desk &desk, int p);

/** The same in a certain window, or in any other where that one has no box for the parameter. */
bool JumpTo(Desk &desk, const QString &window, int p);

} // namespace quorvik
