#include "wizards/basic/BasicSetup.h"
#include "platform/RuntimeFailure.h"
#include "wizards/PlanTesting.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

class BasicSetupTest : public ::testing::Test
{
protected:
    BasicSetupTest()
    {
        const std::pair<Entry, const char *> answers[] = {
            {Entry::ArmatureCurrent, "120"},
            {Entry::ArmatureVoltage, "500"},
            {Entry::RatedSpeed, "1750"},
            {Entry::BaseFieldCurrent, "4.00"},
            {Entry::TopFieldCurrent, "1.50"},
            {Entry::ForwardMaxSpeed, "1500"},
            {Entry::ReverseMaxSpeed, "-875"},
            {Entry::Ref1, "12.5"},
            {Entry::Ref2, "-25"},
            {Entry::RunReverseDecel, "7.25"},
            {Entry::JogForwardAccel, "0.5"},
            {Entry::NegativeLimit, "-120.00"},
        };
        for (const auto &[entry, text] : answers)
            setup.SetText(entry, Name(text));
    }

    void ExpectFailure(const std::string &sentenceStart)
    {
        const auto before = Snapshot(desk.table);
        EXPECT_THAT([this] { setup.WriteBasicSetup(); },
                    ::testing::ThrowsMessage<RuntimeFailure>(::testing::StartsWith(sentenceStart)));
        EXPECT_EQ(Snapshot(desk.table), before);
    }

    TestDesk desk;
    BasicSetup setup{desk.table, desk.document};
};

TEST_F(BasicSetupTest, WritesTheRowsOfTheModeInTheirOrder)
{
    setup.tachType = 1;
    setup.encoderLines = 3;
    const std::tuple<OperatingMode, int, int, int, const char *, const char *> rows[] = {
        {StandardVelocity, EncoderFeedback, 0, ThreeWire, "110=0 197=2 127=1 124=3 190=8571 191=-5000 ",
         "245=0 232=0 "},
        {FieldCrossover, TachometerFeedback, 1, TwoWire,
         "110=0 423=1 424=1875 248=1 197=1 127=1 124=3 190=8571 191=-5000 ", "245=1 232=1 "},
        {Torque, NoFeedback, 2, ThreeWire, "110=1 ", "245=0 232=2 "},
    };
    for (const auto &[mode, feedback, stopMode, logic, middle, choices] : rows) {
        setup.operatingMode = mode;
        setup.feedback = feedback;
        setup.stopMode = stopMode;
        setup.startStopLogic = logic;
        EXPECT_EQ(Writes(setup.Plan()),
                  std::string("123=120 128=500 339=5000 104=0 329=0 331=1 125=1750 199=1750 109=0 ") +
                      middle +
                      "218=1250 219=-2500 220=0 221=500 226=50 227=50 228=50 229=73 307=5 308=100 309=100 "
                      "310=100 " +
                      choices + "99=15000 100=-12000 ");
    }
}

TEST_F(BasicSetupTest, TakesAnEmptyFieldCurrentOnlyFromAMotorWithoutField)
{
    setup.fieldType = PermanentMagnet;
    for (const auto &[text, demand] : {std::pair("", "339=0 "), {"none", "339=0 "}, {"2", "339=2500 "}}) {
        setup.SetText(Entry::BaseFieldCurrent, Name(text));
        const std::string writes = Writes(setup.Plan());
        EXPECT_NE(writes.find(demand), std::string::npos) << writes;
        EXPECT_NE(writes.find("331=0 "), std::string::npos) << writes;
    }
    setup.fieldType = Shunt;
    setup.SetText(Entry::BaseFieldCurrent, {});
    ExpectFailure("Base Speed Field Current: ");
}

