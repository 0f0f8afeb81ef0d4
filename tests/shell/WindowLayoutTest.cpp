#include "shell/WindowLayout.h"
#include "blocks/BlockCatalogue.h"
#include "blocks/diagram/DiagramFrame.h"
#include "shell/ShellFixture.h"
#include "shell/WindowCommands.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScrollBar>

namespace quorvik::testing
{

using State = KeptWindow::State;

TEST(WindowLayout, AWindowThatIsDescribedWronglyIsLeftOut)
{
    const QList<KeptWindow> windows{
        {Name("FormMOP"), 0, {10, 20, 300, 200}, State::Normal, 0, false},
        {Name("FormThresholds"), 1, {-5, 0, 30, 40}, State::Maximized, 125, true}};
    const QString text = LayoutText(windows);
    EXPECT_EQ(LayoutOf(text), windows);
    for (const char *garbage :
         {"", "|", "FormMOP", "FormMOP 0 0 0 10 10 normal 0", "FormMOP 0 0 0 10 10 normal 0 inside x",
          "FormMOP -1 0 0 10 10 normal 0 inside", "FormMOP 0 0 0 0 10 normal 0 inside",
          "FormMOP 0 0 0 10 10 shaded 0 inside", "FormMOP 0 0 0 10 10 normal 301 inside",
          "FormMOP 0 0 0 10 99999999999 normal 0 inside", "FormMOP 0 0 0 10 10 normal 0 ",
          "FormMOP 0 nan 0 10 10 normal 0 inside"})
        EXPECT_EQ(LayoutOf(Name(garbage) + u'|' + text), windows) << garbage;
}

class KeptWindows : public ShellTest
{
protected:
    void Start()
    {
        MakeWindow();
        LoadQuietly();
        area = Find<QMdiArea>("MDIArea");
    }
    QWidget *Open(const char *entry)
    {
        Trigger(entry);
        return main->TheDesk().forms.At(main->TheDesk().forms.Count() - 1);
    }
    WindowCommands &Windows() const { return main->Windows(); }

