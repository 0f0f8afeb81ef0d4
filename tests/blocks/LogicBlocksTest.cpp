#include "blocks/BlockFixture.h"

namespace quorvik::testing
{

namespace
{

using LogicBlocksTest = BlockFixture;

TEST_F(LogicBlocksTest, TheThresholdSwitchHasTwoEdges)
{
    const struct {
        std::int32_t input;
        std::int32_t hysteresis;
        bool on;
    } steps[] = {
        {110, 10, false},
        {111, 10, true},
        {91, 10, true},
        {90, 10, false},
        {95, 10, false},
        {-111, 10, true},
        // More hysteresis than threshold lets go from any input at the next tick.
        {500, 200, false},
        {500, 200, true},
        {500, 200, false},
    };
    for (const auto &[member, base] : {std::pair(0, 177), std::pair(1, 183)}) {
        Open("FormThresholds", member);
        for (const auto &step : steps) {
            Set({{base, step.input}, {base + 1, 100}, {base + 2, step.hysteresis}});
            Tick();
            EXPECT_EQ(State("LineSwitch"), step.on ? 0 : 1)
                << "member " << member << " input " << step.input << " hysteresis " << step.hysteresis;
        }
        Close();
    }
}

TEST_F(LogicBlocksTest, InternalLinksNameWhatTheyPointAt)
{
    Open("FormInternalLinks");
    Set({{366, 193}, {405, 217}, {368, 9999}, {369, -1}});
    Tick();
    const auto name = [this](int row) { return Find<QLabel>(ControlName("LabelName", row))->text(); };
    EXPECT_EQ(name(0), desk.model.ParamTable[193].Name);
    EXPECT_EQ(name(39), desk.model.ParamTable[217].Name);
    EXPECT_EQ(name(2), QString());
    EXPECT_EQ(name(3), QString());
}

class TimerTest : public BlockFixture
{
protected:
    TimerTest()
    {
        Open("FormTimer");
        emulator = Find<QTimer>(QStringLiteral("TimerEmulator"));
        emulator->setInterval(1);
        Set({{312, 50}, {313, 7}, {314, 8}});
    }

    bool CountReaches(std::int32_t count)
    {
        return QTest::qWaitFor([&] { return desk.model.Value(428) >= count; }, 2000);
    }

    QTimer *emulator = nullptr;
};

TEST_F(TimerTest, CountsInTensAndSwitchesAboveTheThreshold)
{
    Set({{428, 50}});
    emulator->stop();
    emulator->setInterval(100'000);
    Tick();
    EXPECT_EQ(desk.model.Value(315), 7) << "not above the threshold yet";
    EXPECT_EQ(State("LineSwitch"), 1);
    emulator->start(1);
    ASSERT_TRUE(CountReaches(60));
    EXPECT_EQ(desk.model.Value(428) % 10, 0);
    Tick();
    EXPECT_EQ(desk.model.Value(315), 8);
    EXPECT_EQ(State("LineSwitch"), 0);
    Set({{428, 2380}});
    ASSERT_TRUE(CountReaches(2400));
    QSignalSpy more(emulator, &QTimer::timeout);
    ASSERT_TRUE(more.wait(1000));
    EXPECT_EQ(desk.model.Value(428), 2400);
}

TEST_F(TimerTest, ResetHoldsItAtZeroAndTheSwitchFollowsInTheSameTick)
{
    Set({{428, 100}, {311, 1}});
    Tick();
    EXPECT_FALSE(emulator->isActive());
    EXPECT_EQ(desk.model.Value(428), 0);
    EXPECT_EQ(desk.model.Value(315), 7);
    EXPECT_EQ(State("LineSwitch"), 1);
    EXPECT_FALSE(form->drawing().Find(QStringLiteral("ShapeInvert"))->visible);
    Set({{365, 1}});
    Tick();
    EXPECT_TRUE(emulator->isActive());
    EXPECT_TRUE(form->drawing().Find(QStringLiteral("ShapeInvert"))->visible);
}

TEST_F(TimerTest, RunsOffLineAndWithAnOpenWindowOnly)
{
    desk.online = true;
    Set({{428, 100}, {315, 3}});
    Tick();
    EXPECT_FALSE(emulator->isActive());
    EXPECT_EQ(desk.model.Value(315), 3) << "on line the drive sets its output";
    EXPECT_EQ(State("LineSwitch"), 0);
    desk.online = false;
    Tick();
    ASSERT_TRUE(CountReaches(110));
    Close();
    const std::int32_t rawCount = desk.model.Value(428);
    QTest::qWait(20);
    EXPECT_EQ(desk.model.Value(428), rawCount);
}

} // namespace

} // namespace quorvik::testing
