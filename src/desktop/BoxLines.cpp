#include "desktop/BoxLines.h"

#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>
#include <algorithm>

namespace quorvik
{

void KeepLinesWhole(QMessageBox &box)
{
    auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    if (label == nullptr)
        return;
    constexpr qsizetype longestLine = 80; // characters
    int widest = 0;
    bool hasParagraph = false;
    for (const QStringView line : QStringView(box.text()).split(u'\n')) {
        if (line.size() <= longestLine)
            widest = std::max(widest, label->fontMetrics().horizontalAdvance(line.trimmed().toString()));
        else
            hasParagraph = true;
    }
    // What a box may be wide at most, less its icon and margins; beyond that it breaks inside of words.
    const int screen = box.screen()->availableGeometry().width();
    const int icon = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    const int room = std::min(screen > 1024 ? screen - 480 : screen, 1000) - icon - 80;
    // A box that is narrower than this does not wrap at all; one that Qt makes this wide by itself holds the
    // lines.
    const int wrapsFrom = std::min(screen / 2, 500) - icon - 80;
    if (hasParagraph && widest <= wrapsFrom)
        return;
    if (widest < room)
        label->setMinimumWidth(widest + 1);
}

} // namespace quorvik
