#include "shell/Icons.h"

#include <QIcon>

static void LoadIcons()
{
    Q_INIT_RESOURCE(shell);
}

namespace quorvik
{

QIcon IconOf(const QString &name)
{
    LoadIcons();
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(name));
}

} // namespace quorvik
