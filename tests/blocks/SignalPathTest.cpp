#include "blocks/BlockFixture.h"

#include "blocks/diagram/ClickArea.h"

namespace quorvik::testing
{

namespace
{

using SignalPathTest = BlockFixture;

struct Movement {
    const char *form;
    int member;
    int param;
    std::int32_t rawValue;
    const char *part;
    int state;
};

TEST_F(SignalPathTest, WhatMovesFollowsItsParameter)
{
    const Movement movements[] = {
        {"FormDigitalInputs", 3, 134, 0, "Line6", 0},
        {"FormDigitalInputs", 3, 134, 1, "Line6", 1},
        {"FormAnalogInputs", 5, 37, 0, "LineType", 1},
        {"FormAnalogInputs", 5, 37, 1, "LineType", 0},
        {"FormAnalogInputs", 5, 348, 1, "LineInvert", 1},
        {"FormFreqInput", 0, 349, 1, "LineSign", 1},
        {"FormRelayOutputs", 2, 166, 0, "LineRelay", 1},
        {"FormRelayOutputs", 2, 166, 1, "LineRelay", 0},
        {"FormRelayOutputs", 2, 73, 1, "LineAbs", 1},
        {"FormAnalogOutputs", 2, 88, 1, "LineAbs", 1},
        {"FormFreqDigOutput", 0, 90, 0, "LineSwitch", 0},
        {"FormFreqDigOutput", 0, 90, 1, "LineSwitch", 1},
        {"FormVelocityLoop", 0, 203, 0, "LineSwitch", 1},
        {"FormVelocityLoop", 0, 203, 1, "LineSwitch", 0},
        {"FormVelocityLoop", 0, 197, 0, "ShapeTriSwitch", 0},
        {"FormVelocityLoop", 0, 197, 1, "ShapeTriSwitch", 1},
        {"FormVelocityLoop", 0, 197, 2, "ShapeTriSwitch", 2},
        {"FormVelocityLoop", 0, 197, 3, "ShapeTriSwitch", 2},
    };
    for (const Movement &movement : movements) {
        SCOPED_TRACE(::testing::Message()
                     << movement.part << " of " << movement.form << " at " << movement.rawValue);
        Open(movement.form, movement.member);
        desk.model.ParamTable[movement.param].Value = movement.rawValue;
        Tick();
        EXPECT_EQ(State(movement.part), movement.state);
        Close();
    }
}

TEST_F(SignalPathTest, ADoubleClickStepsItsSelectorAndASingleOneDoesNot)
{
    Open("FormVelocityLoop");
    auto *gains = Find<ClickArea>(QStringLiteral("Image1"));
    auto *feedback = Find<ClickArea>(QStringLiteral("Image2"));
    QTest::mouseClick(gains, Qt::LeftButton);
    EXPECT_EQ(desk.model.Value(203), 0);
    for (const std::int32_t expected : {1, 0}) {
        QTest::mouseDClick(gains, Qt::LeftButton);
        EXPECT_EQ(desk.model.Value(203), expected);
        Tick();
    }
    for (const std::int32_t expected : {1, 2, 0}) {
        QTest::keyClick(feedback, Qt::Key_Return);
        EXPECT_EQ(desk.model.Value(197), expected);
        EXPECT_EQ(desk.model.ParamTable[197].WriteFlag, WriteState::Queued);
    }
}

TEST_F(SignalPathTest, AClickReadsWhatTheWindowShows)
{
    Open("FormFreqDigOutput");
    auto *mode = Find<ClickArea>(QStringLiteral("Image1"));
    QTest::mouseDClick(mode, Qt::LeftButton);
    QTest::mouseDClick(mode, Qt::LeftButton);
    EXPECT_EQ(desk.model.Value(90), 1) << "no tick between the two";
    Tick();
    QTest::mouseDClick(mode, Qt::LeftButton);
    EXPECT_EQ(desk.model.Value(90), 0);
}

TEST_F(SignalPathTest, ARefusedClickChangesNothingAndThePointerSaysSo)
{
    Open("FormVelocityLoop");
    auto *feedback = Find<ClickArea>(QStringLiteral("Image2"));
    EXPECT_EQ(feedback->cursor().shape(), Qt::PointingHandCursor);
    desk.model.ParamTable[Param::DriveState].Value = 1;
    Tick();
    EXPECT_EQ(feedback->cursor().shape(), Qt::ForbiddenCursor);
    QTest::mouseDClick(feedback, Qt::LeftButton);
    QTest::keyClick(feedback, Qt::Key_Space);
    EXPECT_EQ(desk.model.Value(197), 0);
    EXPECT_FALSE(desk.model.FileModified);
}

TEST_F(SignalPathTest, TerminalsAreThoseOfTheMember)
{
    const std::tuple<int, const char *, const char *, const char *> relays[] = {
        {1, "25", "26", "27"}, {2, "28", "29", "30"}, {3, "54", "55", "56"}};
    for (const auto &[member, open, closed, wiper] : relays) {
        Open("FormRelayOutputs", member);
        EXPECT_EQ(Find<QLabel>(QStringLiteral("LabelNO"))->text(), QLatin1String(open));
        EXPECT_EQ(Find<QLabel>(QStringLiteral("LabelNC"))->text(), QLatin1String(closed));
        EXPECT_EQ(Find<QLabel>(QStringLiteral("LabelWiper"))->text(), QLatin1String(wiper));
        Close();
    }
    for (const int member : {1, 2}) {
        Open("FormAnalogOutputs", member);
        EXPECT_EQ(Find<QLabel>(QStringLiteral("LabelOutput"))->text().toInt(), 20 + member);
        EXPECT_EQ(Find<QLabel>(QStringLiteral("LabelCom"))->text().toInt(), 22 + member);
        Close();
    }
}

} // namespace

} // namespace quorvik::testing
