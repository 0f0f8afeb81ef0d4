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
        auto *list = Find<QComboBox>(N(combo));
        list->setCurrentIndex(list->findText(QString::number(p) + u' ', Qt::MatchStartsWith));
    }

    /** Opens on an input with everything answered and goes to a page. */
    void OpenInput(int kind, int member, int destination, int step)
    {
        OpenOn({0, std::uint8_t(kind), std::uint8_t(member), 0});
        NextUntil(3);
        PickParam("ComboDestination", destination);
        if (kind != 1) {
            NextUntil(5);
            Type(N("TextCal(0)"), N("100"));
            Type(N("TextCal(1)"), N("2000"));
        }
        NextUntil(6);
        FillPair("BiasGain");
        while (form->CurrentStep() > 0)
            Back();
        NextUntil(step);
    }

    void OpenOutput(int kind, int member, int mode, int source, int step)
    {
        OpenOn({1, std::uint8_t(kind), std::uint8_t(member), std::uint8_t(mode)});
        NextUntil(8);
        PickParam("ComboSource", source);
        NextUntil(9);
        FillPair("OutputBiasGain");
        while (form->CurrentStep() > 0)
            Back();
        NextUntil(step);
    }

    void FillPair(const char *infix)
    {
        for (int i = 0; i < 2; ++i) {
            const QString box = N("Text%1(%2)").arg(N(infix)).arg(i);
            if (Find<QLineEdit>(box)->isVisible())
                Type(box, i == 0 ? N("1") : N("5"));
            const QString list = N("Combo%1(%2)").arg(N(infix)).arg(i);
            if (Find<QComboBox>(list)->isVisible())
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
    for (const bool online : {false, true}) {
        desk.online = online;
        for (const auto &row : rows) {
            if (row.start.outputs == 0)
                OpenInput(row.start.kind, row.start.member, PercentParam, 0);
            else
                OpenOutput(row.start.kind, row.start.member, row.start.freqDigMode, PercentParam, 0);
            ExpectWalk(row.steps);
        }
    }
}

TEST_F(FormWizardIOTest, OpensOnTheBlockThatAskedForIt)
{
    const struct {
        WizardIOStartRecord start;
        std::vector<const char *> chosen;
        std::vector<const char *> disabled;
    } rows[] = {
        {{0, 0, 4, 0},
         {"OptionInputType(0)", "OptionInput(4)", "OptionAnalogType(1)", "OptionPolarity(0)"},
         {"OptionInput(5)", "OptionInput(6)", "OptionAnalogType(0)", "OptionAnalogType(1)"}},
        {{0, 1, 6, 0}, {"OptionInputType(1)", "OptionInput(6)"}, {}},
        {{0, 2, 0, 0}, {"OptionInputType(2)", "OptionInput(0)"}, {"OptionInput(1)", "OptionInput(6)"}},
        {{1, 1, 0, 1},
         {"OptionOutputType(1)", "OptionOutput(0)", "OptionFreqDigMode(1)"},
         {"OptionOutput(1)"}},
        {{1, 0, 1, 0},
         {"OptionOutputType(0)", "OptionOutput(1)"},
         {"OptionOutput(2)", "OptionFreqDigMode(0)"}},
        {{1, 2, 2, 0}, {"OptionOutputType(2)", "OptionOutput(2)"}, {"OptionFreqDigMode(1)"}},
    };
    for (const auto &row : rows) {
        OpenOn(row.start);
        EXPECT_EQ(form->CurrentStep(), 0);
        for (const char *name : row.chosen)
            EXPECT_TRUE(Find<QAbstractButton>(N(name))->isChecked()) << name;
        for (const char *name : row.disabled)
            EXPECT_TRUE(Find<QWidget>(N(name))->testAttribute(Qt::WA_ForceDisabled)) << name;
    }
    // On outputs no kind of input is chosen until one is clicked.
    EXPECT_EQ(Find<QComboBox>(N("ComboDestination"))->count(), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(Find<QAbstractButton>(N("OptionInputType(%1)").arg(i))->isChecked());
}

TEST_F(FormWizardIOTest, SwitchingTheKindTakesAnInputThatItHas)
{
    OpenOn({0, 1, 6, 0});
    NextUntil(2);
    Click(N("OptionInputType(0)"));
    EXPECT_TRUE(Find<QAbstractButton>(N("OptionInput(0)"))->isChecked());
    Click(N("OptionInputType(1)"));
    Click(N("OptionInput(4)"));
    Click(N("OptionInputType(0)"));
    // Analog input 5 has come about by way of a digital one.
    NextUntil(4);
    EXPECT_FALSE(Find<QWidget>(N("FrameInputType"))->isEnabled());
    EXPECT_EQ(Caption(N("LabelTypeAndPolarity(1)")), N("Maximum Range: 0V to +10V"));
}

TEST_F(FormWizardIOTest, AnalogInput5TakesVoltageOnly)
{
    OpenOn({0, 0, 0, 0});
    NextUntil(4);
    Click(N("OptionAnalogType(0)"));
    EXPECT_EQ(Caption(N("LabelTypeAndPolarity(1)")), N("Maximum Range: 0mA to +20mA"));
    Back();
    Back();
    Click(N("OptionInput(4)"));
    NextUntil(4);
    EXPECT_TRUE(Find<QAbstractButton>(N("OptionAnalogType(1)"))->isChecked());
    EXPECT_EQ(Caption(N("LabelTypeAndPolarity(1)")), N("Maximum Range: 0V to +10V"));
    Back();
    Back();
    Click(N("OptionInput(3)"));
    NextUntil(4);
    EXPECT_TRUE(Find<QWidget>(N("OptionAnalogType(0)"))->isEnabled());
}

TEST_F(FormWizardIOTest, EnterChecksTheTextAsItIsShown)
{
    // 100.4 is beyond the source, but a relay's box shows whole numbers once it is left.
    OpenOutput(2, 0, 0, PercentParam, 9);
    Type(N("TextOutputBiasGain(0)"), N("100.4"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(form->CurrentStep(), 10);
    EXPECT_EQ(Text(N("TextOutputBiasGain(0)")), N("100"));
}

TEST_F(FormWizardIOTest, ALongNameWrapsAndPushesNothingOut)
{
    desk.online = true;
    desk.model.ParamTable[PercentParam].Name =
        N("Reference 1 of the unwinding station behind the dryer section");
    for (int step = 0; step <= 10; ++step) {
        if (step >= 7 && step <= 9)
            OpenOutput(1, 0, 1, PercentParam, step);
        else
            OpenInput(0, 1, PercentParam, step);
        ExpectNothingCut();
    }
}

TEST_F(FormWizardIOTest, RefusesABadEntryWithItsMessageAndGoesThere)
{
    const struct {
        int outputs, kind, mode, step;
        const char *name;
        const char *text;
        const char *message;
    } rows[] = {
        {0, 0, 0, 5, "TextCal(0)", "x", "Please enter a numerical value for the 0% Calibration."},
        {0, 0, 0, 5, "TextCal(1)", "4096", "The valid 100% Calibration range is:\r\n  Min: 0\r\n  Max: 4095"},
        {0, 0, 0, 5, "TextCal(1)", "100", "The 100% ADC value must be greater than the 0% ADC value."},
        {0, 2, 0, 5, "TextCal(1)", "60001",
         "The valid 100% Calibration range is:\r\n  Min: 0\r\n  Max: 60000"},
        {0, 0, 0, 6, "TextBiasGain(0)", "", "Please enter a numerical value for the Bias."},
        {0, 1, 0, 6, "TextBiasGain(1)", "100.01",
         "The valid Closed Value range for model SVR100-000 is:\r\n  Min: -100.00 %\r\n  Max: 100.00 %"},
        {1, 0, 0, 9, "TextOutputBiasGain(0)", "-10.01",
         "The valid Bias range is:\r\n  Min: -10.00 Volts\r\n  Max: 10.00 Volts"},
        {1, 0, 0, 9, "TextOutputBiasGain(1)", "", "Please enter a numerical value for the Gain."},
        {1, 1, 0, 9, "TextOutputBiasGain(1)", "2001",
         "The valid Gain range is:\r\n  Min: 0 Hz\r\n  Max: 2000 Hz"},
        {1, 1, 1, 9, "TextOutputBiasGain(0)", "-1",
         "The valid Bias range is:\r\n  Min: 0 Hz\r\n  Max: 2000 Hz"},
        {1, 2, 0, 9, "TextOutputBiasGain(0)", "101",
         "The valid On Value range for model SVR100-000 is:\r\n  Min: -100.00 %\r\n  Max: 100.00 %"},
        {1, 2, 0, 9, "TextOutputBiasGain(1)", "-", "Please enter a numerical value for the Off Value."},
    };
    for (const auto &row : rows) {
        if (row.outputs == 0)
            OpenInput(row.kind, 0, PercentParam, row.step);
        else
            OpenOutput(row.kind, 0, row.mode, PercentParam, row.step);
        Type(N(row.name), N(row.text));
        ExpectRefusal(N(row.message), N(row.name));
    }
}

TEST_F(FormWizardIOTest, AsksWhetherBothValuesOfAListMayBeTheSame)
{
    const struct {
        bool output;
        const char *infix;
        const char *second;
        const char *pair;
    } rows[] = {{false, "BiasGain", "Closed Value", "Open and Closed"},
                {true, "OutputBiasGain", "Off Value", "On and Off"}};
    for (const auto &row : rows) {
        if (row.output)
            OpenOutput(2, 0, 0, ListedParam, 9);
        else
            OpenInput(1, 0, ListedParam, 6);
        const QString first = N("Combo%1(0)").arg(N(row.infix));
        const QString second = N("Combo%1(1)").arg(N(row.infix));
        EXPECT_EQ(Find<QComboBox>(first)->count(), 3);
        Pick(second, -1);
        ExpectRefusal(N("Please select a valid item from the %1 list.").arg(N(row.second)), second);
        Pick(second, 0);
        const QString question =
            N("Typically the %1 Values\r\nshould not have identical values.\r\n\r\nDo you want "
              "to proceed?")
                .arg(N(row.pair));
        const int step = form->CurrentStep();
        for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
            desk.asker.Expect(question, answer);
            Next();
            EXPECT_EQ(desk.asker.Shown.last().text, question);
            EXPECT_EQ(desk.asker.Shown.last().buttons, MsgButtons::YesNo);
            EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Question);
            EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 10 : step);
        }
    }
}

TEST_F(FormWizardIOTest, AsksBeforeItTakesADestinationFromAnotherInput)
{
    desk.model.ParamTable[5].Value = PercentParam;
    OpenOn({0, 0, 0, 0});
    NextUntil(3);
    PickParam("ComboDestination", PercentParam);
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        desk.asker.Expect(N("Overwrite this input?"), answer);
        Next();
        EXPECT_EQ(form->CurrentStep(), answer == MsgAnswer::Yes ? 4 : 3);
        EXPECT_EQ(desk.model.Value(5), answer == MsgAnswer::Yes ? 0 : PercentParam);
    }
}

