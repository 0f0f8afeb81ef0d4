#include "wizards/io/FormWizardIO.h"
#include "wizards/WizardDriver.h"

#include <QTableWidget>
#include <QTimer>

using namespace quorvik;
using namespace quorvik::testing;

namespace
{

constexpr int PercentParam = 218; // percent with two decimals
constexpr int ListedParam = 197;  // "AFB", "TFB", "EFB"

class FormWizardIOTest : public ::testing::Test, protected WizardDriver<FormWizardIO>
{
protected:
    void OpenOn(const WizardIOStartRecord &start)
    {
        desk.model.WizardIOStart = start;
        Open();
    }

    /** Picks a parameter by number in a list of parameters. */
    void PickParam(const char *combo, int p)
    {
        auto *list = Find<QComboBox>(combo);
        list->setCurrentIndex(list->findText(QString::number(p) + u' ', Qt::MatchStartsWith));
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
            Type("TextCal(0)", "100");
            Type("TextCal(1)", "2000");
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
            for (QWidget *window : QApplication::topLevelWidgets())
                if (window->objectName() == Name("FormWriteReport"))
                    report = window;
            return report != nullptr;
        }));
        if (report == nullptr)
            return {};
        const auto *table = FindIn<QTableWidget>(report, "TableWrites");
        std::string rows;
        for (int i = 0; i < table->rowCount(); ++i)
            rows += (table->item(i, 0)->text() + Name(": ") + table->item(i, 3)->text()).toStdString() + ' ';
        if (FindIn<QLabel>(report, "LabelReport")->text().contains(Name("Stop mode")))
            rows += "Stop mode";
        delete report;
        return rows;
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

} // namespace

TEST_F(FormWizardIOTest, WalksThePagesOfTheKindInBothDirections)
{
    const struct {
        WizardIOStartRecord start;
        std::vector<int> steps;
    } rows[] = {
        {{0, 0, 1, 0}, {0, 1, 2, 3, 4, 5, 6, 10}}, {{0, 1, 6, 0}, {0, 1, 2, 3, 6, 10}},
        {{0, 2, 0, 0}, {0, 1, 2, 3, 5, 6, 10}},    {{1, 0, 1, 0}, {0, 1, 7, 8, 9, 10}},
        {{1, 1, 0, 0}, {0, 1, 7, 8, 9, 10}},       {{1, 1, 0, 1}, {0, 1, 7, 8, 9, 10}},
        {{1, 2, 2, 0}, {0, 1, 7, 8, 9, 10}},
    };
    for (const auto &row : rows) {
        OpenAnswered(row.start, PercentParam, 0);
        ExpectWalk(row.steps);
    }
    GoTo(1);
    Click("OptionInputsOutputs(0)");
    Next();
    EXPECT_EQ(form->CurrentStep(), 2);
}

TEST_F(FormWizardIOTest, OpensOnTheBlockThatAskedForIt)
{
    const struct {
        WizardIOStartRecord start;
        std::vector<const char *> chosen;
        const char *disabled;
    } rows[] = {
        {{0, 0, 4, 0},
         {"OptionInputType(0)", "OptionInput(4)", "OptionAnalogType(1)"},
         "OptionAnalogType(0)"},
        {{0, 1, 6, 0}, {"OptionInputType(1)", "OptionInput(6)"}, "OptionFreqDigMode(0)"},
        {{0, 2, 0, 0}, {"OptionInputType(2)", "OptionInput(0)"}, "OptionInput(1)"},
        {{1, 1, 0, 1}, {"OptionOutputType(1)", "OptionFreqDigMode(1)"}, "OptionOutput(1)"},
        {{1, 0, 1, 0}, {"OptionOutputType(0)", "OptionOutput(1)"}, "OptionOutput(2)"},
        {{1, 2, 2, 0}, {"OptionOutputType(2)", "OptionOutput(2)"}, "OptionFreqDigMode(1)"},
    };
    for (const auto &row : rows) {
        OpenOn(row.start);
        for (const char *name : row.chosen)
            EXPECT_TRUE(Checked(name)) << name;
        EXPECT_TRUE(Find(row.disabled)->testAttribute(Qt::WA_ForceDisabled)) << row.disabled;
    }
    // On outputs nothing of the inputs is chosen until they are.
    EXPECT_EQ(Find<QComboBox>("ComboDestination")->count(), 0);
    GoTo(1);
    const auto first = {"OptionInputType(0)", "OptionInput(0)", "OptionAnalogType(0)", "OptionPolarity(0)"};
    for (const bool chosen : {false, true}) {
        for (const char *name : first)
            EXPECT_EQ(Checked(name), chosen) << name;
        Click("OptionInputsOutputs(0)");
    }
    EXPECT_GT(Find<QComboBox>("ComboDestination")->count(), 0);
}

