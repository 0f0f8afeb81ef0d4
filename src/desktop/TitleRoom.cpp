#include "desktop/TitleRoom.h"

#include <QFontMetrics>
#include <QWidget>

namespace quorvik
{

int RoomForTitle(const QWidget &window, const QString &title)
{
    // What the desktop really takes is not known before the window is shown: bold letters, an icon and three
    // buttons.
    QFont bold = window.font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    return metrics.horizontalAdvance(title) + 8 * metrics.height();
}

} // namespace quorvik
