#include "wizards/basic/FormWizardBasic.h"
#include "platform/Guard.h"
#include "wizards/OpenMentors.h"
#include "wizards/WizardDriver.h"
#include "wizards/basic/SpeedProfile.h"

#include <QTableWidget>

using namespace quorvik;
using namespace quorvik::testing;

namespace
{

constexpr int RegenerativeModel = 5;     // 174 A
constexpr int NonRegenerativeModel = 21; // 174 A

class FormWizardBasicTest : public ::testing::Test, protected WizardDriver<FormWizardBasic>
{
protected:
    void SetModel(int code)
    {
        desk.model.ParamTable[Param::DriveModel].Value = code;
        desk.model.RefreshDependentParams(Param::DriveModel);
    }

    /** Opens the window and answers what has no default, then goes back to the first page. */
    void OpenAnswered(const char *modeOption = "OptionOperatingMode(0)",
                      const char *feedback = "OptionFeedback(0)")
    {
        Open();
        NextUntil(2);
        Click(N(modeOption));
        NextUntil(3);
        const std::pair<const char *, const char *> entries[] = {{"TextMotorData(0)", "120"},
                                                                 {"TextMotorData(1)", "500"},
                                                                 {"TextMotorData(2)", "1750"},
                                                                 {"TextMotorData(3)", "4.00"}};
        for (const auto &[name, text] : entries)
            Type(N(name), N(text));
        if (N(modeOption) == N("OptionOperatingMode(1)"))
            Type(N("TextMotorData(4)"), N("4.00"));
        Next();
        if (form->CurrentStep() == 4)
            Click(N(feedback));
        while (form->CurrentStep() > 0)
            Back();
    }
};

} // namespace

