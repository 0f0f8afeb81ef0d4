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