TEST_F(FormWizardIOTest, CountsAndEngineeringValuesFollowEachOther)
{
    OpenInput(0, 0, PercentParam, 5);
    Type(N("TextCal(1)"), N("4095"));
    EXPECT_EQ(Text(N("TextActual(1)")), N("10.00"));
    Type(N("TextActual(0)"), N("1.04"));
    EXPECT_EQ(Text(N("TextCal(0)")), N("426"));
    // Leaving the box rounds to a tenth, and the counts follow.
    Find<QWidget>(N("TextCal(1)"))->setFocus();
    EXPECT_EQ(Text(N("TextActual(0)")), N("1.0"));
    EXPECT_EQ(Text(N("TextCal(0)")), N("410"));
    Back();
    Click(N("OptionPolarity(1)"));
    Click(N("OptionAnalogType(0)"));
    Next();
    EXPECT_EQ(Text(N("TextActual(0)")), N("4.01"));
    EXPECT_EQ(Caption(N("LabelActual(0)")), N("mAmps"));
    ExpectRefusal(N("The valid 100% Calibration range is:\r\n  Min: -2048\r\n  Max: 2047"), N("TextCal(1)"));
}

TEST_F(FormWizardIOTest, RecordsTheLiveReadingOnLine)
{
    desk.online = true;
    OpenInput(0, 2, PercentParam, 4);
    Click(N("OptionPolarity(1)"));
    const int before = desk.model.ParamTable[141].ReadFlag;
    desk.model.ParamTable[141].Value = -1500;
    Next();
    EXPECT_EQ(desk.model.ParamTable[141].ReadFlag, before + 1);
    EXPECT_EQ(
        Caption(N("LabelCalibrate(1)")),
        N("Adjust external voltage signal to 0.0 V and click 0% Auto. Then, adjust voltage signal to maximum "
          "and click 100% Auto."));
    Click(N("CommandRecord(0)"));
    Click(N("CommandRecord(1)"));
    EXPECT_EQ(Text(N("TextCal(0)")), N("-1500"));
    EXPECT_EQ(Text(N("TextCal(1)")), N("1500"));
    desk.model.ParamTable[141].Value = 77;
    EXPECT_TRUE(QTest::qWaitFor([&] { return Caption(N("LabelStatus")) == N("77"); }));
    Next();
    EXPECT_EQ(desk.model.ParamTable[141].ReadFlag, before);
    EXPECT_FALSE(Find<QTimer>(N("TimerUpdateScreen"))->isActive());
    EXPECT_EQ(Caption(N("LabelBiasGainIntro")), N("Set Gain."));
    EXPECT_FALSE(Find<QWidget>(N("TextBiasGain(0)"))->isVisible());
}

