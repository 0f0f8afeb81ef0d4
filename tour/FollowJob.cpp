#include "tour/Journey.h"

#include "blocks/BlockForm.h"
#include "blocks/SignalFollower.h"
#include "desktop/ValueBox.h"
#include "shell/MDIFormMain.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <algorithm>

namespace quorvik
{

namespace
{

const QString Setpoints = QStringLiteral("Setpoints");
const QString Ramp = QStringLiteral("Accel/Decel");

BlockForm *Window(Tour &tour, const QString &caption)
{
    const QWidget *window = tour.User().WindowTitled(caption);
    return window ? window->findChild<BlockForm *>() : nullptr;
}

ValueBox *BoxOf(const BlockForm &form, int p)
{
    const QList<SheetRow> &rows = form.Sheet().Rows();
    const auto row = std::ranges::find(rows, p, &SheetRow::param);
    return form.findChild<ValueBox *>(ControlName("Text1", int(row - rows.begin())));
}

QString TagIn(const BlockForm *form)
{
    const auto *tag = form ? form->findChild<WireTag *>() : nullptr;
    return tag && tag->isVisible() ? tag->text() : QString();
}

/** Moves the mouse onto the wire behind a box. */
QString PointBehind(Tour &tour, const QString &caption, int p)
{
    const BlockForm *form = Window(tour, caption);
    if (!form)
        return QStringLiteral("there is no window ") + caption;
    const ValueBox *box = BoxOf(*form, p);
    auto *sheet = form->findChild<DiagramView *>();
    QTest::mouseMove(sheet, box->geometry().center() + QPoint(box->width() / 2 + box->height() / 2, 0));
    return {};
}

QMenu *MenuOf(Tour &tour)
{
    const BlockForm *form = Window(tour, Setpoints);
    return form ? form->findChild<QMenu *>(QStringLiteral("BoxMenu")) : nullptr;
}

} // namespace

void AddFollowJob(Tour &tour)
{
    tour.Do(QStringLiteral("Blocks, Accel/Decel"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAccelDecel")); });
    tour.Add(
        QStringLiteral("Blocks, Setpoints"), [&tour] { return Window(tour, Ramp) != nullptr; },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockSetpointS")); });
    tour.Add(
        QStringLiteral("Window, Tile Vertical"), [&tour] { return Window(tour, Setpoints) != nullptr; },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuWindowTileVertical")); });
    tour.Add(
        QStringLiteral("The mouse goes to the wire behind Reference 0"),
        [&tour] { return !tour.User().IsBusy(); },
        [&tour] { return PointBehind(tour, Setpoints, Param::Reference0); });
    tour.Add(
        QStringLiteral("Its tag tells the value, its path is lit"),
        [&tour] { return TagIn(Window(tour, Setpoints)).startsWith(QLatin1String("(217) Reference 0")); },
        [&tour] {
            tour.TakePicture(QStringLiteral("48-followed-wire"));
            QTest::keyClick(BoxOf(*Window(tour, Setpoints), Param::RampInput), Qt::Key_W);
            return QString();
        });
    tour.Add(
        QStringLiteral("The path of Ramp Input, by the key"),
        [&tour] { return TagIn(Window(tour, Setpoints)).startsWith(QLatin1String("(224) Ramp Input")); },
        [&tour] {
            tour.TakePicture(QStringLiteral("49-followed-box"));
            QTest::keyClick(BoxOf(*Window(tour, Setpoints), Param::RampInput), Qt::Key_F10,
                            Qt::ShiftModifier);
            return QString();
        });
    tour.Add(
        QStringLiteral("The menu of the box: what it feeds"),
        [&tour] { return MenuOf(tour) && MenuOf(tour)->isVisible(); },
        [&tour] {
            for (QAction *entry : MenuOf(tour)->actions())
                if (entry->menu() && entry->menu()->objectName() == QLatin1String("BoxFeeds"))
                    MenuOf(tour)->setActiveAction(entry);
            QTest::keyClick(MenuOf(tour), Qt::Key_Right);
            return QString();
        });
    tour.Add(
        QStringLiteral("It leads to the ramp"),
        [&tour] {
            const auto *feeds = MenuOf(tour)->findChild<QMenu *>(QStringLiteral("BoxFeeds"));
            return feeds && feeds->isVisible();
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("49-box-menu"));
            QTest::keyClick(MenuOf(tour)->findChild<QMenu *>(QStringLiteral("BoxFeeds")), Qt::Key_Return);
            return QString();
        });
    tour.Add(
        QStringLiteral("Which is in front, its box with the focus"),
        [&tour] {
            const BlockForm *ramp = Window(tour, Ramp);
            return ramp && ramp->isAncestorOf(QApplication::focusWidget());
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("49-jumped"));
            for (const QString &caption : {Ramp, Setpoints})
                tour.User().WindowTitled(caption)->close();
            return QString();
        });
}

} // namespace quorvik
