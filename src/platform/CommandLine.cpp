#include "platform/CommandLine.h"

namespace quorvik
{

QString SettingsPathOf(const QString &commandLine)
{
    QString path = commandLine.trimmed();
    if (path.startsWith(u'"')) {
        path.remove(0, 1);
        if (path.endsWith(u'"'))
            path.chop(1);
    }
    return path;
}

} // namespace quorvik