    QMdiArea *area = nullptr;
};

TEST_F(KeptWindows, ComeBackAsTheyWereWhereTheOptionIsOn)
{
    for (const bool isOn : {false, true}) {
        Store("Options", "Keep Window Layout", isOn ? "True" : "False");
        Start();
        EXPECT_TRUE(Windows().Layout().isEmpty());
        Open("mnuOptionsColorSettings")->parentWidget()->showMinimized();
        Open("mnuBlockVloop")->findChild<DiagramFrame *>()->SetZoom(150);
        Open("mnuBlockMOP")->parentWidget()->setGeometry(20, 30, 400, 250);
        Windows().TakeOut(Open("mnuBlockMiscThreshold(1)"));
        Trigger("mnuBlockMOP");
        const QList<KeptWindow> before = Windows().Layout();
        ASSERT_EQ(before.size(), 4);
        main->close();
        Start();
        EXPECT_EQ(Windows().Layout(), isOn ? before : QList<KeptWindow>());
        main->close();
    }
}

TEST_F(KeptWindows, AreLeftOutWhereTheyNeedAnAnswerAndBroughtBackFromFarAway)
{
    Store("Options", "Keep Window Layout", "True");
    Store("Windows", "Layout",
          "FormVirtualOperator 0 0 0 300 300 normal 0 inside|FormThresholds 9 0 0 300 300 normal 0 inside|"
          "FormNobody 0 0 0 300 300 normal 0 inside|FormMOP 0 5000 -5000 9000 200 normal 0 inside|"
          "FormMinMax 0 90000 90000 300 200 normal 0 outside");
    Start();
    const QList<KeptWindow> layout = Windows().Layout();
    ASSERT_EQ(layout.size(), 2);
    EXPECT_TRUE(area->viewport()->rect().contains(layout[0].place));
    EXPECT_TRUE(main->screen()->availableGeometry().contains(layout[1].place));
}

TEST_F(KeptWindows, OutsideOfTheFrameAWindowStaysWhatItIs)
{
    Start();
    QWidget *form = Open("mnuBlockVloop");
    form->findChild<DiagramFrame *>()->SetZoom(150);
    const int polled = Table()[Param::PropGainA].ReadFlag;
    const QRect place(30, 20, 500, 300);
    form->parentWidget()->setGeometry(place);
    auto *box = FindIn<QWidget>(form, "Text1(4)");
    box->setFocus();
    QCoreApplication::processEvents();
    const auto *drawing = form->findChild<DiagramFrame *>();
    const QSize room = drawing->size();
    const auto hasItsRoom = [&] { return drawing->size() == room; };
    const auto boxHasFocus = [&] { return QApplication::focusWidget() == box; };
    for (int i = 0; i < 2; ++i) {
        Trigger("mnuWindowFrame");
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        EXPECT_TRUE(form->isWindow());
        EXPECT_TRUE(area->subWindowList().isEmpty());
        EXPECT_TRUE(QTest::qWaitFor(boxHasFocus));
        EXPECT_TRUE(QTest::qWaitFor(hasItsRoom));
        EXPECT_EQ(Windows().InFront(), form);
        EXPECT_EQ(Entry("mnuWindowFrame")->text(), Name("&Put Back into the Frame"));
        Trigger("mnuBlockVloop");
        EXPECT_TRUE(area->subWindowList().isEmpty()) << "it is shown where it is";
        QTest::keyClick(form, Qt::Key_Plus, Qt::ControlModifier);
        EXPECT_EQ(drawing->Zoom(), 175 + 25 * i);
        QTest::keyClick(form, Qt::Key_F11);
        ASSERT_EQ(area->subWindowList().size(), 1);
        EXPECT_EQ(area->subWindowList().first()->widget(), form);
        EXPECT_TRUE(QTest::qWaitForWindowActive(main.get()));
        EXPECT_TRUE(QTest::qWaitFor(boxHasFocus));
        EXPECT_TRUE(QTest::qWaitFor(hasItsRoom));
        EXPECT_EQ(form->parentWidget()->geometry(), place);
        EXPECT_EQ(Table()[Param::PropGainA].ReadFlag, polled);
        EXPECT_EQ(form->findChild<QMenuBar *>(), nullptr);
        EXPECT_TRUE(form->actions().isEmpty());
    }
    Trigger("mnuWindowFrame");
    Trigger("mnuWindowMinimizeAll");
    EXPECT_TRUE(form->isMinimized());
    Trigger("mnuWindowCloseAll");
    EXPECT_EQ(main->TheDesk().forms.Count(), 1);
    EXPECT_EQ(Table()[Param::PropGainA].ReadFlag, polled - 1);
}

TEST_F(KeptWindows, TilingAndMaximizingMakeADrawingFollow)
{
    Start();
    QWidget *form = Open("mnuBlockVloop");
    auto *drawing = form->findChild<DiagramFrame *>();
    for (const auto &arrange :
         {std::function([&] { Trigger("mnuWindowTileVertical"); }),
          std::function([&] { form->parentWidget()->showMaximized(); }), std::function([&] {
              Windows().TakeOut(form);
              EXPECT_EQ(drawing->Zoom(), 200) << "it has the size that it had";
              form->showMaximized();
          })}) {
        drawing->SetZoom(200);
        arrange();
        EXPECT_EQ(drawing->Zoom(), 0);
    }
    Open("mnuOptionsColorSettings");
    EXPECT_FALSE(Entry("mnuWindowZoomIn")->isEnabled());
}

/** By the scale of texts. */
class SmallScreen : public ShellTest, public ::testing::WithParamInterface<double>
{
};

TEST_P(SmallScreen, ShowsEveryDrawingWhole)
{
    const FontScale scale(GetParam());
    MakeWindow();
    LoadQuietly();
    // What the desktop takes of 768 lines for the title.
    main->resize(QSize(1366, 740) / main->devicePixelRatioF());
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        OpenBlock(main->TheDesk(), entry, std::max(entry.firstMember, 0));
        QWidget *form = main->TheDesk().forms.At(1);
        form->parentWidget()->showMaximized();
        QCoreApplication::processEvents();
        const auto *drawing = form->findChild<DiagramFrame *>();
        EXPECT_EQ(drawing->horizontalScrollBar()->maximum(), 0) << entry.form;
        EXPECT_EQ(drawing->verticalScrollBar()->maximum(), 0) << entry.form;
        Trigger("mnuWindowCloseAll");
    }
}

INSTANTIATE_TEST_SUITE_P(AtFontScales, SmallScreen, ::testing::Values(1.0, 1.5));

} // namespace quorvik::testing
