#include "wizards/io/IOSetup.h"
#include "platform/RuntimeFailure.h"
#include "wizards/PlanTesting.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

constexpr int StopModeParam = 232; // "Ramp", "Quick", "Coast"

class IOSetupTest : public ::testing::Test
{
protected:
    IOSetupTest()
    {
        setup.calTexts = {Name("12"), Name("2000")};
        setup.inputValues.texts = {Name("1.5"), Name("50")};
        setup.inputValues.picks = {2, 1};
        setup.analogType = VoltageSignal;
        setup.polarity = Unipolar;
        setup.Destination = PercentParam;
        setup.saveInDrive = true; // which takes a link
    }

    void ChooseInput(InputType type, int input)
    {
        setup.branch = Inputs;
        setup.inputType = type;
        setup.input = input;
    }

    void ChooseOutput(OutputType type, int output, FreqDigMode mode = FrequencyMode)
    {
        setup.branch = Outputs;
        setup.outputType = type;
        setup.output = output;
        setup.freqDigMode = mode;
    }

    TestDesk desk;
    IOSetup setup{desk.table, desk.document};
};

TEST_F(IOSetupTest, WritesAnInputInTheOrderOfItsKind)
{
    const std::tuple<const char *, InputType, int, Polarity, AnalogType, int, const char *> rows[] = {
        {"analog 2", AnalogInput, 1, Unipolar, CurrentSignal, PercentParam,
         "24=218* 29=0 34=0 39=12 44=2000 49=150 54=5000 345=0 "},
        {"bipolar has no bias", AnalogInput, 0, Bipolar, VoltageSignal, PercentParam,
         "23=218* 28=1 33=1 38=12 43=2000 53=5000 344=0 "},
        {"analog 5 has no type", AnalogInput, 4, Unipolar, VoltageSignal, PercentParam,
         "27=218* 32=0 42=12 47=2000 52=150 57=5000 348=0 "},
        {"listed and bipolar", AnalogInput, 0, Bipolar, VoltageSignal, StopModeParam,
         "23=232* 28=1 33=1 38=12 43=2000 53=1 344=0 "},
        {"digital 7", DigitalInput, 6, Bipolar, VoltageSignal, PercentParam, "7=218* 14=150 21=5000 "},
        {"digital listed", DigitalInput, 2, Unipolar, VoltageSignal, StopModeParam, "3=232* 10=2 17=1 "},
        {"frequency", FrequencyInput, 0, Bipolar, CurrentSignal, PercentParam,
         "63=218* 64=12 65=2000 66=150 67=5000 349=0 "},
    };
    EXPECT_EQ(Writes(setup.Plan()), "") << "while no kind is chosen";
    // What was answered for the other branch before does not count.
    setup.outputType = RelayOutput;
    setup.output = 1;
    for (const auto &[what, type, input, polarity, signal, destination, writes] : rows) {
        ChooseInput(type, input);
        setup.polarity = polarity;
        setup.analogType = signal;
        setup.Destination = std::int16_t(destination);
        EXPECT_EQ(Writes(setup.Plan()), writes) << what;
    }
}

TEST_F(IOSetupTest, WritesAnOutputInTheOrderOfItsKind)
{
    const std::tuple<OutputType, int, FreqDigMode, int, const char *> rows[] = {
        {AnalogOutput, 1, DigitalMode, 217, "82=217* 86=1000 84=4000 88=1 "},
        {AnalogOutput, 0, DigitalMode, StopModeParam, "81=232* 85=1000 83=20000 87=1 "},
        {FreqDigOutput, 0, FrequencyMode, 217, "89=217* 90=0 96=5 95=20 "},
        {FreqDigOutput, 0, DigitalMode, 217, "90=1 89=217* 92=100 93=500 91=1 "},
        {RelayOutput, 2, FrequencyMode, 217, "71=217* 77=100 80=500 74=1 "},
        {RelayOutput, 0, FrequencyMode, StopModeParam, "69=232* 75=0 78=2 72=1 "},
    };
    setup.branch = Outputs;
    EXPECT_EQ(Writes(setup.Plan()), "") << "while no kind is chosen";
    setup.outputValues.texts = {Name("1"), Name("5")};
    setup.outputValues.picks = {0, 2};
    for (const auto &[type, output, mode, source, writes] : rows) {
        ChooseOutput(type, output, mode);
        setup.Source = std::int16_t(source);
        EXPECT_EQ(Writes(setup.Plan()), writes);
        // A scaled output is typed in its own unit, whatever the source.
        EXPECT_EQ(setup.OutputValuesView().IsListed(), type == RelayOutput && source == StopModeParam);
    }
}

TEST_F(IOSetupTest, PlansExactlyWhatWritingStepByStepWouldLeave)
{
    // The link's rule clamps and re-scales 92 and 93 before the values after it are written.
    ChooseOutput(FreqDigOutput, 0, DigitalMode);
    setup.Source = 123;
    setup.outputValues.texts = {Name("90"), Name("60")};
    TestDesk other;
    const std::tuple<int, int, bool> steps[] = {
        {90, 1, false}, {89, 123, true}, {92, 90, false}, {93, 60, false}, {91, 1, false}};
    for (const auto &[p, raw, refresh] : steps)
        other.table.SetParamValue(p, raw, true, refresh);
    const auto before = Snapshot(desk.table);
    setup.Plan();
    EXPECT_EQ(Snapshot(desk.table), before);
    setup.WriteIOSetup();
    EXPECT_EQ(Snapshot(desk.table), Snapshot(other.table));
}

