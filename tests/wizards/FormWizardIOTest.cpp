#include "wizards/io/FormWizardIO.h"
#include "wizards/WizardDriver.h"

namespace quorvik::testing
{

constexpr int FeedbackParam = 197; // "AFB", "TFB", "EFB"

/** What the Mentor opens on. */
constexpr WizardIOStartRecord AnalogIn{0, 0}, DigitalIn{0, 1}, FreqIn{0, 2};
constexpr WizardIOStartRecord AnalogOut{1, 0}, FreqOut{1, 1}, DigitalOut{1, 1, 0, 1}, Relay{1, 2};

class FormWizardIOTest : public WizardDriver<FormWizardIO>
{
protected:
    void OpenOn(const WizardIOStartRecord &start)
    {
        desk.desk.WizardIOStart = start;
        Open();
    }

    /** Opens on a block with everything answered and goes to a page. */
    void OpenAnswered(const WizardIOStartRecord &start, int linked, int step)
    {
        OpenOn(start);
        const bool isOutput = start.outputs != 0;
        GoTo(isOutput ? 8 : 3);
        PickParam(isOutput ? "ComboSource" : "ComboDestination", linked);
        if (!isOutput && start.kind != 1) {
            GoTo(5);
            TypeAll("TextCal", {"100", "2000"});
        }
        GoTo(isOutput ? 9 : 6);
        FillPair(isOutput ? "OutputBiasGain" : "BiasGain");
        GoTo(step);
    }

    /** What the window tells that comes up where not all was written; closes it. */
    std::string Reported()
    {
        QWidget *report = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            for (QWidget *shown : QApplication::topLevelWidgets())
                if (shown->objectName() == Name("FormWriteReport"))
                    report = shown;
            return report != nullptr;
        }));
        if (report == nullptr)
            return {};
        const auto *table = FindIn<QTableWidget>(report, "TableWrites");
        QString rows;
        for (int i = 0; i < table->rowCount(); ++i)
            rows += table->item(i, 0)->text() + Name(": ") + table->item(i, 3)->text() + u' ';
        if (FindIn<QLabel>(report, "LabelReport")->text().contains(Name("Stop mode")))
            rows += Name("Stop mode");
        delete report;
        return rows.toStdString();
    }

    void FillPair(const char *infix)
    {
        for (int i = 0; i < 2; ++i) {
            const QString text = Name("Text") + ControlName(infix, i);
            const QString list = Name("Combo") + ControlName(infix, i);
            if (Visible(text))
                Type(text, i == 0 ? "1" : "5");
            if (Visible(list))
                Pick(list, i);
        }
    }
};

TEST_F(FormWizardIOTest, WalksThePagesOfTheKindInBothDirections)
{
    const std::tuple<WizardIOStartRecord, std::vector<int>> rows[] = {
        {AnalogIn, {0, 1, 2, 3, 4, 5, 6, 10}},
        {DigitalIn, {0, 1, 2, 3, 6, 10}},
        {FreqIn, {0, 1, 2, 3, 5, 6, 10}},
        {AnalogOut, {0, 1, 7, 8, 9, 10}},
    };
    for (const auto &[start, steps] : rows) {
        OpenAnswered(start, PercentParam, 0);
        ExpectWalk(steps);
    }
}

TEST_F(FormWizardIOTest, OpensOnTheBlockThatAskedForIt)
{
    const std::tuple<WizardIOStartRecord, const char *, const char *> rows[] = {
        {{0, 0, 4}, "OptionInputType(0)", "OptionInput(4)"},
        {{0, 1, 6}, "OptionInputType(1)", "OptionInput(6)"},
        {{1, 0, 1}, "OptionOutputType(0)", "OptionOutput(1)"},
        {{1, 2, 2}, "OptionOutputType(2)", "OptionOutput(2)"},
    };
    for (const auto &[start, type, member] : rows) {
        OpenOn(start);
        EXPECT_TRUE(Checked(type) && Checked(member)) << type << member;
    }
    // On outputs nothing of the inputs is chosen until they are.
    GoTo(1);
    const auto first = {"OptionInputType(0)", "OptionInput(0)", "OptionAnalogType(0)", "OptionPolarity(0)"};
    for (const bool chosen : {false, true}) {
        for (const char *name : first)
            EXPECT_EQ(Checked(name), chosen) << name;
        EXPECT_EQ(Find<QComboBox>("ComboDestination")->count() > 0, chosen);
        Click("OptionInputsOutputs(0)");
    }
    Next();
    EXPECT_EQ(form->CurrentStep(), 2);
}

