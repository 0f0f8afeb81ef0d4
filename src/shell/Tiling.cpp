#include "shell/Tiling.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace quorvik
{

namespace
{

/** The position-th of count equal parts of a length, without gaps where the length does not divide. */
int PartStart(int length, int position, int count)
{
    return int(qint64(length) * position / count);
}

qint64 Common(const QRect &one, const QRect &other)
{
    const QRect both = one.intersected(other);
    return both.isEmpty() ? 0 : qint64(both.width()) * both.height();
}

/** Corners at which a window of that size touches others, stands a step from them or at the area's edges, row
 * by row. */
QList<QPoint> CornersFor(const QRect &area, QSize window, const WindowsInSight &open, int step)
{
    QList<int> lefts{area.left(), area.right() + 1 - window.width()};
    QList<int> tops{area.top(), area.bottom() + 1 - window.height()};
    for (const QRect &other : open.windows + QList<QRect>{open.focus}) {
        if (other.isEmpty())
            continue;
        lefts += {other.right() + 1, other.left() - window.width(), other.left() + step};
        tops += {other.bottom() + 1, other.top() - window.height(), other.top() + step};
    }
    QList<QPoint> corners;
    std::ranges::sort(lefts);
    std::ranges::sort(tops);
    for (const int top : tops)
        for (const int left : lefts)
            if (area.contains(QRect({left, top}, window)))
                corners.append({left, top});
    return corners;
}

/** How much a window at a place is in the way; the least is the best. */
std::tuple<qsizetype, qint64, qint64> Nuisance(const QRect &place, const WindowsInSight &open, int title)
{
    qsizetype titles = 0;
    qint64 covered = 0;
    for (const QRect &other : open.windows) {
        covered += Common(place, other);
        titles += place.intersects({other.topLeft(), QSize(other.width(), title)}) ? 1 : 0;
    }
    return {titles, open.windows.isEmpty() ? 0 : Common(place, open.windows.last()), covered};
}

} // namespace

std::optional<QPoint> PlaceWithRoom(const QRect &area, QSize window, const WindowsInSight &open, int title)
{
    using Found = std::pair<std::tuple<qsizetype, qint64, qint64>, QPoint>;
    std::optional<Found> best;
    for (const QPoint corner : CornersFor(area, window, open, title)) {
        const QRect place(corner, window);
        if (!open.windows.isEmpty()) {
            const QRect work = open.windows.last();
            if (place.intersects(open.focus) ||
                place.intersects({work.topLeft(), QSize(work.width(), title)}))
                continue;
        }
        const auto nuisance = Nuisance(place, open, title);
        if (!best || nuisance < best->first)
            best = {nuisance, corner};
    }
    return best ? std::optional(best->second) : std::nullopt;
}

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