TEST_F(BasicSetupTest, NamesTheEntryThatCannotBeConvertedAndWritesNothing)
{
    const std::tuple<Entry, const char *, const char *, OperatingMode> rows[] = {
        {Entry::ForwardMaxSpeed, "fast", "Forward Max Speed: ", StandardVelocity},
        {Entry::ReverseMaxSpeed, "-", "Reverse Max Speed: ", StandardVelocity},
        {Entry::TopFieldCurrent, "", "Top Speed Field Current: ", FieldCrossover},
        {Entry::NegativeLimit, "low", "Negative I Limit: ", Torque},
        {Entry::RatedSpeed, "0", "Forward Max Speed: Division by zero.", StandardVelocity},
    };
    for (const auto &[entry, text, named, mode] : rows) {
        const QString good = setup.Text(entry);
        setup.operatingMode = mode;
        setup.SetText(entry, Name(text));
        ExpectFailure(named);
        setup.SetText(entry, good);
    }
    setup.feedback = NoFeedback;
    ExpectFailure(desk.table.Row(197).Name.toStdString());
}

TEST_F(BasicSetupTest, CommitQueuesWhatTheListShowsAndSavesInTheDriveLast)
{
    std::vector<int> queued;
    QObject::connect(&desk.document, &Document::TitleChanged, [&] {
        for (int p = 0; p <= desk.table.LastParam; ++p)
            if (std::exchange(desk.table.Row(p).WriteFlag, WriteState::None) == WriteState::Queued)
                queued.push_back(p);
    });
    for (const auto &[online, wanted] : {std::pair(true, true), {true, false}, {false, true}}) {
        desk.table.SetPortOpen(online);
        setup.saveInDrive = wanted;
        std::vector<int> listed;
        for (const PlannedLine &line : setup.Plan().Lines(desk.table))
            listed.push_back(line.param);
        queued.clear();
        setup.WriteBasicSetup();
        EXPECT_EQ(queued, listed);
        EXPECT_EQ(queued.back() == Param::SaveParameters, online && wanted);
        EXPECT_EQ(desk.document.DriveModified, !(online && wanted));
        EXPECT_TRUE(desk.document.FileModified);
    }
}

TEST(TachJumpersTest, SumUpToTheVoltageWithinWhatTheBoardHas)
{
    const std::tuple<int, TachJumpers> rows[] = {
        {0, {10, 0, 0}},      {9, {10, 0, 0}},       {10, {10, 0, 0}},    {11, {10, 0, 1}},
        {37, {30, 0, 7}},     {99, {90, 0, 9}},      {100, {100, 0, 0}},  {109, {100, 0, 9}},
        {110, {10, 100, 0}},  {150, {50, 100, 0}},   {199, {90, 100, 9}}, {200, {100, 100, 0}},
        {201, {100, 100, 0}}, {9999, {100, 100, 0}},
    };
    for (const auto &[volts, jumpers] : rows)
        EXPECT_EQ(JumpersFor(volts), jumpers) << volts;
}

TEST_F(BasicSetupTest, RoundsSpeedAndRatingBeforeTheyMakeAVoltage)
{
    const std::tuple<const char *, const char *, double> rows[] = {
        {"1750", "18.5", 31.5}, {"1750", "19.5", 35.0}, {"1000", "200", 200.0},
        {"", "50", 0.0},        {"1750", "x", 0.0},     {"2001", "100", 200.1}};
    for (const auto &[speed, rating, volts] : rows) {
        setup.SetText(Entry::RatedSpeed, Name(speed));
        setup.SetText(Entry::TachRating, Name(rating));
        EXPECT_DOUBLE_EQ(setup.TachVoltage(), volts) << speed << ' ' << rating;
    }
    EXPECT_EQ(setup.LimitAmpsText(-75), Name("-90"));
    setup.SetText(Entry::ArmatureCurrent, Name("33"));
    EXPECT_EQ(setup.LimitAmpsText(150), Name("49.5"));
    setup.SetText(Entry::ArmatureCurrent, {});
    EXPECT_EQ(setup.LimitAmpsText(150), Name("0"));
}

} // namespace quorvik::testing
