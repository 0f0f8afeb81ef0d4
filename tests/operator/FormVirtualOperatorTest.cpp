#include "operator/PanelTest.h"

#include "operator/JogButton.h"
#include "operator/OperatorLinks.h"
#include "operator/VirtualSlider.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <functional>
#include <utility>

namespace quorvik::testing
{

namespace
{

using VirtualOperator = PanelTest;

int AssignedSelectors(const ParameterTable &table)
{
    int assigned = 0;
    for (int p = 0; p <= table.LastParam; ++p)
        assigned += table.AttrBit(Attr::Destination, p) && table.Value(p) != 0 ? 1 : 0;
    return assigned;
}

TEST_F(VirtualOperator, OpeningUnassignsAllInputsAndWritesOnlyWhatDiffers)
{
    Setting(2) = {217, 0, 5000, 4321};
    Setting(3) = {218, 2000, 8000, 0};
    P(217) = 0;
    desk.table.SetPortOpen(true);
    const int watched = Record(1).ReadFlag;
    const int assigned = AssignedSelectors(desk.table);
    ASSERT_GT(assigned, 0);
    Open(MsgAnswer::No);
    ASSERT_EQ(panel, nullptr);
    EXPECT_EQ(AssignedSelectors(desk.table), assigned);
    EXPECT_EQ(desk.asker.Shown.first().title, Name("Unassign inputs?"));
    EXPECT_EQ(desk.asker.Shown.first().safe, MsgAnswer::No);
    Open();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(AssignedSelectors(desk.table), 0);
    EXPECT_EQ(P(245), 1);
    EXPECT_EQ(Record(1).WriteFlag, WriteState::Queued);
    EXPECT_EQ(Record(1).ReadFlag, watched + 1) << "a drive that runs refuses it";
    EXPECT_EQ(Record(217).WriteFlag, WriteState::Queued) << "an input drove it";
    EXPECT_EQ(P(218), 2000) << "within the ends of its record";
    for (const int same : {0, 24, 239, 241})
        EXPECT_EQ(Record(same).WriteFlag, WriteState::None) << same;
    EXPECT_EQ(Setting(2).Status, 0);
    EXPECT_TRUE(desk.document.FileModified);
    EXPECT_EQ(Text("LabelInputName(2)"), "Reference 0");
    EXPECT_EQ(Text("LabelSignalValue(2)"), "0.00 %");
    EXPECT_EQ(panel->VScrollSignal(2).Min(), 5000);
    EXPECT_EQ(panel->VScrollSignal(2).LargeChange(), 500);
    EXPECT_EQ(panel->VScrollSignal(4).Min(), 10000);
    EXPECT_EQ(Text("CommandDigital(8)"), "Digital C");
    EXPECT_EQ(Find("CommandDigital(8)")->toolTip(), Name("Unassigned"));

    const FormVirtualOperator *first = panel;
    P(1) = 239;
    Record(245).WriteFlag = WriteState::None;
    Open();
    EXPECT_EQ(panel, first);
    EXPECT_EQ(P(1), 0);
    EXPECT_EQ(Record(245).WriteFlag, WriteState::None);
    Click("CommandClose");
    EXPECT_EQ(Record(1).ReadFlag, watched);
}

TEST_F(VirtualOperator, TellsWhichControlWritesWhatWhileItIsOpen)
{
    const auto controls = [this] {
        std::string found;
        for (const CircuitLink &link : OperatorLinks(desk.desk))
            found += std::to_string(link.destination) + " " + link.name.toStdString() + "; ";
        return found;
    };
    Setting(2) = {217, 0, 5000, 4321};
    Setting(8) = {22, 0, 1, 0};
    EXPECT_EQ(controls(), "");
    Open();
    EXPECT_EQ(controls(), "239 Run of the Virtual Operator; 240 Stop of the Virtual Operator; "
                          "241 Jog of the Virtual Operator; 217 Signal C of the Virtual Operator; "
                          "22 Digital C of the Virtual Operator; ");
    Click("CommandClose");
    EXPECT_EQ(controls(), "");
}

TEST_F(VirtualOperator, ThePanelShowsWhatTheDriveDoes)
{
    Open();
    desk.table.SetPortOpen(true);
    const std::tuple<const char *, int, int, int, int, bool, bool, bool, bool> cases[] = {
        {"at rest", 0, 0, 0, 0, false, false, true, true},
        {"started at its own terminals", 0, 0, 1, 1, true, false, false, false},
        {"not yet polled", 0, 0, 0, 1, true, false, false, false},
        {"tripped", 1, 0, 0, 8, false, false, false, false},
        {"tripped, its status not yet polled", 0, 0, 1, 8, false, false, true, true},
        {"stopped elsewhere, still turning", 0, 0, 0, 2, false, false, true, true},
        {"does not start", 1, 0, 0, 0, false, false, false, false},
        {"jogs", 0, 1, 0, 3, false, true, false, true},
        {"jog let go elsewhere", 0, 0, 0, 4, false, false, true, true},
    };
    for (const auto &[what, run, jog, runStatus, state, runLit, jogLit, canRun, canJog] : cases) {
        SCOPED_TRACE(what);
        P(239) = run;
        P(241) = jog;
        P(242) = runStatus;
        P(422) = state;
        Tick();
        EXPECT_EQ(Find<OperatorButton>("CommandRun")->IsLit(), runLit);
        EXPECT_EQ(Find<OperatorButton>("CommandJog")->IsLit(), jogLit);
        EXPECT_EQ(Enabled("CommandRun"), canRun);
        EXPECT_EQ(Enabled("CommandJog"), canJog);
    }
    P(422) = 1;
    Click("CommandStop");
    EXPECT_TRUE(Find<OperatorButton>("CommandRun")->IsLit()) << "the drive still runs";
    EXPECT_TRUE(Enabled("CommandRun") && Enabled("CommandJog"));
    for (const int state : {0, 1}) {
        P(422) = state;
        Tick();
    }
    EXPECT_FALSE(Enabled("CommandRun")) << "started again elsewhere";
}

TEST_F(VirtualOperator, StopAndAnyClosingEndTheJogToo)
{
    const std::tuple<const char *, int, int, int, std::function<void()>, bool, bool> cases[] = {
        {"nothing to end", 0, 0, 1, [this] { Click("CommandStop"); }, false, false},
        {"stop", 1, 3, 1, [this] { Click("CommandStop"); }, true, false},
        {"stop before the jog was polled", 0, 3, 1, [this] { Click("CommandStop"); }, true, false},
        {"stop with three wires", 0, 1, 0, [this] { Click("CommandStop"); }, false, true},
        {"main window closed", 1, 3, 1, [this] { desk.mainWindow.close(); }, true, false},
        {"panel closed", 1, 3, 1, [this] { panel->close(); }, true, false},
    };
    Open();
    desk.table.SetPortOpen(true);
    for (const auto &[what, jog, state, logic, end, writesJog, writesStop] : cases) {
        SCOPED_TRACE(what);
        Record(245) = desk.table.PresetTable[245];
        P(245) = logic;
        P(422) = state;
        Record(240).WriteFlag = Record(241).WriteFlag = WriteState::None;
        P(241) = jog;
        end();
        EXPECT_EQ(P(241), 0);
        EXPECT_EQ(Record(241).WriteFlag == WriteState::Queued, writesJog);
        EXPECT_EQ(Record(240).WriteFlag == WriteState::Queued, writesStop);
    }
}

TEST_F(VirtualOperator, FitsTheScreenAndStaysOnItWithoutTheMainWindow)
{
    Open();
    const auto isOwnedBy = [this](const QWindow *owner) {
        return QTest::qWaitFor([this, owner] {
            return panel->windowHandle()->transientParent() == owner && !panel->isMinimized();
        });
    };
    EXPECT_TRUE(isOwnedBy(desk.mainWindow.windowHandle()));
    desk.mainWindow.setWindowState(Qt::WindowMinimized);
    panel->setWindowState(Qt::WindowMinimized);
    EXPECT_TRUE(isOwnedBy(nullptr));
    panel->setWindowState(Qt::WindowMinimized);
    EXPECT_TRUE(isOwnedBy(nullptr));
    desk.mainWindow.setWindowState(Qt::WindowNoState);
    EXPECT_TRUE(isOwnedBy(desk.mainWindow.windowHandle()));

    EXPECT_LE(panel->width(), panel->screen()->availableSize().width());
}

TEST_F(VirtualOperator, SaysWhatKeepsStopFromStopping)
{
    Open();
    const std::tuple<const char *, int, int> cases[] = {
        {"", 239, 1},
        {"(1) Digital In 1 Destination drives Run", 1, 239},
        {"Logic Select is not 2 Wire", 245, 0},
        {"there is no link to it", 422, 1},
        {"it does not let go of its inputs while it runs", 422, 1},
    };
    for (const auto &[reason, p, rawValue] : cases) {
        desk.table.SetPortOpen(reason[0] == 'i');
        const std::int32_t before = std::exchange(P(p), rawValue);
        Tick();
        EXPECT_EQ(Find("LabelNotice")->isVisible(), reason[0] != 0) << reason;
        EXPECT_NE(Text("LabelNotice").find(reason), std::string::npos) << reason;
        P(p) = before;
    }
}

TEST_F(VirtualOperator, ASetThatIsNotSettledSaysNothingOfTheDrive)
{
    Setting(3) = {218, 0, 8000, 0};
    Open();
    desk.table.SetPortOpen(true);
    desk.table.SetAllWriteFlags(WriteState::Held);
    Tick();
    EXPECT_NE(Text("LabelNotice").find("what its inputs drive has not been read"), std::string::npos);
    Open();
    for (const int p : {Param::DigitalIn1Destination, Param::LogicSelect, 218})
        EXPECT_EQ(Record(p).WriteFlag, WriteState::Queued) << p;
}

TEST_F(VirtualOperator, RunStopAndJogExcludeEachOtherAndRunOutlivesThePanel)
{
    Open();
    Record(RunParam).WriteFlag = WriteState::None;
    Click("CommandStop");
    EXPECT_EQ(Record(RunParam).WriteFlag, WriteState::Queued) << "Stop without Run writes all the same";

    Click("CommandRun");
    EXPECT_EQ(P(RunParam), 1);
    EXPECT_FALSE(Enabled("CommandRun") || Enabled("CommandJog"));
    Click("CommandJog");
    EXPECT_EQ(P(JogParam), 0);
    EXPECT_TRUE(Find<OperatorButton>("CommandRun")->IsLit());

    Click("CommandStop");
    EXPECT_EQ(P(RunParam), 0);
    EXPECT_TRUE(Enabled("CommandRun") && Enabled("CommandJog"));
    EXPECT_FALSE(Find<OperatorButton>("CommandRun")->IsLit());

    Click("CommandRun");
    Click("CommandClose");
    EXPECT_EQ(P(RunParam), 1);
}

TEST_F(VirtualOperator, APushButtonWritesItsEndsAndClearsTheModifiedMarks)
{
    Setting(6) = {221, -500, 700, 0};
    Open();
    ASSERT_TRUE(desk.document.FileModified);
    EXPECT_EQ(Text("CommandDigital(6)"), "Jog Reference\r\n=5.00 %");
    Click("CommandDigital(6)");
    EXPECT_EQ(Setting(6).Status, -1);
    EXPECT_EQ(P(221), 700);
    EXPECT_EQ(Text("CommandDigital(6)"), "Jog Reference\r\n=7.00 %");
    EXPECT_TRUE(Checked("CommandDigital(6)"));
    EXPECT_FALSE(desk.document.FileModified || desk.document.DriveModified);

    Click("CommandDigital(6)");
    EXPECT_EQ(P(221), -500);
    EXPECT_FALSE(Checked("CommandDigital(6)"));

    Record(0).WriteFlag = WriteState::None;
    Click("CommandDigital(11)");
    EXPECT_EQ(Setting(11).Status, -1);
    EXPECT_EQ(Record(0).WriteFlag, WriteState::Queued) << "an unassigned button writes parameter 0";
    Close();
    Open();
    EXPECT_TRUE(Checked("CommandDigital(11)")) << "stays in over closing and opening";
}

TEST_F(VirtualOperator, ASliderWritesWhatItStandsAt)
{
    Setting(1) = {217, 0, 10000, 0};
    Open();
    desk.document.FileModified = false;
    VirtualSlider &slider = panel->VScrollSignal(1);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_EQ(P(217), 1000);
    EXPECT_EQ(Setting(1).Status, 1000);
    EXPECT_EQ(Text("LabelSignalValue(1)"), "10.00 %");
    EXPECT_TRUE(desk.document.FileModified);

    // A click above the handle is one large step up, one below it a step down.
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(10, 3));
    EXPECT_EQ(P(217), 2000);
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(10, slider.height() - 3));
    EXPECT_EQ(P(217), 1000);
}

