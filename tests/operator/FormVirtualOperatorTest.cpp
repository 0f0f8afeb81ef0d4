#include "operator/PanelTest.h"

#include "operator/JogButton.h"
#include "operator/VirtualSlider.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>

namespace quorvik::testing
{

namespace
{

using VirtualOperator = PanelTest;

int AssignedSelectors(const Model &model)
{
    int assigned = 0;
    for (int p = 0; p <= model.LastParam; ++p)
        assigned += model.AttrBit(Attr::Destination, p) && model.Value(p) != 0 ? 1 : 0;
    return assigned;
}

TEST_F(VirtualOperator, NoLeavesEverythingAsItWas)
{
    const int before = AssignedSelectors(desk.model);
    ASSERT_GT(before, 0);
    Open(MsgAnswer::No);
    EXPECT_EQ(panel, nullptr);
    EXPECT_EQ(AssignedSelectors(desk.model), before);
    EXPECT_EQ(desk.asker.Shown.first().title, QStringLiteral("Unassign inputs?"));
    EXPECT_EQ(desk.asker.Shown.first().icon, MsgIcon::Exclamation);
}

TEST_F(VirtualOperator, OpeningUnassignsAllInputsAndWritesEverySlider)
{
    Record(0).WriteFlag = WriteState::None;
    Setting(2) = {217, 0, 10000, 4321};
    Record(217).Value = 77;
    Open();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(AssignedSelectors(desk.model), 0);
    EXPECT_EQ(Value(245), 1);
    EXPECT_EQ(Record(1).WriteFlag, WriteState::Queued);
    EXPECT_EQ(Record(0).WriteFlag, WriteState::Queued) << "an unassigned slider writes parameter 0";
    EXPECT_EQ(Value(217), 0);
    EXPECT_EQ(Setting(2).Status, 0);
    EXPECT_TRUE(desk.model.FileModified);
    EXPECT_EQ(Text("LabelInputName(2)"), QStringLiteral("Reference 0"));
    EXPECT_EQ(Text("LabelSignalValue(2)"), QStringLiteral("0.00 %"));
    EXPECT_EQ(Text("LabelInputName(3)"), QStringLiteral("Signal D"));
    EXPECT_EQ(Find<QAbstractButton>("CommandDigital(8)")->text(), QStringLiteral("Digital C"));
    EXPECT_EQ(Find("CommandDigital(8)")->toolTip(), QStringLiteral("Unassigned"));
}

TEST_F(VirtualOperator, OpeningAgainUnassignsAgainInTheSamePanel)
{
    Open();
    FormVirtualOperator *first = panel;
    Record(1).Value = 239;
    Open();
    EXPECT_EQ(panel, first);
    EXPECT_EQ(Value(1), 0);
}

TEST_F(VirtualOperator, RunStopAndJogExcludeEachOther)
{
    Open();
    Click("CommandRun");
    EXPECT_EQ(Value(RunParam), 1);
    EXPECT_FALSE(Find("CommandRun")->isEnabled());
    EXPECT_FALSE(Find("CommandJog")->isEnabled());
    Click("CommandJog");
    EXPECT_EQ(Value(JogParam), 0);
    EXPECT_TRUE(Find<OperatorButton>("CommandRun")->IsLit());

    Click("CommandStop");
    EXPECT_EQ(Value(RunParam), 0);
    EXPECT_TRUE(Find("CommandRun")->isEnabled());
    EXPECT_TRUE(Find("CommandJog")->isEnabled());
    EXPECT_FALSE(Find<OperatorButton>("CommandRun")->IsLit());

    Record(RunParam).WriteFlag = WriteState::None;
    Click("CommandStop");
    EXPECT_EQ(Record(RunParam).WriteFlag, WriteState::Queued) << "Stop without Run writes all the same";
}

TEST_F(VirtualOperator, ClosingLeavesARunCommandInForce)
{
    Open();
    Click("CommandRun");
    Click("CommandClose");
    EXPECT_EQ(Value(RunParam), 1);
}

TEST_F(VirtualOperator, APushButtonWritesItsEndsAndClearsTheModifiedMarks)
{
    Setting(6) = {221, -500, 700, 0};
    Open();
    ASSERT_TRUE(desk.model.FileModified);
    auto *button = Find<QAbstractButton>("CommandDigital(6)");
    EXPECT_EQ(button->text(), QStringLiteral("Jog Reference\r\n=5.00 %"));

    Click("CommandDigital(6)");
    EXPECT_EQ(Setting(6).Status, -1);
    EXPECT_EQ(Value(221), 700);
    EXPECT_EQ(button->text(), QStringLiteral("Jog Reference\r\n=7.00 %"));
    EXPECT_TRUE(button->isChecked());
    EXPECT_FALSE(desk.model.FileModified);
    EXPECT_FALSE(desk.model.DriveModified);

    Click("CommandDigital(6)");
    EXPECT_EQ(Value(221), -500);
    EXPECT_FALSE(button->isChecked());

    Record(0).WriteFlag = WriteState::None;
    Click("CommandDigital(11)");
    EXPECT_EQ(Setting(11).Status, -1);
    EXPECT_EQ(Record(0).WriteFlag, WriteState::Queued) << "an unassigned button writes parameter 0";
}

TEST_F(VirtualOperator, ALatchedButtonStaysInOverClosingAndOpening)
{
    Open();
    Click("CommandDigital(7)");
    panel->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Open();
    EXPECT_TRUE(Find<QAbstractButton>("CommandDigital(7)")->isChecked());
}

TEST_F(VirtualOperator, ASliderWritesWhatItStandsAt)
{
    Setting(1) = {217, 0, 10000, 0};
    Open();
    desk.model.FileModified = false;
    VirtualSlider &slider = panel->VScrollSignal(1);
    EXPECT_EQ(slider.Min(), 10000);
    EXPECT_EQ(slider.Max(), 0);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_EQ(Value(217), 1000);
    EXPECT_EQ(Setting(1).Status, 1000);
    EXPECT_EQ(Text("LabelSignalValue(1)"), QStringLiteral("10.00 %"));
    EXPECT_TRUE(desk.model.FileModified);

    // A click above the handle is one large step up, one below it a step down.
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(10, 3));
    EXPECT_EQ(Value(217), 2000);
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(10, slider.height() - 3));
    EXPECT_EQ(Value(217), 1000);
}

