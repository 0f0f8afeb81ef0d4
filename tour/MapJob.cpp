#include "tour/Journey.h"

#include "map/FormMap.h"
#include "map/MapView.h"
#include "model/ParameterTable.h"
#include "shell/MDIFormMain.h"

#include <QTest>

namespace quorvik
{

namespace
{

FormMap *Map(Tour &tour)
{
    return tour.TheProgram().Main().findChild<FormMap *>();
}

/** Where a card is on the map, or of one of its rows. */
QPoint Place(FormMap &map, const QString &title, int row = -1)
{
    const int card = MapModel::FindCard(title);
    const MapLayout &layout = map.View().Layout();
    const QPointF inCard =
        (row < 0 ? layout.Header(card) : layout.Row(card, row)).center() - layout.Card(card).topLeft();
    return (map.View().CardOnScreen(card).topLeft() + inCard * map.View().Zoom()).toPoint();
}

bool IsTold(FormMap &map, const QString &title)
{
    return !map.Model().MarkWords(MapModel::FindCard(title)).isEmpty();
}

} // namespace

void AddMapJob(Tour &tour)
{
    const QString setpoints = QStringLiteral("Setpoints");
    tour.Do(QStringLiteral("Tools, Map of the Drive"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsMap")); });
    tour.Add(
        QStringLiteral("The map; the pointer on a reference lights its path"),
        [&tour] { return Map(tour) && !Map(tour)->Model().Wires().empty(); },
        [&tour, setpoints] {
            FormMap &map = *Map(tour);
            tour.User().WindowTitled(map.windowTitle())->showMaximized();
            QTest::mouseMove(&map.View(), Place(map, setpoints, 0));
            return QString();
        });
    tour.Add(
        QStringLiteral("It ends at the switch of a drive that does not run, and the card says so"),
        [&tour, setpoints] {
            FormMap &map = *Map(tour);
            QTest::mouseMove(&map.View(), Place(map, setpoints, 0));
            return map.View().Light().path.has_value() && IsTold(map, setpoints);
        },
        [&tour, setpoints] {
            tour.TakePicture(QStringLiteral("48-map"));
            tour.Say(QStringLiteral("   ") +
                     Map(tour)->Model().MarkWords(MapModel::FindCard(setpoints)).join(u' '));
            QTest::mouseClick(&Map(tour)->View(), Qt::LeftButton, {}, Place(*Map(tour), setpoints, 0));
            return QString();
        });
    tour.Add(
        QStringLiteral("A click opens the block at that value"),
        [&tour, setpoints] { return tour.User().WindowTitled(setpoints) != nullptr; },
        [&tour, setpoints] {
            tour.TakePicture(QStringLiteral("49-map-to-block"));
            tour.User().WindowTitled(setpoints)->close();
            QWidget *window = tour.User().WindowTitled(Map(tour)->windowTitle());
            // What comes next is not maximised.
            window->showNormal();
            window->close();
            return QString();
        });
}

} // namespace quorvik