TEST_F(VirtualOperator, ALoadedFileRedrawsThePanelAndWritesTheSliders)
{
    Open();
    panel->VScrollSignal(4).setValue(2500);
    Setting(4) = {217, 0, 4000, 9999};
    Setting(9) = {305, 0, 1, -1};
    Q_EMIT desk.document.VirtualSettingsLoaded();
    EXPECT_EQ(Text("LabelInputName(4)"), "Reference 0");
    EXPECT_EQ(Setting(4).Status, 2500) << "the position wins over the file";
    EXPECT_EQ(panel->VScrollSignal(4).Min(), 4000);
    EXPECT_EQ(P(217), 2500);
    EXPECT_EQ(Text("CommandDigital(9)"), "Ramp Bypass\r\n=False");
    EXPECT_TRUE(Checked("CommandDigital(9)"));
}

TEST_F(VirtualOperator, ARightClickFindsItsColumnAndItsProperties)
{
    Open();
    QWidget *frame = Find("FrameSignal");
    auto *menu = panel->findChild<QMenu *>(Name("mnuPop1"));
    const auto expectSelection = [&](QWidget *clicked, const QPoint &place, int selection) {
        QTest::mouseClick(clicked, Qt::RightButton, {}, place);
        EXPECT_EQ(fields.VirtualSelection, selection);
        EXPECT_TRUE(menu->isVisible());
        menu->hide();
    };
    for (int index = 0; index < FormVirtualOperator::Signals; ++index)
        expectSelection(frame, QPoint(Find(ControlName("Line1", index))->x() - 1, frame->height() / 2),
                        index);
    // Right of the last line the last column counts.
    expectSelection(frame, QPoint(frame->width() - 1, 5), 5);
    expectSelection(&panel->VScrollSignal(2), {}, 2);
    expectSelection(Find("CommandDigital(10)"), {}, 10);
    EXPECT_EQ(Setting(10).Status, 0) << "a right click does not push";
    InModal([this] { panel->findChild<QAction *>(Name("mnuProperties"))->trigger(); },
            [](const Controls &setup) { EXPECT_EQ(setup.Text("ComboInput"), "Digital E"); });
}

