#include "blocks/BlockFixture.h"

namespace quorvik::testing
{

using SignalPathTest = BlockFixture;

TEST_F(SignalPathTest, WhatMovesFollowsItsParameters)
{
    struct Movement {
        const char *form;
        int member;
        const char *part;
        int param;
        std::initializer_list<int> states; ///< for raw values from 0 on
        Values others = {};
    };
    const Movement movements[] = {
        {"FormDigitalInputs", 3, "Line6", 134, {0, 1}},
        {"FormAnalogInputs", 5, "LineType", 37, {1, 0}},
        {"FormAnalogInputs", 5, "LineInvert", 348, {0, 1}},
        {"FormAnalogInputs", 5, "CurvePolarity", 32, {0, 1}},
        {"FormAuxPI", 0, "LimiterPolarity", 358, {0, 1}},
        {"FormFreqInput", 0, "LineSign", 349, {0, 1}},
        {"FormRelayOutputs", 2, "LineRelay", 166, {1, 0}},
        {"FormRelayOutputs", 2, "LineAbs", 73, {0, 1}},
        {"FormAnalogOutputs", 2, "LineAbs", 88, {0, 1}},
        {"FormFreqDigOutput", 0, "LineSwitch", 90, {0, 1}},
        {"FormVelocityLoop", 0, "LineSwitch", 203, {1, 0}},
        {"FormVelocityLoop", 0, "ShapeTriSwitch", 197, {0, 1, 2, 2}},
        {"FormCurrentLoop", 0, "LineDriveMode", 110, {0, 1}},
        {"FormCurrentLoop", 0, "LineDriveMode", 109, {0, -1}},
        {"FormCurrentLoop", 0, "ShapeSwitch", 422, {0, 1, 0, 1, 0}},
        {"FormCurrentLoop", 0, "ShapeSwitch2", 104, {0, 1}},
        {"FormCurrentLoop", 0, "LineLoopEnable", 212, {0, 1}},
        {"FormCurrentLoop", 0, "LinePosFoldback", 252, {1, 5}},
        {"FormCurrentLoop", 0, "LinePosILimit", 98, {1, 1, 5}, {{99, 2}, {111, 0}}},
        {"FormCurrentLoop", 0, "LineNegILimit", 98, {5, 1, 1}, {{100, -2}, {111, -2}}},
        {"FormSetpoints", 0, "LineSwitch", 243, {0, 1}},
        {"FormSetpoints", 0, "LineRefEnable", 422, {1, 0, 1, 0}},
        {"FormSetpoints", 0, "ShapeQuadSwitch", 216, {0, 1}},
        {"FormSetpoints", 0, "ShapeQuadSwitch", 216, {2, 3}, {{215, 1}}},
        {"FormSetpoints", 0, "LineInvert", 222, {0, 1}},
        {"FormAccelDecel", 0, "LineRampBypass", 305, {0, 1}},
        {"FormAccelDecel", 0, "LineRampSel", 306, {0, 1}},
        {"FormAccelDecel", 0, "LineRampEnable", 422, {1, 0, 0, 0, 0, 1}},
        {"FormSetpointSum", 0, "LineSwitch", 422, {1, 0, 1, 0, 1}},
        {"FormSetpointSum", 0, "LineInvertA", 233, {0, 1}},
        {"FormSetpointSum", 0, "LineInvertB", 235, {0, 1}},
        {"FormSetpointSum", 0, "LineInvertC", 237, {0, 1}},
        {"FormMOP", 0, "LineReset", 322, {0, 1}},
        {"FormFieldCrossover", 0, "ShapeSwitch", 423, {0, 1}},
        {"FormZeroSpeedLogic", 0, "LineSwitch", 110, {0, 1}},
        {"FormZeroSpeedLogic", 0, "LineSwitch", 109, {1, 0}, {{110, -2}}},
        {"FormStartStopLogic", 0, "LineLogicSelect", 245, {0, 1, -1}},
        {"FormStartStopLogic", 0, "LineHold", 245, {0, 1, -1}},
        {"FormStartStopLogic", 0, "LatchRun", 242, {0, 1}},
        {"FormStartStopLogic", 0, "LatchJog", 243, {0, 1}},
    };
    for (const Movement &movement : movements) {
        SCOPED_TRACE(::testing::Message() << movement.part << " of " << movement.form);
        Open(movement.form, movement.member);
        Set(movement.others);
        EXPECT_GT(ReadFlag(movement.param), 0) << "nobody would fetch it from the drive";
        std::int32_t rawValue = 0;
        for (const int state : movement.states) {
            Set({{movement.param, rawValue}});
            Tick();
            EXPECT_EQ(State(movement.part), state) << "at " << rawValue;
            ++rawValue;
        }
        Set({{movement.param, 0}});
        Close();
        EXPECT_EQ(ReadFlags(), before) << "it would go on being fetched";
    }
}

TEST_F(SignalPathTest, AClickStepsTheReferencesAroundInBothBitsAtOnce)
{
    // The factory's digital inputs hold both bits read only.
    Set({{5, 0}, {6, 0}});
    Open("FormSetpoints");
    const auto bits = [this] { return std::pair(P(215), P(216)); };
    const std::pair<std::int32_t, std::int32_t> steps[] = {{0, 1}, {1, 0}, {1, 1}, {0, 0}, {0, 1}};
    for (const auto &step : steps) {
        Click("Image1(1)");
        EXPECT_EQ(bits(), step);
        Tick();
    }
    EXPECT_EQ(Find("Image1(1)")->cursor().shape(), Qt::PointingHandCursor);
    for (const int refused : {215, 216}) {
        desk.document.FileModified = false;
        Record(refused).Attributes ^= Attr::ReadOnly;
        Tick();
        EXPECT_EQ(Find("Image1(1)")->cursor().shape(), Qt::ForbiddenCursor);
        Click("Image1(1)");
        QTest::keyClick(Find("Image1(1)"), Qt::Key_Space);
        EXPECT_EQ(bits(), steps[4]);
        EXPECT_FALSE(desk.document.FileModified);
        Record(refused).Attributes ^= Attr::ReadOnly;
    }
}

TEST_F(SignalPathTest, ADoubleClickStepsItsSelectorAndASingleOneDoesNot)
{
    const struct {
        const char *form;
        const char *area;
        int param;
        std::initializer_list<std::int32_t> rawValues; ///< from one double click to the next
    } selectors[] = {
        {"FormVelocityLoop", "Image1", 203, {0, 1, 0}},
        {"FormVelocityLoop", "Image2", 197, {0, 1, 2, 0}},
        {"FormFreqDigOutput", "Image1", 90, {0, 1, 0}},
        {"FormAccelDecel", "Image1(0)", 305, {0, 1, 0}},
        {"FormAccelDecel", "Image1(1)", 306, {0, 1, 0}},
        {"FormAccelDecel", "Image1(2)", 226, {50, 1, 1}}, // a time never reads "True"
        {"FormCurrentLoop", "Image1", 104, {0, 1, 0}},
        {"FormFieldCrossover", "Image1", 423, {0, 1, 0}},
    };
    for (const auto &selector : selectors) {
        SCOPED_TRACE(::testing::Message() << selector.area << " of " << selector.form);
        Open(selector.form);
        Set({{selector.param, *selector.rawValues.begin()}});
        for (const std::int32_t rawValue : selector.rawValues) {
            Tick();
            QTest::mouseClick(Find(selector.area), Qt::LeftButton);
            EXPECT_EQ(P(selector.param), rawValue);
            QTest::mouseDClick(Find(selector.area), Qt::LeftButton);
            EXPECT_EQ(Record(selector.param).WriteFlag, WriteState::Queued);
        }
        Close();
    }
}

TEST_F(SignalPathTest, AClickReadsWhatTheWindowShows)
{
    Open("FormFreqDigOutput");
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(Find("Image1"), Qt::Key_Return);
    EXPECT_EQ(P(90), 1) << "no tick between the two";
}

} // namespace quorvik::testing