TEST_F(FormWizardIOTest, AnalogInput5TakesVoltageOnlyHoweverItCameAbout)
{
    OpenOn({0, 1, 6, 0});
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
    EXPECT_EQ(Caption("LabelTypeAndPolarity(1)"), "Maximum Range: 0mA to +20mA");
    GoTo(2);
    Click("OptionInput(4)");
    GoTo(4);
    EXPECT_TRUE(Checked("OptionAnalogType(1)"));
    EXPECT_EQ(Caption("LabelTypeAndPolarity(1)"), "Maximum Range: 0V to +10V");
}

TEST_F(FormWizardIOTest, EachPageIsWholeWithALongNameAndLeftWithoutATrace)
{
    desk.online = true;
    desk.model.ParamTable[PercentParam].Name =
        Name("Reference 1 of the unwinding station behind the dryer section");
    for (int step = 0; step <= 10; ++step) {
        if (step >= 7 && step <= 9)
            OpenAnswered({1, 1, 0, 1}, PercentParam, step);
        else
            OpenAnswered({0, 0, 1, 0}, PercentParam, step);
        ExpectWholePageAndCancel(step % 2 == 0);
    }
    OpenAnswered({0, 0, 1, 0}, PercentParam, 5);
    form->close();
    EXPECT_EQ(Snapshot(desk.model), asOpened);
    OpenAnswered({0, 0, 1, 0}, PercentParam, 5);
    form.reset();
    EXPECT_EQ(Snapshot(desk.model), asOpened);
}

TEST_F(FormWizardIOTest, RefusesABadEntryWithItsMessageAndGoesThere)
{
    const struct {
        WizardIOStartRecord start;
        int step;
        const char *name;
        const char *text;
        const char *message;
    } rows[] = {
        {{0, 0, 0, 0}, 5, "TextCal(0)", "x", "Please enter a numerical value for the 0% Calibration."},
        {{0, 0, 0, 0},
         5,
         "TextCal(1)",
         "4096",
         "The valid 100% Calibration range is:\r\n  Min: 0\r\n  Max: 4095"},
        {{0, 0, 0, 0}, 5, "TextCal(1)", "100", "The 100% ADC value must be greater than the 0% ADC value."},
        {{0, 2, 0, 0},
         5,
         "TextCal(1)",
         "60001",
         "The valid 100% Calibration range is:\r\n  Min: 0\r\n  Max: 60000"},
        {{0, 0, 0, 0}, 6, "TextBiasGain(0)", "", "Please enter a numerical value for the Bias."},
        {{0, 1, 0, 0},
         6,
         "TextBiasGain(1)",
         "100.01",
         "The valid Closed Value range for model SVR100-000 is:\r\n  Min: -100.00 %\r\n  Max: 100.00 %"},
        {{1, 0, 0, 0},
         9,
         "TextOutputBiasGain(0)",
         "-10.01",
         "The valid Bias range is:\r\n  Min: -10.00 Volts\r\n  Max: 10.00 Volts"},
        {{1, 0, 0, 0}, 9, "TextOutputBiasGain(1)", "", "Please enter a numerical value for the Gain."},
        {{1, 1, 0, 0},
         9,
         "TextOutputBiasGain(1)",
         "2001",
         "The valid Gain range is:\r\n  Min: 0 Hz\r\n  Max: 2000 Hz"},
        {{1, 1, 0, 1},
         9,
         "TextOutputBiasGain(0)",
         "-1",
         "The valid Bias range is:\r\n  Min: 0 Hz\r\n  Max: 2000 Hz"},
        {{1, 2, 0, 0},
         9,
         "TextOutputBiasGain(0)",
         "101",
         "The valid On Value range for model SVR100-000 is:\r\n  Min: -100.00 %\r\n  Max: 100.00 %"},
        {{1, 2, 0, 0}, 9, "TextOutputBiasGain(1)", "-", "Please enter a numerical value for the Off Value."},
    };
    for (const auto &row : rows) {
        OpenAnswered(row.start, PercentParam, row.step);
        Type(row.name, row.text);
        ExpectRefusal(row.message, row.name);
    }
}