TEST_F(VirtualOperator, ARecordThatCannotBeShownStillLeavesStopToTheUser)
{
    Setting(3) = {9000, 0, 0, 0};
    Open();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(panel->isVisible());
    P(RunParam) = 1;
    Click("CommandStop");
    EXPECT_EQ(P(RunParam), 0);
}

void Send(QObject *receiver, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(receiver, &event);
}

TEST_F(VirtualOperator, JogEndsForCertainAndStartsOnlyWithANewPress)
{
    JogButton *jog = nullptr;
    const auto moveTo = [&jog](const QPoint &inButton) {
        QMouseEvent move(QEvent::MouseMove, inButton, jog->mapToGlobal(inButton), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(jog, &move);
    };
    const std::tuple<const char *, bool, std::function<void()>> ends[] = {
        {"mouse up", false, [&] { QTest::mouseRelease(jog, Qt::LeftButton); }},
        {"mouse leaves window", false, [&] { moveTo(jog->mapFrom(panel, QPoint(-5, 20))); }},
        {"space bar up", true, [&] { QTest::keyRelease(jog, Qt::Key_Space); }},
        {"pointer leaves while space is held", true, [&] { Send(panel, QEvent::Leave); }},
        {"button loses focus", false, [&] { Find("CommandStop")->setFocus(); }},
        {"window deactivated", false, [&] { Send(panel, QEvent::WindowDeactivate); }},
        {"window blocked by dialog", false, [&] { Send(panel, QEvent::WindowBlocked); }},
        {"panel hidden", false, [&] { panel->hide(); }},
        {"panel closed", false, [&] { panel->close(); }},
        {"application deactivated", false,
         [] { Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive); }},
        {"mouse grab lost", false, [&] { Send(jog, QEvent::UngrabMouse); }},
    };
    for (const auto &[what, bySpace, end] : ends) {
        SCOPED_TRACE(what);
        Open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel));
        jog = Find<JogButton>("CommandJog");
        jog->setFocus();
        QTest::mouseClick(jog, Qt::RightButton);
        EXPECT_EQ(P(JogParam), 0);
        if (bySpace)
            QTest::keyPress(jog, Qt::Key_Space);
        else
            QTest::mousePress(jog, Qt::LeftButton);
        EXPECT_EQ(P(JogParam), 1);
        EXPECT_FALSE(Enabled("CommandRun"));
        moveTo(QPoint(jog->width() / 2, jog->height() + 8));
        QKeyEvent repeatUp(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
        QCoreApplication::sendEvent(jog, &repeatUp);
        EXPECT_EQ(P(JogParam), 1) << "off the button in the window, or a repeat of the key";

        Record(JogParam).WriteFlag = WriteState::None;
        end();
        EXPECT_EQ(P(JogParam), 0);
        EXPECT_EQ(Record(JogParam).WriteFlag, WriteState::Queued);
        EXPECT_TRUE(Enabled("CommandRun"));

        moveTo(jog->rect().center());
        QTest::keyRelease(jog, Qt::Key_Space);
        EXPECT_EQ(P(JogParam), 0) << "back over the button with the hold gone";
        Close();
    }
}

} // namespace

} // namespace quorvik::testing
