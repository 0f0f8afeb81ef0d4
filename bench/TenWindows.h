#pragma once

#include "blocks/BlockCatalogue.h"
#include "shell/MDIFormMain.h"

#include <QAction>

namespace quorvik
{

inline constexpr int OpenWindows = 10;

/** Opens the first ten blocks of the menu. */
inline void OpenTenWindows(MDIFormMain &main)
{
    int open = 0;
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet || open == OpenWindows)
            continue;
        const QString control = QString::fromLatin1(entry.control);
        main.Menus()
            .Entry(entry.IsFamily() ? QStringLiteral("%1(%2)").arg(control).arg(entry.firstMember) : control)
            ->trigger();
        ++open;
    }
}

} // namespace quorvik