TEST_F(FormWizardIOTest, AsksWhetherBothValuesOfAListMayBeTheSame)
{
    const struct {
        WizardIOStartRecord start;
        int step;
        const char *infix;
        const char *second;
        const char *pair;
    } rows[] = {{{0, 1, 0, 0}, 6, "ComboBiasGain", "Closed Value", "Open and Closed"},
                {{1, 2, 0, 0}, 9, "ComboOutputBiasGain", "Off Value", "On and Off"}};
    for (const auto &row : rows) {
        OpenAnswered(row.start, ListedParam, row.step);
        EXPECT_EQ(Find<QComboBox>(ControlName(row.infix, 0))->count(), 3);
        Pick(ControlName(row.infix, 1), -1);
        ExpectRefusal(QStringLiteral("Please select a valid item from the %1 list.").arg(Name(row.second)),
                      ControlName(row.infix, 1));
        Pick(ControlName(row.infix, 1), 0);
        for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
            desk.asker.Expect(QStringLiteral("Typically the %1 Values\r\nshould not have identical values."
                                             "\r\n\r\nDo you want to proceed?")
                                  .arg(Name(row.pair)),
                              answer);
            Next();
            EXPECT_EQ(desk.asker.Shown.last().buttons, MsgButtons::YesNo);
            EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Question);
            EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 10 : row.step);
        }
    }
}

TEST_F(FormWizardIOTest, AsksBeforeItTakesADestinationFromAnotherInput)
{
    desk.model.ParamTable[5].Value = PercentParam;
    OpenOn({0, 0, 0, 0});
    GoTo(3);
    PickParam("ComboDestination", PercentParam);
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        desk.asker.Expect(Name("Overwrite this input?"), answer);
        Next();
        EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 4 : 3);
    }
    // The answer stands as long as the destination does, and nothing is written before Finish.
    GoTo(3);
    GoTo(5);
    Type("TextCal(0)", "100");
    Type("TextCal(1)", "2000");
    GoTo(6);
    FillPair("BiasGain");
    GoTo(10);
    EXPECT_EQ(Find<QTableWidget>("TableWrites")->item(0, 0)->text(), Name("5"));
    EXPECT_EQ(Snapshot(desk.model), asOpened);
    Finish();
    EXPECT_EQ(desk.model.Value(5), 0);
    EXPECT_EQ(desk.model.Value(23), PercentParam);
}

TEST_F(FormWizardIOTest, CountsAndEngineeringValuesFollowEachOther)
{
    OpenAnswered({0, 0, 0, 0}, PercentParam, 5);
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
    EXPECT_EQ(Caption("LabelActual(0)"), "mAmps");
    ExpectRefusal("The valid 100% Calibration range is:\r\n  Min: -2048\r\n  Max: 2047", "TextCal(1)");
}

TEST_F(FormWizardIOTest, RecordsTheLiveReadingOnLineAndIsTypedOffLine)
{
    desk.online = true;
    OpenAnswered({0, 0, 2, 0}, PercentParam, 4);
    Click("OptionPolarity(1)");
    const int before = desk.model.ParamTable[141].ReadFlag;
    desk.model.ParamTable[141].Value = -1500;
    GoTo(5);
    EXPECT_EQ(desk.model.ParamTable[141].ReadFlag, before + 1);
    EXPECT_EQ(
        Caption("LabelCalibrate(1)"),
        "Adjust external voltage signal to 0.0 V and click 0% Auto. Then, adjust voltage signal to maximum "
        "and click 100% Auto.");
    Click("CommandRecord(0)");
    Click("CommandRecord(1)");
    EXPECT_EQ(Text("TextCal(0)"), "-1500");
    EXPECT_EQ(Text("TextCal(1)"), "1500");
    desk.model.ParamTable[141].Value = 77;
    EXPECT_TRUE(QTest::qWaitFor([&] { return Caption("LabelStatus") == "77"; }));
    GoTo(6);
    EXPECT_EQ(desk.model.ParamTable[141].ReadFlag, before);
    EXPECT_FALSE(Find<QTimer>("TimerUpdateScreen")->isActive());
    EXPECT_EQ(Caption("LabelBiasGainIntro"), "Set Gain.");
    EXPECT_FALSE(Visible("TextBiasGain(0)"));

    desk.online = false;
    OpenAnswered({0, 2, 0, 0}, PercentParam, 5);
    EXPECT_FALSE(Enabled("CommandRecord(0)") || Enabled("CommandRecord(1)"));
    EXPECT_FALSE(Visible("TextActual(0)"));
    EXPECT_EQ(Caption("LabelCal(0)"), "Hertz");
    EXPECT_EQ(Caption("LabelCalibrate(1)"), "Enter the minimum and maximum frequency levels.");
}