TEST_F(FormWizardIOTest, OffLineTheCalibrationIsTyped)
{
    OpenInput(2, 0, PercentParam, 5);
    EXPECT_FALSE(Find<QWidget>(N("CommandRecord(0)"))->isEnabled());
    EXPECT_FALSE(Find<QWidget>(N("CommandRecord(1)"))->isEnabled());
    EXPECT_FALSE(Find<QWidget>(N("TextActual(0)"))->isVisible());
    EXPECT_EQ(Caption(N("LabelCal(0)")), N("Hertz"));
    EXPECT_EQ(Caption(N("LabelCalibrate(1)")), N("Enter the minimum and maximum frequency levels."));
}

TEST_F(FormWizardIOTest, ABipolarInputOnAListedDestinationOffersTheSecondList)
{
    OpenInput(0, 0, ListedParam, 4);
    Click(N("OptionPolarity(1)"));
    NextUntil(6);
    EXPECT_FALSE(Find<QWidget>(N("ComboBiasGain(0)"))->isVisible());
    ExpectRefusal(N("Please select a valid item from the Gain list."), N("ComboBiasGain(1)"));
    Pick(N("ComboBiasGain(1)"), 2);
    const std::int32_t bias = desk.model.Value(48);
    NextUntil(10);
    Finish();
    EXPECT_EQ(desk.model.Value(53), 2);
    EXPECT_EQ(desk.model.Value(48), bias);
    EXPECT_EQ(desk.model.Value(23), ListedParam);
}

