#include "blocks/BlockFixture.h"
#include "support/OnLine.h"

#include <QHelpEvent>
#include <QToolTip>

namespace quorvik::testing
{

class ValueStateTest : public BlockFixture
{
protected:
    void ExpectState(int row, ValueState state)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return Text1(row)->State() == state; }))
            << NameOf(Text1(row)->State()).toStdString() << " for " << NameOf(state).toStdString();
    }
    QString TipOf(int row) const
    {
        QHelpEvent event(QEvent::ToolTip, {1, 1}, Text1(row)->mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(Text1(row), &event);
        return QToolTip::text();
    }
};

/** Row of Forward Max Speed. */
constexpr int Row = 4;

TEST_F(ValueStateTest, ABoxFollowsItsStateBetweenTheTicks)
{
    P(Param::ForwardMaxSpeed) = 1234;
    Open("FormVelocityLoop");
    Find<QTimer>("TimerUpdateScreen")->stop();
    EXPECT_EQ(Text1(Row)->State(), ValueState::Set);
    EXPECT_EQ(TipOf(Row), Text1(Row)->toolTip());
    OnLine drive(desk.link);
    ExpectState(Row, ValueState::Never);
    EXPECT_TRUE(Text1(Row)->accessibleDescription().startsWith(Name("12.34 %, Not read, ")));
    P(Param::ForwardMaxSpeed) = 4321;
    drive.Tells(Param::ForwardMaxSpeed, 4321);
    ExpectState(Row, ValueState::Live);
    EXPECT_EQ(ValueText(Row), "43.21 %") << "what is live is the new value";
    EXPECT_EQ(Text1(Row)->accessibleName(), Name("Forward Max Speed"));
    EXPECT_TRUE(TipOf(Row).startsWith(Text1(Row)->toolTip() + Name("\nread 0.")));
    for (int time = 0; time < 2; ++time)
        Q_EMIT desk.link.Asked(Param::ForwardMaxSpeed);
    ExpectState(Row, ValueState::Old);
    drive.Refuses(Param::ForwardMaxSpeed, 1200);
    ExpectState(Row, ValueState::Refused);
    EXPECT_TRUE(TipOf(Row).endsWith(Name("the drive refused 12.00 %, it keeps 43.21 %")));
    desk.asker.OnEditValue = [](int, std::int32_t) { return std::nullopt; };
    QTest::mouseClick(Text1(Row), Qt::LeftButton);
    ExpectState(Row, ValueState::Old);
    drive.Leaves();
    ExpectState(Row, ValueState::Lost);
}

TEST_F(ValueStateTest, ASelectorThatIsPaintedForItsStateStillMovesTheReadCount)
{
    P(Param::AnalogIn1Destination) = Param::Reference0;
    OnLine drive(desk.link);
    Open("FormAnalogInputs", 1);
    P(Param::AnalogIn1Destination) = 200;
    drive.Tells(Param::AnalogIn1Destination, 200);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ReadFlag(200) == before.at(200) + 1; }));
    Tick();
    EXPECT_EQ(ReadFlag(Param::Reference0), before.at(Param::Reference0));
}

TEST_F(ValueStateTest, ARowWithoutAParameterHasNoState)
{
    desk.settings.SaveSetting(Name("Custom"), Name("0"), Name("9999"));
    const OnLine drive(desk.link);
    Open("FormCustom");
    EXPECT_EQ(Text1(1)->State(), ValueState::Never);
    EXPECT_EQ(Text1(0)->State(), ValueState::Set);
    EXPECT_EQ(TipOf(0), QString());
    QTest::mouseClick(Text1(0), Qt::LeftButton);
    EXPECT_EQ(told, QStringList());
}

} // namespace quorvik::testing
