#include "tour/Journey.h"

#include "desktop/Form.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QTest>

namespace quorvik
{

namespace
{

constexpr int accelBox = 2; ///< Fwd Accel A in its window

QAbstractButton *Box(Tour &tour)
{
    QWidget *window = tour.User().WindowTitled(QStringLiteral("Accel/Decel"));
    return window ? window->findChild<QAbstractButton *>(ControlName("Text1", accelBox)) : nullptr;
}

} // namespace

void AddUndoJob(Tour &tour)
{
    const auto before = std::make_shared<QString>();
    tour.Do(QStringLiteral("Blocks, Accel/Decel"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAccelDecel")); });
    tour.Add(
        QStringLiteral("A click on Fwd Accel A"), [&tour] { return Box(tour) != nullptr; },
        [&tour, before] {
            *before = Box(tour)->text();
            return tour.User().Click(Box(tour));
        });
    tour.Add(
        QStringLiteral("12.5 is typed, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormModifyParameterValue")) && Hands::CanType(); },
        [&tour] {
            const QString failure = Hands::TypeOver(QStringLiteral("12.5"));
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour.Add(
        QStringLiteral("The Tools menu says what Undo would take back"),
        [&tour] {
            return !QApplication::activeModalWidget() && Box(tour)->text().startsWith(QLatin1String("12.5"));
        },
        [&tour] {
            QString failure = tour.User().OpenMenu(QStringLiteral("mnuTools"));
            tour.TakePicture(QStringLiteral("49-undo"));
            tour.User().CloseMenus();
            const QString caption =
                tour.TheProgram().Main().Menus().Entry(QStringLiteral("mnuToolsUndo"))->text();
            if (failure.isEmpty() && !caption.startsWith(QLatin1String("&Undo (226) Fwd Accel A")))
                failure = QStringLiteral("the entry says ") + caption;
            return failure.isEmpty() ? tour.User().ChooseMenu(QStringLiteral("mnuToolsUndo")) : failure;
        });
    tour.Add(
        QStringLiteral("The drive holds the old value again"),
        [&tour, before] { return Box(tour)->text() == *before; },
        [&tour] {
            tour.TakePicture(QStringLiteral("49-undone"));
            tour.User().WindowTitled(QStringLiteral("Accel/Decel"))->close();
            return QString();
        });
}

} // namespace quorvik
