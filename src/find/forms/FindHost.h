#pragma once

#include "find/FindIndex.h"

#include <QString>

namespace quorvik
{

/** What the window of the search needs beside the desk. The shell answers with the program's menus, a picture
 * of the window with nothing. */
class FindHost
{
public:
    virtual ~FindHost() = default;

    /** All that can be found now. */
    virtual FindIndex MakeIndex() = 0;

    /** A window's or another command's entry in the menus. */
    struct Command {
        QString whyNot = {}; ///< such as "can be chosen on line only"; empty where it can be chosen now
        QString shown = {};  ///< On or Off, or else its keys
    };
    virtual Command CommandOf(const QString &key) const = 0;
    /** Does what a click on the entry does. */
    virtual void Choose(const QString &key) = 0;
    /** Shows a parameter that no block shows. */
    virtual void ListParameter(int p) = 0;
};

} // namespace quorvik