TEST_F(FormWizardIOTest, SaysThatTheLinkIsGoneAndThatNothingWasWritten)
{
    desk.online = true;
    OpenAnswered({0, 0, 2, 0}, PercentParam, 5);
    EXPECT_FALSE(Visible("LabelLinkGone"));
    desk.online = false;
    Q_EMIT link.ComStatusChanged();
    EXPECT_TRUE(Visible("LabelLinkGone"));
    EXPECT_FALSE(Enabled("CommandRecord(0)") || Enabled("CommandRecord(1)"));
    EXPECT_EQ(Caption("LabelStatus"), "not known");
    GoTo(10);
    Finish();
    EXPECT_EQ(Reported(), "25: not written 30: not written 35: not written 40: not written 45: not written "
                          "50: not written 55: not written 346: not written ");
    EXPECT_EQ(desk.model.Value(25), PercentParam);
}

TEST_F(FormWizardIOTest, TakesBackWhatTheDriveRefusesAndTellsItOnce)
{
    desk.online = true;
    for (const bool linkBreaks : {false, true}) {
        OpenAnswered({0, 1, 0, 0}, PercentParam, 10);
        desk.model.ParamTable[8].Value = 7;
        desk.model.ParamTable[Param::DriveState].Value = 0;
        if (linkBreaks)
            Click("CheckSaveDriveParameters");
        Finish();
        const auto answered = [this](int p) { desk.model.ParamTable[p].WriteFlag = WriteState::None; };
        answered(1);
        Q_EMIT link.WriteTaken(1);
        bool told = false;
        Q_EMIT link.WriteRefused(15, 499, &told);
        EXPECT_FALSE(told) << "not the value of the setup";
        answered(8);
        Q_EMIT link.WriteRefused(8, 100, &told);
        EXPECT_TRUE(told);
        EXPECT_EQ(desk.model.Value(8), 7);
        if (linkBreaks) {
            desk.online = false;
            Q_EMIT link.ComStatusChanged();
            EXPECT_EQ(Reported(), "8: refused 15: not written 406: not written 1: written ");
            EXPECT_EQ(desk.model.Value(Param::SaveParameters), 0);
            EXPECT_TRUE(desk.model.DriveModified);
        } else {
            answered(15);
            Q_EMIT link.WriteTaken(15);
            EXPECT_EQ(desk.model.ParamTable[8].ReadFlag, 1);
            desk.model.ParamTable[8].Value = 9;
            Q_EMIT link.ValueRead(8);
            desk.model.ParamTable[Param::DriveState].Value = 1;
            Q_EMIT link.ValueRead(Param::DriveState);
            EXPECT_EQ(Reported(), "8: refused, has 9 1: written 15: written Stop mode");
            EXPECT_EQ(desk.model.ParamTable[8].ReadFlag, 0);
        }
    }
}

TEST_F(FormWizardIOTest, ABipolarInputOnAListedDestinationOffersTheSecondList)
{
    OpenAnswered({0, 0, 0, 0}, ListedParam, 4);
    Click("OptionPolarity(1)");
    GoTo(6);
    EXPECT_FALSE(Visible("ComboBiasGain(0)"));
    ExpectRefusal("Please select a valid item from the Gain list.", "ComboBiasGain(1)");
    Pick("ComboBiasGain(1)", 2);
    GoTo(10);
    Finish();
    EXPECT_EQ(desk.model.Value(53), 2);
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
    desk.model.ParamTable[PercentParam].Max = 4000;
    OpenAnswered({1, 0, 0, 0}, PercentParam, 9);
    Type("TextOutputBiasGain(0)", "0");
    Type("TextOutputBiasGain(1)", "10");
    GoTo(10);
    EXPECT_FALSE(Enabled("CheckSaveDriveParameters"));
    const auto *table = Find<QTableWidget>("TableWrites");
    ASSERT_EQ(table->rowCount(), 4);
    EXPECT_EQ(table->item(0, 3)->text(), Name("218 Reference 1"));
    EXPECT_EQ(table->item(2, 0)->text(), Name("83"));
    EXPECT_EQ(table->item(2, 3)->text(), Name("200.00 %"));
    desk.asker.Expect(Name("cannot achieve the desired level of 10.00 Volts."));
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Information);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(desk.model.Value(81), PercentParam);
    EXPECT_EQ(desk.model.Value(83), 20000);
}
