#include "shell/SystemInformation.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace quorvik
{

namespace
{

struct Viewer {
    const char *program;
    const char *argument; ///< empty for none
};

// What the desktops bring along, the fuller ones first.
constexpr Viewer Viewers[] = {
    {"kinfocenter", ""}, {"hardinfo2", ""},  {"hardinfo", ""},   {"gnome-control-center", "info-overview"},
    {"xfce4-about", ""}, {"mate-about", ""}, {"lxqt-about", ""},
};

} // namespace

bool StartSystemInformation()
{
    for (const Viewer &viewer : Viewers) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(viewer.program));
        if (path.isEmpty())
            continue;
        QStringList arguments;
        if (*viewer.argument != '\0')
            arguments.append(QLatin1String(viewer.argument));
        if (QProcess::startDetached(path, arguments))
            return true;
    }
    return false;
}

} // namespace quorvik