TEST_F(IOSetupTest, ScalesTheGainToTheRangeOfTheSourceAndClipsIt)
{
    // Last comes the level that cannot be met and that the user is told of.
    const std::tuple<OutputType, std::int32_t, const char *, const char *, const char *, Name> rows[] = {
        {AnalogOutput, 20000, "0", "8", "85=0 83=8000 87=1 ", ""},
        {AnalogOutput, 10000, "1.00", "10.00", "85=1000 83=9000 87=1 ", ""},
        {AnalogOutput, 9999, "-2.5", "-8", "85=-2500 83=-5501 87=1 ", ""},
        {AnalogOutput, 5000, "0", "10", "85=0 83=20000 87=1 ", ""},
        {AnalogOutput, 4999, "0", "10", "85=0 83=20000 87=1 ", "10 Volts"},
        {AnalogOutput, 1, "0", "-10", "85=0 83=-100000000 87=1 ", ""},
        {FreqDigOutput, 10000, "100", "2000", "90=0 96=500 95=9500 ", ""},
        {FreqDigOutput, 4000, "0", "1600", "90=0 96=0 95=20000 ", ""},
        {FreqDigOutput, 4000, "0", "1601", "90=0 96=0 95=20000 ", "1601 Hertz"},
    };
    setup.Source = PercentParam;
    for (const auto &[type, sourceMax, bias, gain, writes, notMet] : rows) {
        SCOPED_TRACE(writes);
        ChooseOutput(type, 0);
        desk.table.Row(PercentParam).Max = sourceMax;
        setup.outputValues.texts = {Name(bias), Name(gain)};
        const WritePlan plan = setup.Plan();
        EXPECT_EQ(Writes(plan), (type == AnalogOutput ? "81=218* " : "89=218* ") + std::string(writes));
        QStringList notices;
        if (!notMet.isEmpty())
            notices << QStringLiteral("Due to the limited range of (218) Reference 1,\r\nthe output cannot "
                                      "achieve the desired level of %1.")
                           .arg(notMet);
        EXPECT_EQ(plan.notices, notices);
    }
}

TEST_F(IOSetupTest, RefusesASourceWithoutRangeBeforeAnythingIsWritten)
{
    setup.outputValues.texts = {Name("0"), Name("10")};
    setup.Source = PercentParam;
    desk.table.Row(PercentParam).Max = 0;
    const auto before = Snapshot(desk.table);
    for (const OutputType type : {AnalogOutput, FreqDigOutput}) {
        ChooseOutput(type, 0);
        EXPECT_THROW(setup.WriteIOSetup(), RuntimeFailure);
    }
    ChooseInput(AnalogInput, 0);
    setup.calTexts[1] = Name("most");
    EXPECT_THROW(setup.WriteIOSetup(), RuntimeFailure);
    EXPECT_EQ(Snapshot(desk.table), before);
}

TEST_F(IOSetupTest, TheSignalDecidesRangeAndCalibrationHoweverItCameAbout)
{
    const std::tuple<AnalogType, Polarity, Name, Name, Name> rows[] = {
        {VoltageSignal, Bipolar, "-10V to +10V", "0.0 V and", "(zero voltage) level"},
        {CurrentSignal, Bipolar, "-20mA to +20mA", "0.0 mA and", "(zero current) level"},
        {CurrentSignal, Unipolar, "0mA to +20mA", "(or minimum current level) and", "(maximum) current"},
    };
    ChooseInput(AnalogInput, 0);
    for (const auto &[signal, polarity, range, online, offline] : rows) {
        setup.polarity = polarity;
        setup.analogType = signal;
        EXPECT_TRUE(setup.AnalogRangeText().endsWith(u' ' + range)) << range.toStdString();
        for (const bool isOnline : {true, false}) {
            desk.table.SetPortOpen(isOnline);
            EXPECT_TRUE(setup.CalibrateText().contains(isOnline ? online : offline)) << range.toStdString();
        }
    }
    ChooseInput(FrequencyInput, 0);
    EXPECT_EQ(setup.CalMin(), 0) << "whatever polarity an analog input had";
    EXPECT_EQ(setup.CalMax(), 60000);
}

TEST_F(IOSetupTest, ListsAValueInTheScaleItWasConvertedWith)
{
    ChooseInput(DigitalInput, 0);
    setup.Destination = StopModeParam;
    desk.table.Row(8).Attributes = desk.table.Row(StopModeParam).Attributes;
    // Neither value has a text in the list of stop modes.
    for (const std::int32_t old : {-1, 7}) {
        desk.table.Row(8).Value = old;
        const std::vector<PlannedLine> lines = setup.Plan().Lines(desk.table);
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_EQ(lines[0].newText, Name("232 ") + desk.table.Row(StopModeParam).Name);
        EXPECT_EQ(lines[1].oldText, QString::number(old));
        EXPECT_EQ(lines[1].newText, Name("Coast"));
    }
    setup.Destination = PercentParam;
    EXPECT_EQ(setup.Plan().Lines(desk.table)[2].newText, Name("50.00 %"));
}

} // namespace quorvik::testing
