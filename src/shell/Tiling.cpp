#include "shell/Tiling.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

/** The position-th of count equal parts of a length, without gaps where the length does not divide. */
int PartStart(int length, int position, int count)
{
    return int(qint64(length) * position / count);
}

} // namespace

QList<QRect> TileRects(const QRect &area, int count, Qt::Orientation orientation)
{
    QList<QRect> rects;
    if (count < 1)
        return rects;
    const bool isHorizontal = orientation == Qt::Horizontal;
    const int across = isHorizontal ? area.width() : area.height();
    const int along = isHorizontal ? area.height() : area.width();
    const int groups = int(std::sqrt(double(count)));
    for (int group = 0; group < groups; ++group) {
        const int from = PartStart(across, group, groups);
        const int to = PartStart(across, group + 1, groups);
        const int members = PartStart(count, group + 1, groups) - PartStart(count, group, groups);
        for (int member = 0; member < members; ++member) {
            const int start = PartStart(along, member, members);
            const int length = PartStart(along, member + 1, members) - start;
            const QRect rect =
                isHorizontal ? QRect(from, start, to - from, length) : QRect(start, from, length, to - from);
            rects.append(rect.translated(area.topLeft()));
        }
    }
    return rects;
}

QPoint CascadePlace(const QRect &area, int position, QSize window, int step)
{
    // A window that fills the area still leaves the titles of a few others in sight.
    constexpr int fewest = 5;
    const QSize room = area.size() - window;
    const int places = std::max(fewest, std::min(room.width(), room.height()) / std::max(1, step) + 1);
    return area.topLeft() + QPoint(1, 1) * (position % places * step);
}

QList<QRect> IconRects(const QRect &area, int count, QSize icon)
{
    QList<QRect> rects;
    const int perRow = std::max(1, area.width() / std::max(1, icon.width()));
    for (int position = 0; position < count; ++position) {
        const int column = position % perRow;
        const int row = position / perRow + 1;
        rects.append(QRect(
            QPoint(area.left() + column * icon.width(), area.top() + area.height() - row * icon.height()),
            icon));
    }
    return rects;
}

} // namespace quorvik
