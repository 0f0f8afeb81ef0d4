#include "shell/WindowCommands.h"
#include "desktop/Mnemonics.h"
#include "model/ParameterNumbers.h"
#include "shell/ShellFixture.h"
#include "shell/Tiling.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>

namespace quorvik::testing
{

TEST(Tiling, FillsTheAreaWithoutOverlap)
{
    const QRect area(3, 5, 1001, 607);
    for (int count = 1; count <= 13; ++count)
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            const QList<QRect> rects = TileRects(area, count, orientation);
            ASSERT_EQ(rects.size(), count);
            qint64 covered = 0;
            for (const QRect &rect : rects) {
                EXPECT_TRUE(area.contains(rect));
                covered += qint64(rect.width()) * rect.height();
                for (const QRect &other : rects)
                    EXPECT_TRUE(&other == &rect || !other.intersects(rect));
            }
            EXPECT_EQ(covered, qint64(area.width()) * area.height()) << count;
        }
}

TEST(Cascade, LeavesEveryTitleInSight)
{
    const QRect area(0, 0, 1366, 720);
    const int step = 22;
    for (const QSize window : {QSize(1012, 337), QSize(1366, 720), QSize(2000, 1000)})
        for (int position = 1; position < 5; ++position)
            EXPECT_EQ(CascadePlace(area, position, window, step), QPoint(position * step, position * step));
    // A small window's cascade starts again before it leaves the area.
    for (int position = 0; position < 100; ++position)
        EXPECT_TRUE(
            area.contains(QRect(CascadePlace(area, position, QSize(600, 400), step), QSize(600, 400))));
}

TEST(Room, IsTakenWhereThereIsSomeAndElseNotFromTheWorkInHand)
{
    const QRect area(0, 0, 1000, 600);
    const QSize window(400, 300);
    constexpr int title = 20;
    EXPECT_EQ(PlaceWithRoom(area, window, {}, title), QPoint(0, 0));
    const QRect first(0, 0, 400, 300);
    EXPECT_EQ(PlaceWithRoom(area, window, {{first}, {}}, title), QPoint(400, 0));
    const QRect second(400, 0, 600, 300);
    EXPECT_EQ(PlaceWithRoom(area, window, {{first, second}, {}}, title), QPoint(0, 300));
    EXPECT_EQ(PlaceWithRoom(area, {700, 100}, {{first, second}, {}}, title), QPoint(0, 300));

    // No free place: title and focus of the last one stay in sight, wherever the focus is.
    const QRect wide(0, 0, 1000, 500);
    for (const QRect &focus : {QRect(50, 300, 80, 20), QRect(900, 300, 80, 20)}) {
        const auto place = PlaceWithRoom(area, {500, 400}, {{second, wide}, focus}, title);
        ASSERT_TRUE(place);
        const QRect taken(*place, QSize(500, 400));
        EXPECT_TRUE(area.contains(taken));
        EXPECT_FALSE(taken.intersects(focus));
        EXPECT_FALSE(taken.intersects(QRect(0, 0, 1000, title)));
    }
    EXPECT_FALSE(PlaceWithRoom(area, {1001, 100}, {}, title));
    EXPECT_FALSE(PlaceWithRoom(area, {1000, 590}, {{wide}, {}}, title)) << "only over the title";
}

class Windows : public ShellTest
{
protected:
    void SetUp() override
    {
        LoadQuietly();
        area = Find<QMdiArea>("MDIArea");
        Trigger("mnuBlockAnalogInputsAll");
        ASSERT_EQ(area->subWindowList().size(), 5);
    }

    bool ComesDownTo(int count) const
    {
        return QTest::qWaitFor([&] { return area->subWindowList().size() == count; });
    }

    QMdiArea *area = nullptr;
};

TEST_F(Windows, CommandsReachEveryWindow)
{
    Trigger("mnuWindowMinimizeAll");
    for (const QMdiSubWindow *child : area->subWindowList())
        EXPECT_TRUE(child->isMinimized());
    EXPECT_FALSE(main->isMinimized());
    Trigger("mnuWindowRestoreAll");
    for (const QMdiSubWindow *child : area->subWindowList())
        EXPECT_FALSE(child->isMinimized());
    Controls(area->subWindowList().first()).Click("CommandClose");
    EXPECT_TRUE(ComesDownTo(4)) << "a close button takes the frame with it";
    Trigger("mnuWindowCloseAll");
    Trigger("mnuWindowCloseAll");
    EXPECT_TRUE(ComesDownTo(0));
    EXPECT_EQ(main->TheDesk().forms.Count(), 1);
    EXPECT_TRUE(main->isVisible());
}