TEST_F(VirtualOperator, ALoadedFileRedrawsThePanelAndWritesTheSliders)
{
    Open();
    panel->VScrollSignal(4).setValue(2500);
    Setting(4) = {217, 0, 10000, 9999};
    Setting(9) = {305, 0, 1, -1};
    Q_EMIT desk.model.VirtualSettingsLoaded();
    EXPECT_EQ(Text("LabelInputName(4)"), QStringLiteral("Reference 0"));
    EXPECT_EQ(Setting(4).Status, 2500) << "the position wins over the file";
    EXPECT_EQ(Value(217), 2500);
    EXPECT_EQ(Find<QAbstractButton>("CommandDigital(9)")->text(), QStringLiteral("Ramp Bypass\r\n=False"));
    EXPECT_TRUE(Find<QAbstractButton>("CommandDigital(9)")->isChecked());
}

TEST_F(VirtualOperator, ARightClickFindsItsColumn)
{
    Open();
    QWidget *frame = Find("FrameSignal");
    auto *menu = panel->findChild<QMenu *>(QStringLiteral("mnuPop1"));
    for (int index = 0; index < FormVirtualOperator::Signals; ++index) {
        const QWidget *line = Find(qPrintable(ControlName("Line1", index)));
        QTest::mouseClick(frame, Qt::RightButton, {}, QPoint(line->x() - 1, frame->height() / 2));
        EXPECT_EQ(fields.VirtualSelection, index);
        EXPECT_TRUE(menu->isVisible());
        menu->hide();
    }
    QTest::mouseClick(frame, Qt::RightButton, {}, QPoint(frame->width() - 1, 5));
    EXPECT_EQ(fields.VirtualSelection, 5) << "right of the last line the last column counts";
    menu->hide();
    QTest::mouseClick(&panel->VScrollSignal(2), Qt::RightButton);
    EXPECT_EQ(fields.VirtualSelection, 2);
    menu->hide();
    QTest::mouseClick(Find("CommandDigital(10)"), Qt::RightButton);
    EXPECT_EQ(fields.VirtualSelection, 10);
    EXPECT_EQ(Setting(10).Status, 0) << "a right click does not push";
    menu->hide();
}

TEST_F(VirtualOperator, HelpOpensItsTopic)
{
    Open();
    Click("CommandHelp");
    EXPECT_EQ(desk.help.Topics, QStringList{QStringLiteral("Virtual Operator.htm")});
}

TEST_F(VirtualOperator, ARecordThatCannotBeShownStillLeavesStopToTheUser)
{
    Setting(3) = {9000, 0, 0, 0};
    Open();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(Failures.size(), 1);
    EXPECT_TRUE(panel->isVisible());
    Record(RunParam).Value = 1;
    Click("CommandStop");
    EXPECT_EQ(Value(RunParam), 0);
}