TEST_F(FormWizardIOTest, AnalogInput5TakesVoltageOnlyHoweverItCameAbout)
{
    OpenOn({0, 1, 6});
    GoTo(2);
    Click("OptionInputType(0)");
    EXPECT_TRUE(Checked("OptionInput(0)")) << "there is no analog input 7";
    Click("OptionInputType(1)");
    Click("OptionInput(4)");
    Click("OptionInputType(0)");
    GoTo(4);
    EXPECT_FALSE(Enabled("FrameInputType"));
    GoTo(2);
    Click("OptionInput(3)");
    GoTo(4);
    Click("OptionAnalogType(0)");
    EXPECT_EQ(Text("LabelTypeAndPolarity(1)"), "Maximum Range: 0mA to +20mA");
    GoTo(2);
    Click("OptionInput(4)");
    GoTo(4);
    EXPECT_TRUE(Checked("OptionAnalogType(1)"));
    EXPECT_EQ(Text("LabelTypeAndPolarity(1)"), "Maximum Range: 0V to +10V");
}

TEST_F(FormWizardIOTest, EachPageIsWholeWithALongNameAndLeftWithoutATrace)
{
    desk.table.SetPortOpen(true);
    Record(PercentParam).Name = Name("Reference 1 of the unwinding station behind the dryer section");
    for (int step = 0; step <= 10; ++step) {
        OpenAnswered(step >= 7 && step <= 9 ? DigitalOut : AnalogIn, PercentParam, step);
        ExpectWholePageAndCancel(step % 2 == 0);
    }
    OpenAnswered(AnalogIn, PercentParam, 5);
    delete form;
    EXPECT_EQ(Snapshot(desk.table), asOpened);
}

TEST_F(FormWizardIOTest, RefusesABadEntryWithItsMessageAndGoesThere)
{
    const std::tuple<WizardIOStartRecord, int, const char *, const char *, Name> rows[] = {
        {AnalogIn, 5, "TextCal(0)", "x", NoNumber("0% Calibration")},
        {AnalogIn, 5, "TextCal(1)", "4096", OutOfRange("100% Calibration", "0", "4095")},
        {AnalogIn, 5, "TextCal(1)", "100", "The 100% ADC value must be greater than the 0% ADC value."},
        {DigitalIn, 6, "TextBiasGain(1)", "100.01",
         OutOfRange("Closed Value", "-100.00 %", "100.00 %", true)},
        {AnalogOut, 9, "TextOutputBiasGain(0)", "-10.01", OutOfRange("Bias", "-10.00 Volts", "10.00 Volts")},
        {AnalogOut, 9, "TextOutputBiasGain(1)", "", NoNumber("Gain")},
        {FreqOut, 9, "TextOutputBiasGain(1)", "2001", OutOfRange("Gain", "0 Hz", "2000 Hz")},
        {DigitalOut, 9, "TextOutputBiasGain(0)", "-1", OutOfRange("Bias", "0 Hz", "2000 Hz")},
        {Relay, 9, "TextOutputBiasGain(0)", "101", OutOfRange("On Value", "-100.00 %", "100.00 %", true)},
    };
    for (const auto &[start, step, name, text, message] : rows) {
        OpenAnswered(start, PercentParam, step);
        Type(name, text);
        ExpectRefusal(message, name);
    }
}

TEST_F(FormWizardIOTest, AsksWhetherBothValuesOfAListMayBeTheSame)
{
    const std::tuple<WizardIOStartRecord, int, const char *, const char *, const char *> rows[] = {
        {DigitalIn, 6, "ComboBiasGain", "Closed Value", "Open and Closed"},
        {Relay, 9, "ComboOutputBiasGain", "Off Value", "On and Off"}};
    for (const auto &[start, step, infix, second, pair] : rows) {
        OpenAnswered(start, FeedbackParam, step);
        Pick(ControlName(infix, 1), -1);
        ExpectRefusal(QStringLiteral("Please select a valid item from the %1 list.").arg(Name(second)),
                      ControlName(infix, 1));
        Pick(ControlName(infix, 1), 0);
        for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
            desk.asker.Expect(QStringLiteral("Typically the %1 Values\r\nshould not have identical values."
                                             "\r\n\r\nDo you want to proceed?")
                                  .arg(Name(pair)),
                              answer);
            Next();
            EXPECT_EQ(desk.asker.Shown.last().buttons, MsgButtons::YesNo);
            EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 10 : step);
        }
    }
}