TEST_F(Windows, InternalLinksComeIntoSightAndLeaveTheFocus)
{
    for (int i = 0; i < 2; ++i) {
        Trigger("mnuBlockInternalLinks");
        QMdiSubWindow *links = area->subWindowList(QMdiArea::StackingOrder).last();
        EXPECT_EQ(links->windowTitle(), Name("Internal Links"));
        EXPECT_FALSE(links->isMinimized());
        EXPECT_EQ(area->activeSubWindow()->windowTitle(), Name("Analog Input 5"));
        links->showMinimized();
        area->setActiveSubWindow(area->subWindowList().at(4));
    }
}

TEST_F(Windows, KeysCloseAndChangeWindows)
{
    QTest::keyClick(main.get(), Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(area->activeSubWindow()->windowTitle(), Name("Analog Input 1"));
    QTest::keyClick(main.get(), Qt::Key_F6, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(main.get(), Qt::Key_F4, Qt::ControlModifier);
    EXPECT_TRUE(ComesDownTo(4));
    EXPECT_EQ(area->subWindowList().last()->windowTitle(), Name("Analog Input 4"));
}

TEST_F(Windows, MenusLeaveTheirLettersToTheWindowInFront)
{
    QWidget *bar = main->menuBar();
    EXPECT_FALSE(bar->actions().contains(Entry("mnuCheckout")))
        << "a hidden menu keeps its letter in the bar";
    EXPECT_EQ(Entry("mnuOptions")->text(), Name("&Options"));
    Trigger("mnuToolsIOSimulator");
    EXPECT_EQ(Entry("mnuOptions")->text(), Name("Options")) << "Alt+O is Open there";
    EXPECT_EQ(Entry("mnuFile")->text(), Name("&File"));
    area->setActiveSubWindow(area->subWindowList().first());
    EXPECT_EQ(Entry("mnuOptions")->text(), Name("&Options"));
}

TEST_F(Windows, NewOnesLeaveTheWorkInHandInSight)
{
    main->resize(1500, 900);
    Trigger("mnuWindowCloseAll");
    ASSERT_TRUE(ComesDownTo(0));
    for (const char *entry : {"mnuBlockZeroSpeed", "mnuBlockAnalogInput(1)", "mnuBlockTimer",
                              "mnuBlockDateTime", "mnuBlockMOP"}) {
        SCOPED_TRACE(entry);
        const QMdiSubWindow *before = area->activeSubWindow();
        const QWidget *focus = before ? before->widget()->focusWidget() : nullptr;
        Trigger(entry);
        const QMdiSubWindow *opened = area->activeSubWindow();
        ASSERT_NE(opened, before);
        if (focus) {
            const QRect held(focus->mapTo(area->viewport(), QPoint()), focus->size());
            EXPECT_FALSE(opened->geometry().intersects(held));
        }
    }
}

TEST_F(Windows, EveryMenuHasItsOwnLetters)
{
    QList<QMenu *> menus = main->findChildren<QMenu *>();
    menus.append(main->TheDesk().MenuOf(Param::Reference0, main.get()));
    QStringList twice;
    for (const QMenu *menu : menus) {
        QSet<QChar> seen;
        for (const QAction *action : menu->actions()) {
            const QChar letter = MnemonicOf(action->text());
            if (!letter.isNull() && seen.contains(letter))
                twice.append(action->objectName());
            seen.insert(letter);
        }
    }
    twice.sort();
    // These captions were given with the letter of another.
    EXPECT_EQ(twice, QStringList({Name("mnuBlockStartStopLogic"), Name("mnuHelpSarvexManual"),
                                  Name("mnuToolsSaveDrive")}));
}

TEST_F(Windows, TheMenuListsTheOpenWindowsAndLeadsToThem)
{
    QMenu *menu = main->Menus().Menu(QStringLiteral("mnuWindow"));
    Q_EMIT menu->aboutToShow();
    Q_EMIT menu->aboutToShow();
    QList<QAction *> listed;
    for (QAction *action : menu->actions())
        if (action->objectName().startsWith(QLatin1String("mnuWindowList")) && !action->isSeparator())
            listed.append(action);
    ASSERT_EQ(listed.size(), 5);
    EXPECT_EQ(listed[2]->text(), Name("&3 Analog Input 3"));
    listed[2]->trigger();
    EXPECT_EQ(area->activeSubWindow()->windowTitle(), Name("Analog Input 3"));
}

} // namespace quorvik::testing
