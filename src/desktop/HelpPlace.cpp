#include "desktop/HelpPlace.h"

#include "desktop/PlaceBeside.h"

#include <algorithm>

namespace quorvik
{

QRect PlaceHelp(const QRect &asked, const QSize &wanted, const QSize &least, const QRect &available, int gap)
{
    const QSize fits = wanted.boundedTo(available.size());
    const auto beside = [&](const QSize &size) {
        return QRect(PlaceBeside(asked, size, available, gap), size);
    };
    if (const QRect place = beside(fits); !place.intersects(asked))
        return place;

    const QSize sides[] = {
        {available.right() - asked.right() - gap, available.height()},
        {asked.left() - available.left() - gap, available.height()},
        {available.width(), available.bottom() - asked.bottom() - gap},
        {available.width(), asked.top() - available.top() - gap},
    };
    QSize best;
    for (const QSize &side : sides) {
        const QSize size = fits.boundedTo(side);
        if (size.width() >= least.width() && size.height() >= least.height() &&
            size.width() * size.height() > best.width() * best.height())
            best = size;
    }
    if (best.isValid())
        return beside(best);
    const QSize size = least.boundedTo(fits);
    const QPoint farthest = available.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
    const QRect corners[] = {{{farthest.x(), available.top()}, size},
                             {farthest, size},
                             {{available.left(), farthest.y()}, size},
                             {available.topLeft(), size}};
    return *std::ranges::min_element(corners, {}, [&](const QRect &corner) {
        const QSize hidden = corner.intersected(asked).size();
        return hidden.width() * hidden.height();
    });
}

} // namespace quorvik