TEST_F(FormWizardIOTest, AsksBeforeItTakesADestinationFromAnotherInput)
{
    P(5) = PercentParam;
    OpenOn(AnalogIn);
    GoTo(3);
    PickParam("ComboDestination", PercentParam);
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        desk.asker.Expect("Overwrite this input?", answer);
        Next();
        EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 4 : 3);
    }
    // The answer stands as long as the destination does, and nothing is written before Finish.
    GoTo(3);
    GoTo(5);
    TypeAll("TextCal", {"100", "2000"});
    GoTo(6);
    FillPair("BiasGain");
    GoTo(10);
    EXPECT_EQ(Planned(0), "5 | Digital In 5 Destination | 218 Reference 1 | 0 None");
    EXPECT_EQ(Snapshot(desk.table), asOpened);
    Finish();
    EXPECT_EQ(P(5), 0);
    EXPECT_EQ(P(23), PercentParam);
}

TEST_F(FormWizardIOTest, CountsAndEngineeringValuesFollowEachOther)
{
    OpenAnswered(AnalogIn, PercentParam, 5);
    Type("TextCal(1)", "4095");
    EXPECT_EQ(Text("TextActual(1)"), "10.00");
    Type("TextActual(0)", "1.04");
    EXPECT_EQ(Text("TextCal(0)"), "426");
    // Leaving the box rounds to a tenth, and the counts follow.
    Find("TextCal(1)")->setFocus();
    EXPECT_EQ(Text("TextActual(0)"), "1.0");
    EXPECT_EQ(Text("TextCal(0)"), "410");
    // A box that nobody typed in leaves the counts alone.
    Type("TextCal(1)", "2047");
    Find("TextActual(1)")->setFocus();
    Next();
    GoTo(4);
    EXPECT_EQ(Text("TextActual(1)"), "5.0");
    EXPECT_EQ(Text("TextCal(1)"), "2047");
    Click("OptionPolarity(1)");
    Click("OptionAnalogType(0)");
    GoTo(5);
    Type("TextCal(1)", "4095");
    EXPECT_EQ(Text("TextActual(0)"), "4.01");
    EXPECT_EQ(Text("LabelActual(0)"), "mAmps");
    ExpectRefusal(OutOfRange("100% Calibration", "-2048", "2047"), "TextCal(1)");
}

TEST_F(FormWizardIOTest, RecordsTheLiveReadingOnLineAndAsksForTheGainOfABipolarInput)
{
    desk.table.SetPortOpen(true);
    OpenAnswered({0, 0, 2}, FeedbackParam, 4);
    Click("OptionPolarity(1)");
    const int before = Record(141).ReadFlag;
    P(141) = -1500;
    GoTo(5);
    EXPECT_EQ(Record(141).ReadFlag, before + 1);
    EXPECT_EQ(
        Text("LabelCalibrate(1)"),
        "Adjust external voltage signal to 0.0 V and click 0% Auto. Then, adjust voltage signal to maximum "
        "and click 100% Auto.");
    Click("CommandRecord(0)");
    Click("CommandRecord(1)");
    EXPECT_EQ(Text("TextCal(0)"), "-1500");
    EXPECT_EQ(Text("TextCal(1)"), "1500");
    P(141) = 77;
    EXPECT_TRUE(QTest::qWaitFor([&] { return Text("LabelStatus") == "77"; }));
    GoTo(6);
    EXPECT_EQ(Record(141).ReadFlag, before);
    EXPECT_FALSE(Find<QTimer>("TimerUpdateScreen")->isActive());

    // A bipolar input has no bias.
    EXPECT_EQ(Text("LabelBiasGainIntro"), "Set Gain.");
    EXPECT_FALSE(Visible("ComboBiasGain(0)"));
    ExpectRefusal("Please select a valid item from the Gain list.", "ComboBiasGain(1)");
    Pick("ComboBiasGain(1)", 2);
    GoTo(10);
}