TEST_F(FormWizardBasicTest, WalksThePagesOfTheModeInBothDirections)
{
    const struct {
        bool online;
        const char *mode;
        std::vector<int> steps;
    } rows[] = {
        {false, "OptionOperatingMode(0)", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {true, "OptionOperatingMode(0)", {0, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {false, "OptionOperatingMode(1)", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {true, "OptionOperatingMode(2)", {0, 2, 3, 6, 7, 8, 9, 10}},
        {false, "OptionOperatingMode(2)", {0, 1, 2, 3, 6, 7, 8, 9, 10}},
    };
    for (const auto &row : rows) {
        desk.online = row.online;
        OpenAnswered(row.mode, "OptionFeedback(2)");
        ExpectWalk(row.steps);
    }
}

TEST_F(FormWizardBasicTest, ShowsEveryTextInFull)
{
    OpenAnswered();
    for (int step = 0; step <= 10; ++step) {
        NextUntil(step);
        ExpectNothingCut();
    }
}

TEST_F(FormWizardBasicTest, AChangedRatedSpeedOverwritesTheMaximumSpeeds)
{
    OpenAnswered();
    NextUntil(5);
    Click(N("OptionMaxSpeed(1)"));
    Type(N("TextMaxSpeed(0)"), N("900"));
    Type(N("TextMaxSpeed(1)"), N("-300"));
    while (form->CurrentStep() > 3)
        Back();
    Type(N("TextMotorData(0)"), N("50"));
    Type(N("TextMotorData(2)"), N("1200"));
    NextUntil(5);
    EXPECT_EQ(Text(N("TextMaxSpeed(0)")), N("1200"));
    EXPECT_EQ(Text(N("TextMaxSpeed(1)")), N("-1200"));
    EXPECT_EQ(Find<QAbstractButton>(N("OptionMaxSpeed(0)"))->text(), N("Max Rated Motor Speed of 1200 RPM"));
    NextUntil(9);
    EXPECT_EQ(Caption(N("LabelCurrent(0)")), N("= 75 Amps"));
    // A text that is no number leaves the figure as it was.
    Type(N("TextCurrentLimit(0)"), N("x"));
    EXPECT_EQ(Caption(N("LabelCurrent(0)")), N("= 75 Amps"));
}

TEST_F(FormWizardBasicTest, TheRampOfTheFocusedTimeIsHighlighted)
{
    OpenAnswered();
    NextUntil(7);
    const std::pair<const char *, int> rows[] = {
        {"TextRunAccelDecel(1)", 1}, {"TextJogAccelDecel(3)", 3}, {"TextRunAccelDecel(2)", 2}};
    for (const auto &[box, ramp] : rows) {
        Find<QWidget>(N(box))->setFocus();
        EXPECT_EQ(Find<QLineEdit>(N(box))->selectedText(), Text(N(box)));
        for (int line = 0; line < SpeedProfile::LineCount; ++line)
            EXPECT_EQ(Find<LineAccelDecel>(N("LineAccelDecel(%1)").arg(line))->BorderWidth(),
                      line == ramp ? 2 : 1);
    }
}

TEST_F(FormWizardBasicTest, ButtonsAndHelpFollowThePage)
{
    OpenAnswered();
    for (int step = 0; step <= 10; ++step) {
        EXPECT_EQ(Find<QWidget>(N("CmdNav(2)"))->isEnabled(), step > 0);
        EXPECT_EQ(Find<QWidget>(N("CmdNav(3)"))->isEnabled(), step < 10);
        EXPECT_EQ(Find<QWidget>(N("CmdNav(4)"))->isEnabled(), step == 10);
        EXPECT_EQ(form->FinishEnabled(), step == 10);
        Click(N("CmdNav(0)"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
        ASSERT_EQ(desk.help.Topics.size(), 2 * (step + 1));
        EXPECT_EQ(desk.help.Topics[2 * step], desk.help.Topics[2 * step + 1]);
        if (step < 10) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_N, Qt::AltModifier);
            // A mnemonic presses the button for a moment.
            ASSERT_TRUE(QTest::qWaitFor([&] { return form->CurrentStep() == step + 1; }));
        }
    }
    EXPECT_EQ(desk.help.Topics[0], N("Basic Setup Mentor Introduction.htm"));
    EXPECT_EQ(desk.help.Topics[8], N("Basic Setup Mentor Velocity Feedback.htm"));
    EXPECT_EQ(desk.help.Topics[20], N("Basic Setup Mentor Finished.htm"));
}

TEST_F(FormWizardBasicTest, EnterGoesOnFromATextBoxAndFinishes)
{
    OpenAnswered();
    NextUntil(6);
    Type(N("TextRef(1)"), N("12.345"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(form->CurrentStep(), 7);
    EXPECT_EQ(Text(N("TextRef(1)")), N("12.35"));
    NextUntil(10);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(desk.model.Value(218), 1235);
}

TEST_F(FormWizardBasicTest, RefusesABadEntryWithItsMessageAndGoesThere)
{
    const struct {
        int step;
        const char *name;
        const char *text;
        const char *message;
    } rows[] = {
        {3, "TextMotorData(0)", "", "Please enter a numerical value for the Armature Current."},
        {3, "TextMotorData(0)", "34",
         "The valid Armature Current range for model SVR100-000 is:\r\n  Min: 35 Amps\r\n  Max: 174 Amps"},
        {3, "TextMotorData(1)", "x", "Please enter a numerical value for the Armature Voltage."},
        {3, "TextMotorData(3)", "", "Please enter a numerical value for the Base Speed Field Current."},
        {3, "TextMotorData(3)", "8.01",
         "The valid Base Speed Field Current range is:\r\n  Min: 0.00 Amps\r\n  Max: 8.00 Amps"},
        {3, "TextMotorData(2)", "0",
         "The valid Base Speed range for model SVR100-000 is:\r\n  Min: 1 RPM\r\n  Max: 9999 RPM"},
        {6, "TextRef(1)", "-", "Please enter a numerical value for the Reference 1."},
        {6, "TextRef(3)", "100.01",
         "The valid Reference 3 range for model SVR100-000 is:\r\n  Min: -100.00 %\r\n  Max: 100.00 %"},
        {6, "TextJogRef", "", "Please enter a numerical value for the Jog Reference."},
        {7, "TextRunAccelDecel(2)", "a", "Please enter a numerical value for the Rev Accel A."},
        {7, "TextJogAccelDecel(3)", "", "Please enter a numerical value for the Rev Decel B."},
        {9, "TextCurrentLimit(0)", "151",
         "The valid Positive I Limit range for model SVR100-000 is:\r\n  Min: 0.00 %\r\n  Max: 150.00 %"},
        {9, "TextCurrentLimit(1)", "1",
         "The valid Negative I Limit range for model SVR100-000 is:\r\n  Min: -150.00 %\r\n  Max: 0.00 %"},
    };
    SetModel(RegenerativeModel);
    OpenAnswered();
    for (const auto &row : rows) {
        NextUntil(row.step);
        const QString good = Text(N(row.name));
        Type(N(row.name), N(row.text));
        ExpectRefusal(N(row.message), N(row.name));
        Type(N(row.name), good);
    }
}

TEST_F(FormWizardBasicTest, RefusesMaximumSpeedsBeyondTheRatedSpeed)
{
    const struct {
        const char *name;
        const char *text;
        const char *refusal; ///< null where it passes
    } rows[] = {
        {"TextMaxSpeed(0)", "1751",
         "The valid Forward Max Speed range is:\r\n  Min: 0 RPM\r\n  Max: 1750 RPM"},
        {"TextMaxSpeed(0)", "-1", "The valid Forward Max Speed range is:\r\n  Min: 0 RPM\r\n  Max: 1750 RPM"},
        {"TextMaxSpeed(0)", "9E9",
         "The valid Forward Max Speed range is:\r\n  Min: 0 RPM\r\n  Max: 1750 RPM"},
        {"TextMaxSpeed(1)", "1", "The valid Reverse Max Speed range is:\r\n  Min: -1750 RPM\r\n  Max: 0 RPM"},
        {"TextMaxSpeed(1)", "-1751",
         "The valid Reverse Max Speed range is:\r\n  Min: -1750 RPM\r\n  Max: 0 RPM"},
        {"TextMaxSpeed(1)", "0", nullptr},
        {"TextMaxSpeed(0)", "0", nullptr},
        {"TextMaxSpeed(0)", "fast", nullptr},
    };
    OpenAnswered();
    for (const auto &row : rows) {
        NextUntil(5);
        Click(N("OptionMaxSpeed(1)"));
        Type(N(row.name), N(row.text));
        if (row.refusal == nullptr) {
            Next();
            EXPECT_EQ(form->CurrentStep(), 6) << row.text;
            Back();
        } else {
            ExpectRefusal(N(row.refusal), N(row.name));
        }
        // Choosing the rated speed again takes it back.
        Click(N("OptionMaxSpeed(0)"));
        EXPECT_EQ(Text(N("TextMaxSpeed(0)")), N("1750"));
        EXPECT_EQ(Text(N("TextMaxSpeed(1)")), N("-1750"));
    }
}

TEST_F(FormWizardBasicTest, RefusesATachometerThatGivesTooMuch)
{
    OpenAnswered("OptionOperatingMode(0)", "OptionFeedback(1)");
    NextUntil(3);
    Type(N("TextMotorData(2)"), N("2000"));
    NextUntil(4);
    ExpectRefusal(N("Please enter a numerical value for the Tach Rating."), N("TextTachRating"));
    Type(N("TextTachRating"), N("101"));
    ExpectRefusal(
        N("The motor speed and tach rating values entered yield a maximum\r\ntachometer voltage feedback of "
          "202V. This voltage\r\nexceeds the maximum rated tachometer input value of 200V. A lower "
          "rated\r\ntachometer must be used, or external scaling of the tachometer signal is\r\nrequired "
          "(simulating a lower rated tachometer). Change the Tachometer Rating\r\nto reflect the new "
          "lower rating."),
        N("TextTachRating"), MsgIcon::Information);
    Type(N("TextTachRating"), N("100"));
    EXPECT_EQ(Caption(N("LabelTachJumper(0)")), N("J5 = 100"));
    Next();
    EXPECT_EQ(form->CurrentStep(), 5);
}

TEST_F(FormWizardBasicTest, FieldCrossoverWantsAShuntFieldAndAnotherFeedback)
{
    Open();
    NextUntil(3);
    Click(N("OptionFieldType(1)"));
    EXPECT_FALSE(Find<QWidget>(N("TextMotorData(3)"))->isEnabled());
    Back();
    Click(N("OptionOperatingMode(1)"));
    Next();
    EXPECT_TRUE(Find<QAbstractButton>(N("OptionFieldType(0)"))->isChecked());
    EXPECT_FALSE(Find<QWidget>(N("OptionFieldType(1)"))->isEnabled());
    EXPECT_EQ(Caption(N("LabelMotorData(2)")), N("Top Speed"));
    Type(N("TextMotorData(0)"), N("120"));
    Type(N("TextMotorData(1)"), N("500"));
    Type(N("TextMotorData(2)"), N("2500"));
    Type(N("TextMotorData(3)"), N("2.00"));
    Type(N("TextMotorData(4)"), N("2.01"));
    ExpectRefusal(N("The Top Speed Field Current must be less than the Base Speed Field Current."),
                  N("TextMotorData(4)"));
    Type(N("TextMotorData(4)"), N("2.00"));
    Next();
    ASSERT_EQ(form->CurrentStep(), 4);
    EXPECT_FALSE(Find<QWidget>(N("OptionFeedback(0)"))->isEnabled());
    ExpectRefusal(N("Please select the desired feedback option"), {});
    Click(N("OptionFeedback(2)"));
    Next();
    EXPECT_EQ(form->CurrentStep(), 5);
}

TEST_F(FormWizardBasicTest, RefusesAnUndefinedModelUntilOneIsChosen)
{
    SetModel(0);
    Open();
    form->ChangeModel = [this] { SetModel(NonRegenerativeModel); };
    NextUntil(1);
    ExpectRefusal(N("Please select a valid drive model by pressing the Change... button."), {}, MsgIcon::None,
                  N("Quorvik"));
    Click(N("CommandChangeModel"));
    EXPECT_EQ(Caption(N("LabelDriveData(0)")), N("Model: SVN100-000"));
    EXPECT_EQ(Caption(N("LabelDriveData(1)")), N("Type: Non-regenerative"));
    EXPECT_EQ(Caption(N("LabelDriveData(2)")), N("Armature Amps: 174"));
    Next();
    EXPECT_EQ(form->CurrentStep(), 2);
}

TEST_F(FormWizardBasicTest, TheDriveTypeSwitchesWhatOnlyARegenerativeDriveDoes)
{
    for (const int model : {RegenerativeModel, NonRegenerativeModel}) {
        const bool regenerative = model == RegenerativeModel;
        SetModel(model);
        OpenAnswered();
        NextUntil(8);
        if (regenerative) {
            Click(N("OptionStopMode(1)"));
            while (form->CurrentStep() > 3)
                Back();
            NextUntil(8);
        }
        EXPECT_TRUE(Find<QAbstractButton>(N("OptionStopMode(0)"))->isChecked());
        EXPECT_EQ(Find<QWidget>(N("OptionStopMode(1)"))->isEnabled(), regenerative);
        Back();
        EXPECT_EQ(Find<QWidget>(N("TextRunAccelDecel(2)"))->isEnabled(), regenerative);
        EXPECT_EQ(Find<QWidget>(N("TextJogAccelDecel(3)"))->isEnabled(), regenerative);
        EXPECT_TRUE(Find<QWidget>(N("TextJogAccelDecel(1)"))->isEnabled());
        for (int line = 0; line < 7; ++line)
            EXPECT_EQ(Find<QWidget>(N("LineAccelDecel(%1)").arg(line))->isVisible(),
                      regenerative || (line != 2 && line != 3 && line != 6));
        NextUntil(9);
        EXPECT_EQ(Find<QWidget>(N("TextCurrentLimit(1)"))->isEnabled(), regenerative);
        EXPECT_EQ(Caption(N("LabelCurrent(1)")), N("= -180 Amps"));
        NextUntil(10);
    }
}

TEST_F(FormWizardBasicTest, TorqueModeHasNoJog)
{
    OpenAnswered("OptionOperatingMode(2)");
    NextUntil(6);
    EXPECT_EQ(Caption(N("LabelInternalReferences(0)")), N("Set internal torque references, if required."));
    EXPECT_FALSE(Find<QWidget>(N("TextJogRef"))->isEnabled());
    Next();
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(Find<QWidget>(N("TextJogAccelDecel(%1)").arg(i))->isEnabled());
}

TEST_F(FormWizardBasicTest, CancelLeavesNoTraceFromAnyPage)
{
    const auto before = Snapshot(desk.model);
    for (int step = 0; step <= 10; ++step) {
        OpenAnswered();
        NextUntil(step);
        if (step % 2 == 0)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        else
            Click(N("CmdNav(1)"));
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(Snapshot(desk.model), before) << step;
    }
    EXPECT_TRUE(desk.asker.Shown.isEmpty());
}

TEST_F(FormWizardBasicTest, FinishesOnceTheDriveStandsStillAndRemindsOfTheJumpers)
{
    desk.online = true;
    OpenAnswered("OptionOperatingMode(0)", "OptionFeedback(1)");
    NextUntil(4);
    Type(N("TextTachRating"), N("50"));
    NextUntil(10);
    const auto *table = Find<QTableWidget>(N("TableWrites"));
    const int rows = table->rowCount();
    Click(N("CheckSaveDriveParameters"));
    EXPECT_EQ(table->rowCount(), rows + 1);
    EXPECT_EQ(table->item(0, 3)->text(), N("120 Amps"));

    desk.model.ParamTable[Param::DriveState].Value = 1;
    desk.asker.Expect(N("Sarvex must be in the Stop mode for the Mentor to continue!"));
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Critical);
    EXPECT_EQ(form->CurrentStep(), 10);
    EXPECT_NE(desk.model.Value(123), 120);

    desk.model.ParamTable[Param::DriveState].Value = 8;
    desk.asker.Expect(N("jumpers"));
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().text,
              N("Tachometer feedback jumpers must be set as follows:\r\n   J5 = "
                "80\r\n   J6 = 0\r\n   J7 = 8\r\n"));
    EXPECT_EQ(desk.asker.Shown.last().title, N("Reminder"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(desk.model.Value(197), 1);
    EXPECT_EQ(desk.model.Value(Param::SaveParameters), 1);
    EXPECT_FALSE(desk.model.DriveModified);
}

TEST_F(FormWizardBasicTest, AFailedConversionIsToldAndKeepsTheLastPage)
{
    QStringList told;
    SetFailureReporter([&told](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    OpenAnswered();
    NextUntil(5);
    Click(N("OptionMaxSpeed(1)"));
    Type(N("TextMaxSpeed(0)"), N("fast"));
    NextUntil(10);
    EXPECT_TRUE(told.isEmpty());
    EXPECT_TRUE(Caption(N("LabelPlanFailure")).startsWith(N("Forward Max Speed: ")));
    const auto before = Snapshot(desk.model);
    Finish();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith(N("Forward Max Speed: ")));
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->CurrentStep(), 10);
    EXPECT_EQ(Snapshot(desk.model), before);
    SetFailureReporter([](const RuntimeFailure &failure) { ADD_FAILURE() << failure.what(); });
}

TEST_F(FormWizardBasicTest, DoesNotOpenWithoutADriveModel)
{
    SetModel(0);
    const struct {
        bool online;
        const char *text;
    } rows[] = {
        {true,
         "Invalid Drive Model. Verify CT ID board is correctly\r\ninstalled on Trigger Board and retry."},
        {false, "Invalid Drive Model. Choose a valid drive model under\r\nTools|Select Drive Model."},
    };
    for (const auto &row : rows) {
        desk.online = row.online;
        desk.asker.Expect(N(row.text));
        OpenBasicSetup(desk.desk, nullptr, {});
        EXPECT_EQ(desk.asker.Shown.last().text, N(row.text));
        EXPECT_EQ(desk.asker.Shown.last().title, N("Quorvik Mentor"));
    }
}
