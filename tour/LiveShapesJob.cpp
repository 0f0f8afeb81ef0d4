#include "tour/Journey.h"

#include "blocks/BlockForm.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int PlacesWanted = 4;    ///< of a working point, before the tour believes that it moves
constexpr int OneCycleMs = 100000; ///< of the simulated drive's run and rest

/** What the shape of an open block window shows; nothing special while the window is not there. */
ShapeLook LookIn(Tour &tour, const QString &window, Symbol symbol)
{
    const QWidget *frame = tour.User().WindowTitled(window);
    const auto *form = frame ? frame->findChild<const BlockForm *>() : nullptr;
    if (!form)
        return {};
    const auto at = std::ranges::find(form->drawing().Elements(), symbol, &Element::symbol);
    return at == form->drawing().Elements().end() ? ShapeLook() : at->look;
}

void AddCurve(Tour &tour)
{
    const QString window = QStringLiteral("Analog Input 1");
    tour.Do(QStringLiteral("Analog Input 1: what its curve makes of the terminal"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAnalogInput(1)")); });
    const auto places = std::make_shared<QList<QPointF>>();
    tour.Add(
        QStringLiteral("The working point moves along the curve"),
        [&tour, window, places] {
            const auto point = LookIn(tour, window, Symbol::Curve).point;
            if (point && !places->contains(*point))
                places->append(*point);
            return places->size() >= PlacesWanted;
        },
        [&tour, window] {
            tour.TakePicture(QStringLiteral("48-working-point"));
            tour.User().WindowTitled(window)->close();
            return QString();
        });
}

void AddLimiter(Tour &tour)
{
    const QString window = QStringLiteral("Velocity Loop");
    tour.Do(QStringLiteral("Velocity Loop, with a low speed limit"), [&tour] {
        tour.Drive().Send(QStringLiteral("set %1 1500").arg(int(Param::ForwardMaxSpeed)));
        return tour.User().ChooseMenu(QStringLiteral("mnuBlockVloop"));
    });
    tour.Add(
        QStringLiteral("The limiter shows that it cuts"),
        [&tour, window] { return LookIn(tour, window, Symbol::Limiter).isActive; },
        [&tour] {
            tour.TakePicture(QStringLiteral("49-limiter"));
            tour.Drive().Send(QStringLiteral("set %1 10000").arg(int(Param::ForwardMaxSpeed)));
            return QString();
        },
        OneCycleMs);
    tour.Add(
        QStringLiteral("And no longer"),
        [&tour, window] { return !LookIn(tour, window, Symbol::Limiter).isActive; },
        [&tour, window] {
            tour.User().WindowTitled(window)->close();
            return QString();
        });
}

} // namespace

void AddLiveShapesJob(Tour &tour)
{
    AddCurve(tour);
    AddLimiter(tour);
}

} // namespace quorvik
