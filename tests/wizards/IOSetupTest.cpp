#include "wizards/io/IOSetup.h"
#include "platform/RuntimeFailure.h"
#include "wizards/PlanTesting.h"

#include <gtest/gtest.h>

using namespace quorvik;
using namespace quorvik::testing;
using ::testing::ElementsAreArray;

namespace
{

constexpr int PercentParam = 218; // percent with two decimals
constexpr int ListedParam = 232;  // "Ramp", "Quick", "Coast"

class IOSetupTest : public ::testing::Test
{
protected:
    IOSetupTest()
    {
        setup.calTexts = {QStringLiteral("12"), QStringLiteral("2000")};
        setup.inputValues.texts = {QStringLiteral("1.5"), QStringLiteral("50")};
        setup.inputValues.picks = {2, 1};
        setup.analogType = VoltageSignal;
        setup.polarity = Unipolar;
        setup.Destination = PercentParam;
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
    IOSetup setup{desk.model};
};

} // namespace

TEST_F(IOSetupTest, WritesAnInputInTheOrderOfItsKind)
{
    const struct {
        const char *what;
        InputType type;
        int input;
        Polarity polarity;
        AnalogType signal;
        std::int16_t destination;
        NumberAndRaw writes;
    } rows[] = {
        {"analog 2",
         AnalogInput,
         1,
         Unipolar,
         CurrentSignal,
         PercentParam,
         {{24, 218}, {29, 0}, {34, 0}, {39, 12}, {44, 2000}, {49, 150}, {54, 5000}, {345, 0}}},
        {"bipolar has no bias",
         AnalogInput,
         0,
         Bipolar,
         VoltageSignal,
         PercentParam,
         {{23, 218}, {28, 1}, {33, 1}, {38, 12}, {43, 2000}, {53, 5000}, {344, 0}}},
        {"analog 5 has no type",
         AnalogInput,
         4,
         Unipolar,
         VoltageSignal,
         PercentParam,
         {{27, 218}, {32, 0}, {42, 12}, {47, 2000}, {52, 150}, {57, 5000}, {348, 0}}},
        {"listed and bipolar",
         AnalogInput,
         0,
         Bipolar,
         VoltageSignal,
         ListedParam,
         {{23, 232}, {28, 1}, {33, 1}, {38, 12}, {43, 2000}, {53, 1}, {344, 0}}},
        {"digital 7",
         DigitalInput,
         6,
         Bipolar,
         VoltageSignal,
         PercentParam,
         {{7, 218}, {14, 150}, {21, 5000}}},
        {"digital listed",
         DigitalInput,
         2,
         Unipolar,
         VoltageSignal,
         ListedParam,
         {{3, 232}, {10, 2}, {17, 1}}},
        {"frequency",
         FrequencyInput,
         0,
         Bipolar,
         CurrentSignal,
         PercentParam,
         {{63, 218}, {64, 12}, {65, 2000}, {66, 150}, {67, 5000}, {349, 0}}},
    };
    for (const auto &row : rows) {
        ChooseInput(row.type, row.input);
        setup.polarity = row.polarity;
        setup.analogType = row.signal;
        setup.Destination = row.destination;
        EXPECT_THAT(Writes(setup.Plan()), ElementsAreArray(row.writes)) << row.what;
    }
}

TEST_F(IOSetupTest, RefreshesTheLinkOffLineOnly)
{
    ChooseInput(DigitalInput, 0);
    for (const bool online : {false, true}) {
        desk.online = online;
        const WritePlan plan = setup.Plan();
        EXPECT_EQ(plan.writes[0].refresh, !online);
        EXPECT_FALSE(plan.writes[1].refresh);
    }
}

TEST_F(IOSetupTest, PlansExactlyWhatWritingStepByStepWouldLeave)
{
    // The link's rule clamps and re-scales 92 and 93 before the values after it are written.
    ChooseOutput(FreqDigOutput, 0, DigitalMode);
    setup.Source = 123;
    setup.outputValues.texts = {QStringLiteral("90"), QStringLiteral("60")};
    TestDesk other;
    const std::tuple<int, int, bool> steps[] = {
        {90, 1, false}, {89, 123, true}, {92, 90, false}, {93, 60, false}, {91, 1, false}};
    for (const auto &[p, raw, refresh] : steps)
        other.model.SetParamValue(p, raw, true, refresh);
    const auto before = Snapshot(desk.model);
    setup.Plan();
    EXPECT_EQ(Snapshot(desk.model), before);
    setup.WriteIOSetup();
    EXPECT_EQ(Snapshot(desk.model), Snapshot(other.model));
}

TEST_F(IOSetupTest, WritesAnOutputInTheOrderOfItsKind)
{
    const struct {
        const char *what;
        OutputType type;
        int output;
        FreqDigMode mode;
        std::int16_t source;
        NumberAndRaw writes;
    } rows[] = {
        {"analog 2", AnalogOutput, 1, DigitalMode, 217, {{82, 217}, {86, 1000}, {84, 4000}, {88, 1}}},
        {"frequency", FreqDigOutput, 0, FrequencyMode, 217, {{89, 217}, {90, 0}, {96, 5}, {95, 20}}},
        {"digital", FreqDigOutput, 0, DigitalMode, 217, {{90, 1}, {89, 217}, {92, 100}, {93, 500}, {91, 1}}},
        {"relay 3", RelayOutput, 2, FrequencyMode, 217, {{71, 217}, {77, 100}, {80, 500}, {74, 1}}},
        {"relay listed", RelayOutput, 0, FrequencyMode, ListedParam, {{69, 232}, {75, 0}, {78, 2}, {72, 1}}},
    };
    setup.outputValues.texts = {QStringLiteral("1"), QStringLiteral("5")};
    setup.outputValues.picks = {0, 2};
    for (const auto &row : rows) {
        ChooseOutput(row.type, row.output, row.mode);
        setup.Source = row.source;
        EXPECT_THAT(Writes(setup.Plan()), ElementsAreArray(row.writes)) << row.what;
    }
}

TEST_F(IOSetupTest, ScalesTheGainToTheRangeOfTheSourceAndClipsIt)
{
    const struct {
        OutputType type;
        std::int32_t sourceMax;
        const char *bias;
        const char *gain;
        std::int32_t rawBias;
        std::int32_t rawGain;
        bool told;
    } rows[] = {
        {AnalogOutput, 20000, "0", "8", 0, 8000, false},
        {AnalogOutput, 12000, "0", "8", 0, 8000, false},
        {AnalogOutput, 10000, "1.00", "10.00", 1000, 9000, false},
        {AnalogOutput, 9999, "0", "8", 0, 8001, false},
        {AnalogOutput, 9999, "-2.5", "-8", -2500, -5501, false},
        {AnalogOutput, 5000, "0", "10", 0, 20000, false},
        {AnalogOutput, 4999, "0", "10", 0, 20000, true},
        {AnalogOutput, 1, "0", "-10", 0, -100000000, false},
        {FreqDigOutput, 10000, "100", "2000", 500, 9500, false},
        {FreqDigOutput, 9999, "100", "2000", 500, 9501, false},
        {FreqDigOutput, 4000, "0", "1600", 0, 20000, false},
        {FreqDigOutput, 4000, "0", "1601", 0, 20000, true},
    };
    setup.Source = PercentParam;
    for (const auto &row : rows) {
        ChooseOutput(row.type, 0);
        desk.model.ParamTable[PercentParam].Max = row.sourceMax;
        setup.outputValues.texts = {QString::fromLatin1(row.bias), QString::fromLatin1(row.gain)};
        const WritePlan plan = setup.Plan();
        const bool analog = row.type == AnalogOutput;
        const NumberAndRaw writes = Writes(plan);
        const std::size_t bias = analog ? 1 : 2;
        EXPECT_EQ(writes[bias], std::make_pair(analog ? 85 : 96, row.rawBias)) << row.sourceMax;
        EXPECT_EQ(writes[bias + 1], std::make_pair(analog ? 83 : 95, row.rawGain)) << row.sourceMax;
        ASSERT_EQ(plan.notices.size(), row.told ? 1 : 0) << row.sourceMax;
        if (row.told) {
            EXPECT_EQ(
                plan.notices[0],
                QStringLiteral("Due to the limited range of (218) Reference 1,\r\nthe output cannot achieve "
                               "the desired level of %1 %2.")
                    .arg(QString::fromLatin1(row.gain),
                         analog ? QStringLiteral("Volts") : QStringLiteral("Hertz")));
        }
    }
}

TEST_F(IOSetupTest, RefusesASourceWithoutRangeBeforeAnythingIsWritten)
{
    setup.outputValues.texts = {QStringLiteral("0"), QStringLiteral("10")};
    setup.Source = PercentParam;
    desk.model.ParamTable[PercentParam].Max = 0;
    const auto before = Snapshot(desk.model);
    for (const OutputType type : {AnalogOutput, FreqDigOutput}) {
        ChooseOutput(type, 0);
        EXPECT_THROW(setup.WriteIOSetup(), RuntimeFailure);
    }
    ChooseInput(AnalogInput, 0);
    setup.calTexts[1] = QStringLiteral("most");
    EXPECT_THROW(setup.WriteIOSetup(), RuntimeFailure);
    EXPECT_EQ(Snapshot(desk.model), before);
}

TEST_F(IOSetupTest, FollowsTheChoicesHoweverTheyCameAbout)
{
    const struct {
        InputType type;
        Polarity polarity;
        AnalogType signal;
        std::int32_t calMin;
        std::int32_t calMax;
        std::int32_t fullScale;
        const char *range;
    } rows[] = {
        {AnalogInput, Unipolar, CurrentSignal, 0, 4095, 20, "Maximum Range: 0mA to +20mA"},
        {AnalogInput, Bipolar, CurrentSignal, -2048, 2047, 20, "Maximum Range: -20mA to +20mA"},
        {AnalogInput, Unipolar, VoltageSignal, 0, 4095, 10, "Maximum Range: 0V to +10V"},
        {AnalogInput, Bipolar, VoltageSignal, -2048, 2047, 10, "Maximum Range: -10V to +10V"},
        {FrequencyInput, Bipolar, VoltageSignal, 0, 60000, 10, "Maximum Range: -10V to +10V"},
    };
    for (const auto &row : rows) {
        ChooseInput(row.type, 0);
        setup.polarity = row.polarity;
        setup.analogType = row.signal;
        EXPECT_EQ(setup.CalMin(), row.calMin);
        EXPECT_EQ(setup.CalMax(), row.calMax);
        EXPECT_EQ(setup.FullScale(), row.fullScale);
        EXPECT_EQ(setup.AnalogRangeText(), QString::fromLatin1(row.range));
    }
    setup.output = 2;
    setup.outputType = RelayOutput;
    ChooseInput(DigitalInput, 5);
    EXPECT_EQ(setup.BiasParam(), 13);
    EXPECT_EQ(setup.StatusParam(), 137);
    setup.branch = Outputs;
    EXPECT_EQ(setup.IOIndex(), 2);
    EXPECT_EQ(setup.BiasParam(), 77);
    EXPECT_EQ(setup.DestinationParam(), 6);
}

TEST_F(IOSetupTest, SavesInTheDriveLastAndOnlyOnLine)
{
    ChooseInput(DigitalInput, 0);
    setup.saveInDrive = true;
    EXPECT_NE(setup.Plan().writes.back().param, Param::SaveParameters);
    desk.online = true;
    const WritePlan plan = setup.WriteIOSetup();
    EXPECT_EQ(plan.writes.back().param, Param::SaveParameters);
    EXPECT_FALSE(desk.model.DriveModified);
    EXPECT_TRUE(desk.model.FileModified);
}

TEST_F(IOSetupTest, TellsHowToCalibrateTheSignalThatWasChosen)
{
    const struct {
        InputType type;
        AnalogType signal;
        Polarity polarity;
        bool online;
        const char *text;
    } rows[] = {
        {AnalogInput, CurrentSignal, Unipolar, true,
         "Adjust external current signal to 0.0 mA (or minimum current level) and click 0% Auto. Then, "
         "adjust "
         "current signal to maximum and click 100% Auto."},
        {AnalogInput, CurrentSignal, Bipolar, true,
         "Adjust external current signal to 0.0 mA and click 0% Auto. Then, adjust current signal to maximum "
         "and "
         "click 100% Auto."},
        {AnalogInput, CurrentSignal, Unipolar, false,
         "Enter the 0% (minimum) and 100% (maximum) current levels."},
        {AnalogInput, CurrentSignal, Bipolar, false,
         "Enter the 0% (zero current) level and 100% (maximum) current levels."},
        {AnalogInput, VoltageSignal, Unipolar, true,
         "Adjust external voltage signal to 0.0 V (or minimum voltage level) and click 0% Auto. Then, adjust "
         "voltage signal to maximum and click 100% Auto."},
        {AnalogInput, VoltageSignal, Bipolar, false,
         "Enter the 0% (zero voltage) level and 100% (maximum) voltage levels."},
        {FrequencyInput, VoltageSignal, Bipolar, true,
         "Adjust external frequency signal to 0 Hz (or minimum level) and click 0% Auto. Then, adjust "
         "frequency "
         "signal to maximum and click 100% Auto."},
    };
    for (const auto &row : rows) {
        ChooseInput(row.type, 0);
        setup.analogType = row.signal;
        setup.polarity = row.polarity;
        desk.online = row.online;
        EXPECT_EQ(setup.CalibrateText().toStdString(), row.text);
    }
}

TEST_F(IOSetupTest, AsksForTheValuesInTheUnitsOfTheOtherEnd)
{
    setup.Source = 190;
    const struct {
        OutputType type;
        FreqDigMode mode;
        const char *second;
        const char *unit;
        const char *range;
    } rows[] = {
        {AnalogOutput, DigitalMode,
         "Enter the desired output voltage level when the Forward Max Speed parameter is at 100%.", "Volts",
         "Valid Range: -10 Volts to +10 Volts"},
        {FreqDigOutput, FrequencyMode,
         "Enter the desired output frequency level when the Forward Max Speed parameter is at 100%.", "Hz",
         "Valid Range: 0 to 2000 Hz"},
        {FreqDigOutput, DigitalMode,
         "Enter the value that the Forward Max Speed parameter must reach to turn off the digital output.",
         "%", "Valid Range: 0.00 % to 100.00 %"},
        {RelayOutput, DigitalMode,
         "Enter the value that the Forward Max Speed parameter must reach to turn off the relay output.", "%",
         "Valid Range: 0.00 % to 100.00 %"},
    };
    for (const auto &row : rows) {
        ChooseOutput(row.type, 0, row.mode);
        const ValuesView view = setup.OutputValuesView();
        EXPECT_EQ(view.instructions[1].toStdString(), row.second);
        EXPECT_EQ(view.unit.toStdString(), row.unit);
        EXPECT_EQ(view.range.toStdString(), row.range);
        EXPECT_FALSE(view.IsListed());
    }
    // Analog and frequency levels are typed even where the source is picked from a list.
    setup.Source = ListedParam;
    for (const auto &row : rows) {
        ChooseOutput(row.type, 0, row.mode);
        const bool scaled = row.type == AnalogOutput || row.mode == FrequencyMode;
        EXPECT_EQ(setup.OutputValuesView().items.size(), scaled ? 0 : 3);
    }
}

TEST_F(IOSetupTest, ListsAValueInTheScaleItWasConvertedWith)
{
    ChooseInput(DigitalInput, 0);
    setup.Destination = ListedParam;
    desk.model.ParamTable[8].Attributes = desk.model.ParamTable[ListedParam].Attributes;
    // Neither value has a text in the list of stop modes.
    for (const std::int32_t old : {-1, 7}) {
        desk.model.ParamTable[8].Value = old;
        const std::vector<PlannedLine> lines = setup.Plan().Lines(desk.model);
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_EQ(lines[0].newText, QStringLiteral("232 ") + desk.model.ParamTable[ListedParam].Name);
        EXPECT_EQ(lines[1].oldText, QString::number(old));
        EXPECT_EQ(lines[1].newText, QStringLiteral("Coast"));
    }
    setup.Destination = PercentParam;
    EXPECT_EQ(setup.Plan().Lines(desk.model)[2].newText, QStringLiteral("50.00 %"));
}

TEST_F(IOSetupTest, WritesNothingWhileNoKindIsChosen)
{
    EXPECT_TRUE(setup.Plan().writes.empty());
    setup.branch = Outputs;
    EXPECT_TRUE(setup.Plan().writes.empty());
}