TEST_F(FormWizardIOTest, AChosenBranchDecidesWhatFinishWrites)
{
    OpenOutput(2, 1, 0, PercentParam, 1);
    Click(N("OptionInputsOutputs(0)"));
    NextUntil(2);
    Click(N("OptionInputType(1)"));
    Click(N("OptionInput(2)"));
    NextUntil(3);
    PickParam("ComboDestination", PercentParam);
    NextUntil(6);
    FillPair("BiasGain");
    NextUntil(10);
    Finish();
    EXPECT_EQ(desk.model.Value(3), PercentParam);
    EXPECT_EQ(desk.model.Value(10), 100);
    EXPECT_EQ(desk.model.Value(17), 500);
    EXPECT_EQ(desk.model.ParamTable[70].WriteFlag, WriteState::None);
}

TEST_F(FormWizardIOTest, DropsTheDecimalsThatAnOutputDoesNotHave)
{
    const struct {
        int kind;
        const char *shown;
    } rows[] = {{0, "7.60"}, {1, "8"}, {2, "8"}};
    for (const auto &row : rows) {
        OpenOutput(row.kind, 0, 0, PercentParam, 9);
        Type(N("TextOutputBiasGain(0)"), N("7.6"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(Text(N("TextOutputBiasGain(0)")), N(row.shown)) << row.kind;
    }
}

TEST_F(FormWizardIOTest, CancelLeavesNoTraceFromAnyPage)
{
    const auto before = Snapshot(desk.model);
    for (const int step : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}) {
        for (const bool escape : {true, false}) {
            if (step >= 7 && step <= 9)
                OpenOutput(0, 0, 0, PercentParam, step);
            else
                OpenInput(0, 1, PercentParam, step);
            if (escape)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            else if (step == 5)
                form->close();
            else
                Click(N("CmdNav(1)"));
            EXPECT_FALSE(form->isVisible());
            EXPECT_EQ(Snapshot(desk.model), before) << step;
        }
    }
    OpenInput(0, 1, PercentParam, 5);
    form.reset();
    EXPECT_EQ(Snapshot(desk.model), before);
    EXPECT_TRUE(desk.asker.Shown.isEmpty());
}

TEST_F(FormWizardIOTest, FinishWritesTheListAndTellsOfAClippedGain)
{
    desk.model.ParamTable[PercentParam].Max = 4000;
    OpenOutput(0, 0, 0, PercentParam, 9);
    Type(N("TextOutputBiasGain(0)"), N("0"));
    Type(N("TextOutputBiasGain(1)"), N("10"));
    NextUntil(10);
    EXPECT_FALSE(Find<QWidget>(N("CheckSaveDriveParameters"))->isEnabled());
    const auto *table = Find<QTableWidget>(N("TableWrites"));
    ASSERT_EQ(table->rowCount(), 4);
    EXPECT_EQ(table->item(0, 3)->text(), N("218 Reference 1"));
    EXPECT_EQ(table->item(2, 0)->text(), N("83"));
    EXPECT_EQ(table->item(2, 3)->text(), N("200.00 %"));
    desk.asker.Expect(N("cannot achieve the desired level of 10.00 Volts."));
    Finish();
    EXPECT_EQ(desk.asker.Shown.last().icon, MsgIcon::Information);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(desk.model.Value(81), PercentParam);
    EXPECT_EQ(desk.model.Value(83), 20000);
    EXPECT_TRUE(desk.model.FileModified);
}
