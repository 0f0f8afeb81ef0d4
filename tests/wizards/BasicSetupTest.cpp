#include "wizards/basic/BasicSetup.h"
#include "platform/RuntimeFailure.h"
#include "wizards/PlanTesting.h"

#include <gtest/gtest.h>

using namespace quorvik;
using namespace quorvik::testing;
using ::testing::ElementsAreArray;

namespace
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
            setup.SetText(entry, QString::fromLatin1(text));
    }

    void ExpectFailure(const QString &sentencePart)
    {
        const auto before = Snapshot(desk.model);
        try {
            setup.WriteBasicSetup();
            ADD_FAILURE() << "written in spite of " << sentencePart.toStdString();
        } catch (const RuntimeFailure &failure) {
            EXPECT_TRUE(failure.Sentence().contains(sentencePart)) << failure.Sentence().toStdString();
        }
        EXPECT_EQ(Snapshot(desk.model), before);
    }

    TestDesk desk;
    BasicSetup setup{desk.model};
};

const NumberAndRaw Head = {{123, 120}, {128, 500},  {339, 5000}, {104, 0}, {329, 0},
                           {331, 1},   {125, 1750}, {199, 1750}, {109, 0}};
const NumberAndRaw Velocity = {{197, 2}, {127, 1}, {124, 3}, {190, 8571}, {191, -5000}};
const NumberAndRaw Tail = {{218, 1250}, {219, -2500}, {220, 0},    {221, 500},   {226, 50},  {227, 50},
                           {228, 50},   {229, 73},    {307, 5},    {308, 100},   {309, 100}, {310, 100},
                           {245, 0},    {232, 0},     {99, 15000}, {100, -12000}};