TEST_F(FormWizardIOTest, SaysThatTheLinkIsGoneAndThatNothingWasWritten)
{
    desk.table.SetPortOpen(true);
    OpenAnswered({0, 0, 2}, PercentParam, 5);
    EXPECT_FALSE(Visible("LabelLinkGone"));
    desk.table.SetPortOpen(false);
    Q_EMIT link.ComStatusChanged();
    EXPECT_TRUE(Visible("LabelLinkGone"));
    EXPECT_FALSE(Enabled("CommandRecord(0)") || Enabled("CommandRecord(1)"));
    EXPECT_EQ(Text("LabelStatus"), "not known");
    GoTo(10);
    Finish();
    EXPECT_EQ(Reported(), "25: not written 30: not written 35: not written 40: not written 45: not written "
                          "50: not written 55: not written 346: not written ");
    EXPECT_EQ(P(25), PercentParam);
}

TEST_F(FormWizardIOTest, TakesBackWhatTheDriveRefusesAndTellsItOnce)
{
    desk.table.SetPortOpen(true);
    for (const bool linkBreaks : {false, true}) {
        OpenAnswered(DigitalIn, PercentParam, 10);
        P(8) = 7;
        P(Param::DriveState) = 0;
        if (linkBreaks)
            Click("CheckSaveDriveParameters");
        Finish();
        const auto answered = [this](int p) { Record(p).WriteFlag = WriteState::None; };
        answered(1);
        Q_EMIT link.WriteTaken(1);
        bool isTold = false;
        Q_EMIT link.WriteRefused(15, 499, &isTold);
        EXPECT_FALSE(isTold) << "not the value of the setup";
        answered(8);
        Q_EMIT link.WriteRefused(8, 100, &isTold);
        EXPECT_TRUE(isTold);
        EXPECT_EQ(P(8), 7);
        if (linkBreaks) {
            desk.table.SetPortOpen(false);
            Q_EMIT link.ComStatusChanged();
            EXPECT_EQ(Reported(), "8: refused 15: not written 406: not written 1: written ");
            EXPECT_EQ(P(Param::SaveParameters), 0);
            EXPECT_TRUE(desk.document.DriveModified);
        } else {
            answered(15);
            Q_EMIT link.WriteTaken(15);
            EXPECT_EQ(Record(8).ReadFlag, 1);
            P(8) = 9;
            Q_EMIT link.ValueRead(8);
            P(Param::DriveState) = 1;
            Q_EMIT link.ValueRead(Param::DriveState);
            EXPECT_EQ(Reported(), "8: refused, has 9 1: written 15: written Stop mode");
            EXPECT_EQ(Record(8).ReadFlag, 0);
        }
    }
}

TEST_F(FormWizardIOTest, DropsTheDecimalsThatAnOutputDoesNotHave)
{
    for (const auto &[kind, shown] : {std::pair(0, "7.60"), {1, "8"}, {2, "8"}}) {
        OpenAnswered({1, std::uint8_t(kind), 0, 0}, PercentParam, 9);
        Type("TextOutputBiasGain(0)", "7.6");
        Press(Qt::Key_Tab);
        EXPECT_EQ(Text("TextOutputBiasGain(0)"), shown) << kind;
    }
    // 100.4 is beyond the source, but what Enter checks is the text as it is shown.
    Type("TextOutputBiasGain(0)", "100.4");
    Press(Qt::Key_Return);
    EXPECT_EQ(form->CurrentStep(), 10);
    EXPECT_EQ(Text("TextOutputBiasGain(0)"), "100");
}

TEST_F(FormWizardIOTest, FinishWritesTheListAndTellsOfAClippedGain)
{
    Record(PercentParam).Max = 4000;
    OpenAnswered(AnalogOut, PercentParam, 9);
    TypeAll("TextOutputBiasGain", {"0", "10"});
    GoTo(10);
    EXPECT_EQ(Planned(2), "83 | Analog Out 1 Gain | 100.00 % | 200.00 %");
    desk.asker.Expect("cannot achieve the desired level of 10.00 Volts.");
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Information);
    EXPECT_EQ(P(83), 20000);
}

} // namespace quorvik::testing
