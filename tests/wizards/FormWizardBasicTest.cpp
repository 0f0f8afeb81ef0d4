#include "wizards/basic/FormWizardBasic.h"
#include "wizards/OpenMentors.h"
#include "wizards/WizardDriver.h"
#include "wizards/basic/SpeedProfile.h"

namespace quorvik::testing
{

constexpr int RegenerativeModel = 5;     // 174 A
constexpr int NonRegenerativeModel = 21; // 174 A

class FormWizardBasicTest : public WizardDriver<FormWizardBasic>
{
protected:
    void SetModel(int code)
    {
        P(Param::DriveModel) = code;
        desk.table.RefreshDependentParams(Param::DriveModel);
    }

    /** Opens the window and answers what has no default, then goes back to the first page. */
    void OpenAnswered(OperatingMode mode = StandardVelocity, int feedback = ArmatureFeedback)
    {
        Open();
        GoTo(2);
        Click(ControlName("OptionOperatingMode", mode));
        GoTo(3);
        TypeAll("TextMotorData", {"120", "500", "1750", "4.00"});
        if (mode == FieldCrossover)
            Type("TextMotorData(4)", "4.00");
        Next();
        if (form->CurrentStep() == 4)
            Click(ControlName("OptionFeedback", feedback));
        GoTo(0);
    }
};

TEST_F(FormWizardBasicTest, WalksThePagesOfTheModeInBothDirections)
{
    const std::tuple<bool, OperatingMode, std::vector<int>> rows[] = {
        {false, StandardVelocity, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {true, StandardVelocity, {0, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {true, Torque, {0, 2, 3, 6, 7, 8, 9, 10}},
    };
    for (const auto &[online, mode, steps] : rows) {
        desk.table.SetPortOpen(online);
        OpenAnswered(mode, EncoderFeedback);
        ExpectWalk(steps);
    }
}

TEST_F(FormWizardBasicTest, EachPageIsWholeAndCancelledWithoutATrace)
{
    for (int step = 0; step <= 10; ++step) {
        OpenAnswered();
        GoTo(step);
        Click("CmdNav(0)");
        ExpectWholePageAndCancel(step % 2 == 0);
    }
    EXPECT_EQ(QSet<QString>(desk.help.Topics.begin(), desk.help.Topics.end()).size(), 11);
}

TEST_F(FormWizardBasicTest, AChangedRatedSpeedOverwritesTheMaximumSpeeds)
{
    OpenAnswered();
    GoTo(5);
    Click("OptionMaxSpeed(1)");
    Type("TextMaxSpeed(0)", "900");
    Type("TextMaxSpeed(1)", "-300");
    GoTo(3);
    Type("TextMotorData(0)", "50");
    Type("TextMotorData(2)", "1200");
    GoTo(5);
    EXPECT_EQ(Text("TextMaxSpeed(0)"), "1200");
    EXPECT_EQ(Text("TextMaxSpeed(1)"), "-1200");
    EXPECT_EQ(Text("OptionMaxSpeed(0)"), "Max Rated Motor Speed of 1200 RPM");
    Type("TextMaxSpeed(0)", "900");
    Click("OptionMaxSpeed(0)");
    EXPECT_EQ(Text("TextMaxSpeed(0)"), "1200");
    GoTo(9);
    EXPECT_EQ(Text("LabelCurrent(0)"), "= 75 Amps");
    // A text that is no number leaves the figure as it was.
    Type("TextCurrentLimit(0)", "x");
    EXPECT_EQ(Text("LabelCurrent(0)"), "= 75 Amps");
}

TEST_F(FormWizardBasicTest, KeysGoOnFormatTheTextAndFinish)
{
    OpenAnswered();
    GoTo(6);
    Find("TextJogRef")->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), Find("CmdNav(3)"));
    Type("TextRef(1)", "12.345");
    Press(Qt::Key_Return);
    EXPECT_EQ(form->CurrentStep(), 7);
    EXPECT_EQ(Text("TextRef(1)"), "12.35");
    GoTo(10);
    Press(Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(P(218), 1235);
}

TEST_F(FormWizardBasicTest, RefusesABadEntryWithItsMessageAndGoesThere)
{
    const Name forward = OutOfRange("Forward Max Speed", "0 RPM", "1750 RPM");
    // The message is empty where the entry passes.
    const std::tuple<int, const char *, const char *, Name> rows[] = {
        {3, "TextMotorData(0)", "34", OutOfRange("Armature Current", "35 Amps", "174 Amps", true)},
        {3, "TextMotorData(1)", "x", NoNumber("Armature Voltage")},
        {3, "TextMotorData(3)", "", NoNumber("Base Speed Field Current")},
        {3, "TextMotorData(3)", "8.01", OutOfRange("Base Speed Field Current", "0.00 Amps", "8.00 Amps")},
        {3, "TextMotorData(2)", "0", OutOfRange("Base Speed", "1 RPM", "9999 RPM", true)},
        {5, "TextMaxSpeed(0)", "1751", forward},
        {5, "TextMaxSpeed(0)", "9E9", forward},
        {5, "TextMaxSpeed(1)", "-1751", OutOfRange("Reverse Max Speed", "-1750 RPM", "0 RPM")},
        {5, "TextMaxSpeed(1)", "0", ""},
        {5, "TextMaxSpeed(0)", "0", ""},
        {6, "TextRef(3)", "100.01", OutOfRange("Reference 3", "-100.00 %", "100.00 %", true)},
        {6, "TextJogRef", "", NoNumber("Jog Reference")},
        {7, "TextJogAccelDecel(3)", "", NoNumber("Rev Decel B")},
        {9, "TextCurrentLimit(0)", "151", OutOfRange("Positive I Limit", "0.00 %", "150.00 %", true)},
        {9, "TextCurrentLimit(1)", "1", OutOfRange("Negative I Limit", "-150.00 %", "0.00 %", true)},
    };
    SetModel(RegenerativeModel);
    OpenAnswered();
    for (const auto &[step, name, text, message] : rows) {
        SCOPED_TRACE(text);
        GoTo(step);
        if (step == 5)
            Click("OptionMaxSpeed(1)");
        const std::string good = Text(name);
        Type(name, text);
        if (!message.isEmpty())
            ExpectRefusal(message, name);
        else
            GoTo(step + 1);
        GoTo(step);
        Type(name, good.c_str());
    }
}

TEST_F(FormWizardBasicTest, RefusesATachometerThatGivesTooMuch)
{
    OpenAnswered(StandardVelocity, TachometerFeedback);
    GoTo(3);
    Type("TextMotorData(2)", "2000");
    GoTo(4);
    ExpectRefusal(NoNumber("Tach Rating"), "TextTachRating");
    Type("TextTachRating", "101");
    ExpectRefusal(
        "The motor speed and tach rating values entered yield a maximum\r\ntachometer voltage feedback "
        "of 202V. This voltage\r\nexceeds the maximum rated tachometer input value of 200V. A lower "
        "rated\r\ntachometer must be used, or external scaling of the tachometer signal is\r\nrequired "
        "(simulating a lower rated tachometer). Change the Tachometer Rating\r\nto reflect the new "
        "lower rating.",
        "TextTachRating", MsgIcon::Information);
    Type("TextTachRating", "100");
    EXPECT_EQ(Text("LabelTachJumper(0)"), "J5 = 100");
    GoTo(5);
}

TEST_F(FormWizardBasicTest, FieldCrossoverWantsAShuntFieldAndAnotherFeedback)
{
    Open();
    GoTo(3);
    Click("OptionFieldType(1)");
    EXPECT_FALSE(Enabled("TextMotorData(3)"));
    GoTo(2);
    Click("OptionOperatingMode(1)");
    Next();
    EXPECT_TRUE(Checked("OptionFieldType(0)"));
    EXPECT_FALSE(Enabled("OptionFieldType(1)"));
    EXPECT_EQ(Text("LabelMotorData(2)"), "Top Speed");
    EXPECT_TRUE(Enabled("TextMotorData(4)"));
    TypeAll("TextMotorData", {"120", "500", "2500", "2.00", "2.01"});
    ExpectRefusal("The Top Speed Field Current must be less than the Base Speed Field Current.",
                  "TextMotorData(4)");
    Type("TextMotorData(4)", "2.00");
    GoTo(4);
    EXPECT_FALSE(Enabled("OptionFeedback(0)"));
    ExpectRefusal("Please select the desired feedback option", "");
    Click("OptionFeedback(2)");
    GoTo(5);
}

TEST_F(FormWizardBasicTest, RefusesAnUndefinedModelUntilOneIsChosen)
{
    SetModel(0);
    Open();
    form->ChangeModel = [this] { SetModel(NonRegenerativeModel); };
    GoTo(1);
    ExpectRefusal("Please select a valid drive model by pressing the Change... button.", "", MsgIcon::None,
                  "Quorvik");
    Click("CommandChangeModel");
    EXPECT_EQ(Text("LabelDriveData(1)"), "Type: Non-regenerative");
    GoTo(2);
}

TEST_F(FormWizardBasicTest, TheDriveTypeSwitchesWhatOnlyARegenerativeDriveDoes)
{
    for (const bool regenerative : {true, false}) {
        SetModel(regenerative ? RegenerativeModel : NonRegenerativeModel);
        OpenAnswered();
        GoTo(8);
        if (regenerative) {
            Click("OptionStopMode(1)");
            GoTo(3);
            GoTo(8);
        }
        EXPECT_TRUE(Checked("OptionStopMode(0)"));
        EXPECT_EQ(Enabled("OptionStopMode(1)"), regenerative);
        GoTo(7);
        EXPECT_EQ(Enabled("TextRunAccelDecel(2)"), regenerative);
        EXPECT_EQ(Enabled("TextJogAccelDecel(3)"), regenerative);
        EXPECT_TRUE(Enabled("TextJogAccelDecel(1)"));
        Find("TextJogAccelDecel(1)")->setFocus();
        for (int line = 0; line < SpeedProfile::LineCount; ++line) {
            const auto *ramp = Find<LineAccelDecel>(ControlName("LineAccelDecel", line));
            EXPECT_EQ(ramp->isVisible(), regenerative || (line != 2 && line != 3 && line != 6));
            EXPECT_EQ(ramp->BorderWidth(), line == 1 ? 2 : 1) << "the one of the focused time stands out";
        }
        GoTo(9);
        EXPECT_EQ(Enabled("TextCurrentLimit(1)"), regenerative);
        EXPECT_EQ(Text("LabelCurrent(1)"), "= -180 Amps");
    }
}

TEST_F(FormWizardBasicTest, TorqueModeHasNoJog)
{
    OpenAnswered(Torque);
    GoTo(6);
    EXPECT_EQ(Text("LabelInternalReferences(0)"), "Set internal torque references, if required.");
    EXPECT_FALSE(Enabled("TextJogRef"));
    Next();
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(Enabled(ControlName("TextJogAccelDecel", i)));
    // What was left there and cannot be corrected any more holds nothing up, and is not written.
    Find<QLineEdit>("TextJogRef")->setText(Name("fast"));
    Find<QLineEdit>("TextJogAccelDecel(1)")->setText(Name("99999"));
    GoTo(6);
    GoTo(10);
    const auto *table = Find<QTableWidget>("TableWrites");
    for (const auto &[p, written] : {std::pair("221", false), {"308", false}, {"307", true}})
        EXPECT_EQ(table->findItems(Name(p), Qt::MatchExactly).isEmpty(), !written) << p;
}

TEST_F(FormWizardBasicTest, FinishesOnceTheDriveStandsStillAndRemindsOfTheJumpers)
{
    desk.table.SetPortOpen(true);
    OpenAnswered(StandardVelocity, TachometerFeedback);
    GoTo(4);
    Type("TextTachRating", "50");
    GoTo(10);
    const auto *table = Find<QTableWidget>("TableWrites");
    const int rows = table->rowCount();
    Click("CheckSaveDriveParameters");
    EXPECT_EQ(table->rowCount(), rows + 1);
    EXPECT_EQ(Planned(0), "123 | Nameplate Motor I | 174 Amps | 120 Amps");

    P(Param::DriveState) = 1;
    desk.asker.Expect("Sarvex must be in the Stop mode for the Mentor to continue!");
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Critical);
    EXPECT_EQ(form->CurrentStep(), 10);
    EXPECT_NE(P(123), 120);

    P(Param::DriveState) = 8;
    desk.asker.Expect("Tachometer feedback jumpers must be set as follows:\r\n"
                      "   J5 = 80\r\n   J6 = 0\r\n   J7 = 8\r\n");
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().title, Name("Reminder"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(P(Param::SaveParameters), 1);
}

TEST_F(FormWizardBasicTest, AFailedConversionIsToldAndKeepsTheLastPage)
{
    OpenAnswered();
    GoTo(5);
    Click("OptionMaxSpeed(1)");
    Type("TextMaxSpeed(0)", "fast");
    GoTo(10);
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(Text("LabelPlanFailure").find("Forward Max Speed: "), 0U);
    Finish();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith(Name("Forward Max Speed: ")));
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FormWizardBasicTest, DoesNotOpenWithoutADriveModel)
{
    SetModel(0);
    const std::pair<bool, const char *> rows[] = {
        {true,
         "Invalid Drive Model. Verify CT ID board is correctly\r\ninstalled on Trigger Board and retry."},
        {false, "Invalid Drive Model. Choose a valid drive model under\r\nTools|Select Drive Model."}};
    for (const auto &[online, text] : rows) {
        desk.table.SetPortOpen(online);
        desk.asker.Expect(Name(text));
        OpenBasicSetup(desk.desk, link, nullptr, {});
        EXPECT_EQ(desk.asker.Shown.last().title, Name("Quorvik Mentor"));
    }
}

} // namespace quorvik::testing
