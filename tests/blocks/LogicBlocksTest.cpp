#include "blocks/BlockFixture.h"

#include <QCloseEvent>
#include <map>

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

TEST_F(LogicBlocksTest, TheTimerShowsItsSelectorsInTheSameTickAndCountsWhileItsWindowIsOpen)
{
    Open("FormTimer");
    auto *emulator = Find<QTimer>("TimerEmulator");
    emulator->setInterval(100'000);
    const std::tuple<std::map<int, std::int32_t>, bool, int> ticks[] = {
        {{{312, 50}, {428, 50}}, true, 1},
        {{{428, 60}}, true, 0},
        {{{311, 1}}, false, 1}, // held at zero
        {{{365, 1}}, true, 1},  // reset inverted
    };
    for (const auto &[values, runs, contact] : ticks) {
        for (const auto &[p, rawValue] : values)
            P(p) = rawValue;
        Tick();
        EXPECT_EQ(emulator->isActive(), runs) << P(428);
        EXPECT_EQ(State("LineSwitch"), contact) << P(428);
        EXPECT_EQ(form->drawing().Find(Name("ShapeInvert"))->visible, P(365) == 1);
    }
    emulator->start(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return P(428) > 0; }, 2000));
    form->close();
    QCloseEvent again;
    QCoreApplication::sendEvent(form, &again);
    EXPECT_FALSE(emulator->isActive());
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_TRUE(told.isEmpty()) << "it leaves once, however often it is closed";
    EXPECT_EQ(desk.forms.Count(), 1) << "a window that waits for its deletion is no open one";
}

} // namespace quorvik::testing