NumberAndRaw Joined(std::initializer_list<NumberAndRaw> parts)
{
    NumberAndRaw all;
    for (const NumberAndRaw &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace

TEST_F(BasicSetupTest, WritesTheRowsOfTheModeInTheirOrder)
{
    setup.feedback = EncoderFeedback;
    setup.tachType = 1;
    setup.encoderLines = 3;
    const struct {
        OperatingMode mode;
        NumberAndRaw middle;
    } rows[] = {
        {StandardVelocity, Joined({{{110, 0}}, Velocity})},
        {FieldCrossover, Joined({{{110, 0}, {423, 1}, {424, 1875}, {248, 1}}, Velocity})},
        {Torque, {{110, 1}}},
    };
    for (const auto &row : rows) {
        setup.operatingMode = row.mode;
        EXPECT_THAT(Writes(setup.Plan()), ElementsAreArray(Joined({Head, row.middle, Tail}))) << row.mode;
    }
}

TEST_F(BasicSetupTest, StoresTheIndexOfEachChoice)
{
    const auto written = [this](int p) {
        for (const PlannedWrite &write : setup.Plan().writes)
            if (write.param == p)
                return write.rawValue;
        return -99;
    };
    for (int i = 0; i < 3; ++i) {
        setup.feedback = i;
        setup.stopMode = i;
        EXPECT_EQ(written(197), i);
        EXPECT_EQ(written(232), i);
    }
    setup.startStopLogic = TwoWire;
    EXPECT_EQ(written(245), 1);
    setup.feedback = NoFeedback;
    ExpectFailure(desk.model.ParamTable[197].Name);
}

TEST_F(BasicSetupTest, TakesAnEmptyFieldCurrentOnlyFromAMotorWithoutField)
{
    const struct {
        const char *text;
        std::int32_t raw;
    } rows[] = {{"", 0}, {"none", 0}, {"2", 2500}};
    setup.fieldType = PermanentMagnet;
    for (const auto &row : rows) {
        setup.SetText(Entry::BaseFieldCurrent, QString::fromLatin1(row.text));
        const NumberAndRaw writes = Writes(setup.Plan());
        EXPECT_EQ(writes[2], std::make_pair(339, row.raw)) << row.text;
        EXPECT_EQ(writes[5], std::make_pair(331, 0));
    }
    setup.fieldType = Shunt;
    setup.SetText(Entry::BaseFieldCurrent, {});
    ExpectFailure(QStringLiteral("Base Speed Field Current: "));
}

TEST_F(BasicSetupTest, NamesTheEntryThatCannotBeConvertedAndWritesNothing)
{
    const struct {
        Entry entry;
        const char *text;
        const char *named;
        OperatingMode mode;
    } rows[] = {
        {Entry::ForwardMaxSpeed, "fast", "Forward Max Speed: ", StandardVelocity},
        {Entry::ReverseMaxSpeed, "-", "Reverse Max Speed: ", StandardVelocity},
        {Entry::TopFieldCurrent, "", "Top Speed Field Current: ", FieldCrossover},
        {Entry::NegativeLimit, "low", "Negative I Limit: ", Torque},
        {Entry::RatedSpeed, "0", "Forward Max Speed: Division by zero.", StandardVelocity},
    };
    for (const auto &row : rows) {
        const QString good = setup.Text(row.entry);
        setup.operatingMode = row.mode;
        setup.SetText(row.entry, QString::fromLatin1(row.text));
        ExpectFailure(QString::fromLatin1(row.named));
        setup.SetText(row.entry, good);
    }
}

TEST_F(BasicSetupTest, SavesInTheDriveLastAndOnlyOnLine)
{
    const struct {
        bool online;
        bool wanted;
        bool saved;
    } rows[] = {{true, true, true}, {true, false, false}, {false, true, false}};
    for (const auto &row : rows) {
        desk.online = row.online;
        setup.saveInDrive = row.wanted;
        desk.model.FileModified = false;
        const WritePlan plan = setup.WriteBasicSetup();
        EXPECT_EQ(plan.writes.back().param == Param::SaveParameters, row.saved);
        EXPECT_EQ(desk.model.DriveModified, !row.saved);
        EXPECT_TRUE(desk.model.FileModified);
    }
}

TEST_F(BasicSetupTest, CommitQueuesWhatTheListShowsInItsOrder)
{
    desk.online = true;
    setup.saveInDrive = true;
    const std::vector<PlannedLine> lines = setup.Plan().Lines(desk.model);
    std::vector<int> queued;
    QObject::connect(&desk.model, &Model::TitleChanged, [&] {
        for (int p = 0; p <= desk.model.LastParam; ++p)
            if (std::exchange(desk.model.ParamTable[p].WriteFlag, WriteState::None) == WriteState::Queued)
                queued.push_back(p);
    });
    setup.WriteBasicSetup();
    std::vector<int> listed;
    for (const PlannedLine &line : lines)
        listed.push_back(line.param);
    EXPECT_EQ(queued, listed);
    EXPECT_EQ(lines[0].name, QStringLiteral("Nameplate Motor I"));
    EXPECT_EQ(lines[0].oldText, QStringLiteral("174 Amps"));
    EXPECT_EQ(lines[0].newText, QStringLiteral("120 Amps"));
}

TEST(TachJumpersTest, SumUpToTheVoltageWithinWhatTheBoardHas)
{
    const struct {
        int volts;
        TachJumpers jumpers;
    } rows[] = {
        {0, {10, 0, 0}},      {9, {10, 0, 0}},       {10, {10, 0, 0}},    {11, {10, 0, 1}},
        {37, {30, 0, 7}},     {99, {90, 0, 9}},      {100, {100, 0, 0}},  {109, {100, 0, 9}},
        {110, {10, 100, 0}},  {150, {50, 100, 0}},   {199, {90, 100, 9}}, {200, {100, 100, 0}},
        {201, {100, 100, 0}}, {9999, {100, 100, 0}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(JumpersFor(row.volts), row.jumpers) << row.volts;
}

TEST_F(BasicSetupTest, RoundsSpeedAndRatingBeforeTheyMakeAVoltage)
{
    const struct {
        const char *speed;
        const char *rating;
        double volts;
    } rows[] = {{"1750", "18.5", 31.5}, {"1750", "19.5", 35.0}, {"1000", "200", 200.0},
                {"", "50", 0.0},        {"1750", "x", 0.0},     {"2001", "100", 200.1}};
    for (const auto &row : rows) {
        setup.SetText(Entry::RatedSpeed, QString::fromLatin1(row.speed));
        setup.SetText(Entry::TachRating, QString::fromLatin1(row.rating));
        EXPECT_DOUBLE_EQ(setup.TachVoltage(), row.volts) << row.speed << ' ' << row.rating;
    }
    EXPECT_EQ(setup.LimitAmpsText(-75), QStringLiteral("-90"));
    setup.SetText(Entry::ArmatureCurrent, QStringLiteral("33"));
    EXPECT_EQ(setup.LimitAmpsText(150), QStringLiteral("49.5"));
    setup.SetText(Entry::ArmatureCurrent, {});
    EXPECT_EQ(setup.LimitAmpsText(150), QStringLiteral("0"));
}
