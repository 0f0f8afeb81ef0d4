#include "blocks/BlockFixture.h"

#include "blocks/diagram/ClickArea.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace quorvik::testing
{

namespace
{

class LogicBlocksTest : public BlockFixture
{
protected:
    using Values = std::initializer_list<std::pair<int, std::int32_t>>;

    void Set(const Values &values)
    {
        for (const auto &[number, rawValue] : values)
            desk.model.ParamTable[number].Value = rawValue;
    }

    /** Takes the factory's digital inputs off the reference bits, which they would hold read only. */
    void Unlink() { Set({{5, 0}, {6, 0}}); }

    ClickArea *Area(const char *name) const { return Find<ClickArea>(QLatin1String(name)); }
};

TEST_F(LogicBlocksTest, WhatMovesFollowsItsParameters)
{
    struct Movement {
        const char *form;
        Values values;
        const char *part;
        int state;
    };
    const Movement movements[] = {
        {"FormSetpoints", {{243, 0}}, "LineSwitch", 0},
        {"FormSetpoints", {{243, 1}}, "LineSwitch", 1},
        {"FormSetpoints", {{422, 0}}, "LineRefEnable", 1},
        {"FormSetpoints", {{422, 1}}, "LineRefEnable", 0},
        {"FormSetpoints", {{422, 2}}, "LineRefEnable", 1},
        {"FormSetpoints", {{422, 3}}, "LineRefEnable", 0},
        {"FormSetpoints", {{215, 0}, {216, 1}}, "ShapeQuadSwitch", 1},
        {"FormSetpoints", {{215, 1}, {216, 0}}, "ShapeQuadSwitch", 2},
        {"FormSetpoints", {{215, 1}, {216, 1}}, "ShapeQuadSwitch", 3},
        {"FormSetpoints", {{222, 1}}, "LineInvert", 1},
        {"FormAccelDecel", {{305, 0}}, "LineRampBypass", 0},
        {"FormAccelDecel", {{305, 1}}, "LineRampBypass", 1},
        {"FormAccelDecel", {{306, 0}}, "LineRampSel", 0},
        {"FormAccelDecel", {{306, 1}}, "LineRampSel", 1},
        {"FormAccelDecel", {{422, 0}}, "LineRampEnable", 1},
        {"FormAccelDecel", {{422, 1}}, "LineRampEnable", 0},
        {"FormAccelDecel", {{422, 4}}, "LineRampEnable", 0},
        {"FormAccelDecel", {{422, 5}}, "LineRampEnable", 1},
        {"FormSetpointSum", {{422, 1}}, "LineSwitch", 0},
        {"FormSetpointSum", {{422, 3}}, "LineSwitch", 0},
        {"FormSetpointSum", {{422, 4}}, "LineSwitch", 1},
        {"FormSetpointSum", {{233, 1}, {235, 0}, {237, 1}}, "LineInvertA", 1},
        {"FormSetpointSum", {{233, 1}, {235, 0}, {237, 1}}, "LineInvertB", 0},
        {"FormSetpointSum", {{233, 0}, {235, 0}, {237, 1}}, "LineInvertC", 1},
        {"FormMOP", {{322, 0}}, "LineReset", 0},
        {"FormMOP", {{322, 1}}, "LineReset", 1},
        {"FormFieldCrossover", {{423, 0}}, "ShapeSwitch", 0},
        {"FormFieldCrossover", {{423, 1}}, "ShapeSwitch", 1},
        {"FormZeroSpeedLogic", {{109, 0}, {110, 0}}, "LineSwitch", 0},
        {"FormZeroSpeedLogic", {{109, 0}, {110, 1}}, "LineSwitch", 1},
        {"FormZeroSpeedLogic", {{109, 1}, {110, 0}}, "LineSwitch", 1},
        {"FormZeroSpeedLogic", {{109, 1}, {110, -2}}, "LineSwitch", 0},
        {"FormStartStopLogic", {{245, 0}}, "LineLogicSelect", 0},
        {"FormStartStopLogic", {{245, 1}}, "LineLogicSelect", 1},
        {"FormStartStopLogic", {{245, 2}}, "LineLogicSelect", -1},
    };
    for (const Movement &movement : movements) {
        SCOPED_TRACE(::testing::Message()
                     << movement.part << " of " << movement.form << " at " << movement.values.begin()->first
                     << " = " << movement.values.begin()->second);
        Open(movement.form);
        Set(movement.values);
        Tick();
        EXPECT_EQ(State(movement.part), movement.state);
        Close();
    }
}

TEST_F(LogicBlocksTest, AClickStepsTheReferencesAroundInBothBitsAtOnce)
{
    Unlink();
    Open("FormSetpoints");
    const std::pair<std::int32_t, std::int32_t> steps[] = {{0, 1}, {1, 0}, {1, 1}, {0, 0}, {0, 1}};
    for (const auto &[msb, lsb] : steps) {
        QTest::mouseClick(Area("Image1(1)"), Qt::LeftButton);
        EXPECT_EQ(std::pair(desk.model.Value(215), desk.model.Value(216)), std::pair(msb, lsb));
        Tick();
    }
}

TEST_F(LogicBlocksTest, EitherBitRefusedRefusesTheWholeStep)
{
    Unlink();
    for (const int refused : {215, 216}) {
        Open("FormSetpoints");
        Set({{215, 0}, {216, 1}});
        const std::int32_t attributes = desk.model.ParamTable[refused].Attributes;
        desk.model.ParamTable[refused].Attributes |= Attr::ReadOnly;
        Tick();
        EXPECT_EQ(Area("Image1(1)")->cursor().shape(), Qt::ForbiddenCursor);
        QTest::mouseClick(Area("Image1(1)"), Qt::LeftButton);
        EXPECT_EQ(desk.model.Value(215), 0);
        EXPECT_EQ(desk.model.Value(216), 1);
        EXPECT_FALSE(desk.model.FileModified);
        desk.model.ParamTable[refused].Attributes = attributes;
        Close();
    }
}

TEST_F(LogicBlocksTest, ADoubleClickFlipsItsRow)
{
    struct Flip {
        const char *form;
        const char *area;
        int param;
        std::int32_t rawBefore;
        std::int32_t rawAfter;
    };
    const Flip flips[] = {
        {"FormAccelDecel", "Image1(0)", 305, 0, 1},
        {"FormAccelDecel", "Image1(0)", 305, 1, 0},
        {"FormAccelDecel", "Image1(1)", 306, 0, 1},
        // A time never reads "True".
        {"FormAccelDecel", "Image1(2)", 226, 50, 1},
        {"FormAccelDecel", "Image1(2)", 226, 1, 1},
        {"FormFieldCrossover", "Image1", 423, 0, 1},
        {"FormFieldCrossover", "Image1", 423, 1, 0},
    };
    for (const Flip &flip : flips) {
        SCOPED_TRACE(::testing::Message() << flip.area << " of " << flip.form << " from " << flip.rawBefore);
        Open(flip.form);
        Set({{flip.param, flip.rawBefore}});
        Tick();
        QTest::mouseDClick(Area(flip.area), Qt::LeftButton);
        EXPECT_EQ(desk.model.Value(flip.param), flip.rawAfter);
        EXPECT_EQ(desk.model.ParamTable[flip.param].WriteFlag, WriteState::Queued);
        Close();
    }
}

TEST_F(LogicBlocksTest, AStopOnlySelectorStaysWhileTheDriveRuns)
{
    Open("FormFieldCrossover");
    Set({{423, 0}, {422, 1}});
    Tick();
    QTest::mouseDClick(Area("Image1"), Qt::LeftButton);
    EXPECT_EQ(desk.model.Value(423), 0);
    EXPECT_EQ(Area("Image1")->cursor().shape(), Qt::ForbiddenCursor);
}

TEST_F(LogicBlocksTest, OnlyTheSelectorsOfADrawingAreClickable)
{
    const std::pair<const char *, int> areas[] = {{"FormSetpointSum", 0}, {"FormMOP", 0},
                                                  {"FormMinMax", 0},      {"FormThresholds", 0},
                                                  {"FormAuxPI", 0},       {"FormZeroSpeedLogic", 0},
                                                  {"FormSetpoints", 1},   {"FormAccelDecel", 3}};
    for (const auto &[name, count] : areas) {
        Open(name);
        EXPECT_EQ(form->findChildren<ClickArea *>().size(), count) << name;
        Close();
    }
}

TEST_F(LogicBlocksTest, TheThresholdSwitchHasTwoEdges)
{
    struct Step {
        std::int32_t input;
        std::int32_t threshold;
        std::int32_t hysteresis;
        bool on;
    };
    const Step steps[] = {
        {110, 100, 10, false},
        {111, 100, 10, true},
        {91, 100, 10, true},
        {90, 100, 10, false},
        {95, 100, 10, false},
        {-111, 100, 10, true},
        {-90, 100, 10, false},
        // More hysteresis than threshold lets go from any input at the next tick.
        {500, 100, 200, true},
        {500, 100, 200, false},
        {500, 100, 200, true},
    };
    for (const auto &[member, base] : {std::pair(0, 177), std::pair(1, 183)}) {
        Open("FormThresholds", member);
        for (const Step &step : steps) {
            Set({{base, step.input}, {base + 1, step.threshold}, {base + 2, step.hysteresis}});
            Tick();
            EXPECT_EQ(State("LineSwitch"), step.on ? 0 : 1)
                << "member " << member << " input " << step.input << " hysteresis " << step.hysteresis;
        }
        Close();
    }
}

TEST_F(LogicBlocksTest, TheLinkedRowOfMinMaxMovesItsReadInterest)
{
    const std::vector<int> before = ReadFlags();
    Open("FormMinMax");
    EXPECT_EQ(ReadFlag(193), before.at(193) + 1);
    Set({{412, 200}, {200, 698}});
    Tick();
    EXPECT_EQ(ReadFlag(193), before.at(193));
    EXPECT_EQ(ReadFlag(200), before.at(200) + 1);
    EXPECT_EQ(Label1(5)->text(), QStringLiteral("(200) Moto..."));
    EXPECT_EQ(Text1(5)->text(), QStringLiteral("698 RPM"));
    // A row of its own selected counts twice.
    Set({{412, 413}});
    Tick();
    EXPECT_EQ(ReadFlag(413), before.at(413) + 2);
    Close();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(LogicBlocksTest, ZeroSpeedLogicKeepsTheDriveModePolled)
{
    Open("FormZeroSpeedLogic");
    EXPECT_EQ(ReadFlag(109), 1);
    EXPECT_EQ(ReadFlag(110), 1);
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
    EXPECT_EQ(Label1(39)->text(), QStringLiteral("(405) Destination 20"));
}

class TimerTest : public LogicBlocksTest
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
    EXPECT_TRUE(emulator->isActive());
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