enum class JogEnd {
    MouseUp,
    MouseLeavesWindow,
    PointerLeavesWhileSpaceIsHeld,
    ButtonLosesFocus,
    WindowDeactivated,
    WindowBlockedByDialog,
    PanelHidden,
    PanelClosed,
    ApplicationDeactivated,
    MouseGrabLost
};

class JogSafety : public PanelTest, public ::testing::WithParamInterface<JogEnd>
{
protected:
    void Hold()
    {
        jog = Find<JogButton>("CommandJog");
        jog->setFocus();
        if (GetParam() == JogEnd::PointerLeavesWhileSpaceIsHeld)
            QTest::keyPress(jog, Qt::Key_Space);
        else
            QTest::mousePress(jog, Qt::LeftButton);
    }

    void MoveTo(const QPoint &inButton)
    {
        QMouseEvent move(QEvent::MouseMove, inButton, jog->mapToGlobal(inButton), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(jog, &move);
    }

    static void Send(QObject *receiver, QEvent::Type type)
    {
        QEvent event(type);
        QCoreApplication::sendEvent(receiver, &event);
    }

    void End()
    {
        switch (GetParam()) {
        case JogEnd::MouseUp:
            QTest::mouseRelease(jog, Qt::LeftButton);
            break;
        case JogEnd::MouseLeavesWindow:
            MoveTo(jog->mapFrom(panel, QPoint(-5, 20)));
            break;
        case JogEnd::PointerLeavesWhileSpaceIsHeld:
            Send(panel, QEvent::Leave);
            break;
        case JogEnd::ButtonLosesFocus:
            Find("CommandStop")->setFocus();
            break;
        case JogEnd::WindowDeactivated:
            Send(panel, QEvent::WindowDeactivate);
            break;
        case JogEnd::WindowBlockedByDialog:
            Send(panel, QEvent::WindowBlocked);
            break;
        case JogEnd::PanelHidden:
            panel->hide();
            break;
        case JogEnd::PanelClosed:
            panel->close();
            break;
        case JogEnd::ApplicationDeactivated:
            Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
            break;
        case JogEnd::MouseGrabLost:
            Send(jog, QEvent::UngrabMouse);
            break;
        }
    }

    JogButton *jog = nullptr;
};

TEST_P(JogSafety, EndsForCertainAndStartsOnlyWithANewPress)
{
    Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel));
    Hold();
    EXPECT_EQ(Value(JogParam), 1);
    EXPECT_FALSE(Find("CommandRun")->isEnabled());
    MoveTo(QPoint(jog->width() / 2, jog->height() + 8));
    EXPECT_EQ(Value(JogParam), 1) << "off the button, still in the window";

    End();
    EXPECT_EQ(Value(JogParam), 0);
    EXPECT_EQ(Record(JogParam).WriteFlag, WriteState::Queued);
    EXPECT_TRUE(Find("CommandRun")->isEnabled());

    MoveTo(jog->rect().center());
    QTest::keyRelease(jog, Qt::Key_Space);
    EXPECT_EQ(Value(JogParam), 0) << "back over the button with the hold gone";
}

INSTANTIATE_TEST_SUITE_P(Ends, JogSafety,
                         ::testing::Values(JogEnd::MouseUp, JogEnd::MouseLeavesWindow,
                                           JogEnd::PointerLeavesWhileSpaceIsHeld, JogEnd::ButtonLosesFocus,
                                           JogEnd::WindowDeactivated, JogEnd::WindowBlockedByDialog,
                                           JogEnd::PanelHidden, JogEnd::PanelClosed,
                                           JogEnd::ApplicationDeactivated, JogEnd::MouseGrabLost));

TEST_F(VirtualOperator, JogFollowsTheSpaceBarButNotItsRepeats)
{
    Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel));
    auto *jog = Find<JogButton>("CommandJog");
    jog->setFocus();
    QTest::keyPress(jog, Qt::Key_Space);
    QKeyEvent repeatUp(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(jog, &repeatUp);
    EXPECT_EQ(Value(JogParam), 1);
    QTest::keyRelease(jog, Qt::Key_Space);
    EXPECT_EQ(Value(JogParam), 0);
    QTest::mouseClick(jog, Qt::RightButton);
    EXPECT_EQ(Record(JogParam).Value, 0);
}

} // namespace

} // namespace quorvik::testing
