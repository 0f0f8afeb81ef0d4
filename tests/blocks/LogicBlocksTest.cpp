#include "blocks/BlockFixture.h"

#include <QSignalSpy>

namespace quorvik::testing
{

using LogicBlocksTest = BlockFixture;

TEST_F(LogicBlocksTest, TheThresholdSwitchHasTwoEdges)
{
    const std::tuple<std::int32_t, std::int32_t, bool> steps[] = {
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
        for (const auto &[input, hysteresis, on] : steps) {
            Set({{base, input}, {base + 1, 100}, {base + 2, hysteresis}});
            Tick();
            EXPECT_EQ(State("LineSwitch"), on ? 0 : 1)
                << "member " << member << " input " << input << " hysteresis " << hysteresis;
        }
        Close();
    }
}

TEST_F(LogicBlocksTest, InternalLinksNameWhatTheyPointAt)
{
    Open("FormInternalLinks");
    Set({{366, 193}, {405, 217}, {368, 9999}, {369, -1}});
    Tick();
    EXPECT_EQ(Text("LabelName(0)"), Record(193).Name.toStdString());
    EXPECT_EQ(Text("LabelName(39)"), Record(217).Name.toStdString());
    EXPECT_EQ(Text("LabelName(2)"), "");
    EXPECT_EQ(Text("LabelName(3)"), "");
}

TEST_F(LogicBlocksTest, TheTimerFollowsItsSelectorsInTheSameTickAndCountsOffLineOnly)
{
    Open("FormTimer");
    auto *emulator = Find<QTimer>("TimerEmulator");
    emulator->setInterval(100'000);
    Set({{312, 50}, {313, 7}, {314, 8}});
    const struct {
        const char *what;
        Values values;
        bool online, runs;
        std::int32_t output;
        int contact;
    } ticks[] = {
        {"at the threshold", {{428, 50}}, false, true, 7, 1},
        {"above it", {{428, 60}}, false, true, 8, 0},
        {"held at zero", {{311, 1}}, false, false, 7, 1},
        {"reset inverted", {{365, 1}}, false, true, 7, 1},
        {"the drive's own output", {{428, 60}, {315, 3}}, true, false, 3, 0},
    };
    for (const auto &tick : ticks) {
        SCOPED_TRACE(tick.what);
        desk.online = tick.online;
        Set(tick.values);
        Tick();
        EXPECT_EQ(emulator->isActive(), tick.runs);
        EXPECT_EQ(P(315), tick.output);
        EXPECT_EQ(State("LineSwitch"), tick.contact);
        EXPECT_EQ(form->drawing().Find(Name("ShapeInvert"))->visible, P(365) == 1);
    }
    Set({{428, 2380}});
    emulator->start(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return P(428) >= 2400; }, 2000));
    QSignalSpy more(emulator, &QTimer::timeout);
    ASSERT_TRUE(more.wait(1000));
    EXPECT_EQ(P(428), 2400);
    form->close();
    EXPECT_FALSE(emulator->isActive());
}

} // namespace quorvik::testing
