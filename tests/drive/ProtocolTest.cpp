#include "DriveRig.h"

#include "platform/Waiting.h"

#include <ctime>
#include <gtest/gtest.h>

namespace quorvik::drive
{

constexpr int Accepted = 6;
constexpr int Refused = 0x15;

TEST(Protocol, AnswersByteForByteAlsoWhatComesInPieces)
{
    DriveRig rig;
    rig.table.Put(217, -2);
    rig.table.Put(164, 60000);
    const std::pair<const char *, const char *> rows[] = {
        {"02 00 00 D9 D9", "02 00 FF FE 01"}, // signed, -2
        {"02 00 00 A4 A4", "02 00 EA 60 8A"}, // unsigned, 60000
        {"02 01 00 C1 00 00 C0", "15"},       // a measured value
    };
    for (const auto &[request, reply] : rows) {
        const auto before = rig.server->Counts().bytesIn;
        rig.Send(Hex(request).left(3));
        ASSERT_TRUE(rig.WaitFor([&] { return rig.server->Counts().bytesIn == before + 3; }));
        EXPECT_EQ(rig.Exchange(Hex(request).mid(3), int(Hex(reply).size())), Hex(reply)) << request;
    }
}

TEST(Protocol, RunGoesOnWithTheNextNumberUntilItIsEnded)
{
    DriveRig rig;
    for (int p = 217; p <= 219; ++p)
        rig.table.Put(p, p);
    EXPECT_EQ(rig.Read(217), 217);
    EXPECT_EQ(rig.Exchange(Hex("06"), 5).toHex(), "020000dada");
    EXPECT_EQ(rig.Exchange(Hex("06"), 5).toHex(), "020000dbdb");
    EXPECT_TRUE(rig.IsUnanswered(Hex("04 06"))) << "an ACK after the end of the run";
    rig.Read(433);
    EXPECT_TRUE(rig.IsUnanswered(Hex("06"))) << "there is nothing after the last parameter";
    rig.Read(217);
    EXPECT_EQ(rig.Write(220, 5), Accepted);
    EXPECT_TRUE(rig.IsUnanswered(Hex("06"))) << "a write ends the run";
    EXPECT_EQ(rig.server->Counts().runReads, 2);
    EXPECT_EQ(rig.server->Counts().runEnds, 1);
}

TEST(Protocol, WhatIsNoRequestGetsNoAnswer)
{
    DriveRig rig;
    EXPECT_TRUE(rig.IsUnanswered(Hex("02 00 01 A6 A6"))) << "wrong check character";
    EXPECT_TRUE(rig.IsUnanswered(Hex("02 01 00 D9 00 05 00"))) << "a write with a wrong check character";
    EXPECT_EQ(rig.table.Get(217), 0);
    EXPECT_TRUE(rig.IsUnanswered(Hex("FF 00 7E"))) << "noise before a packet";
    EXPECT_TRUE(rig.IsUnanswered(Hex("02 03"))) << "a command that does not exist";
    EXPECT_TRUE(rig.IsUnanswered(ReadRequest(434))) << "beyond the table";
    EXPECT_EQ(rig.server->Counts().badRequests, 2);
    rig.server->SetClaimedLastParam(400);
    EXPECT_TRUE(rig.IsUnanswered(ReadRequest(401))) << "beyond what the drive claims";
}

TEST(Protocol, TakesOrRefusesWritesByAccessLimitsAndState)
{
    const struct {
        const char *what;
        State state;
        int p;
        int value;
        int answer;
    } rows[] = {
        {"read only", State::Stop, 193, 0, Refused},
        {"the model", State::Stop, 411, 1, Refused},
        {"upper limit", State::Run, 217, 10000, Accepted},
        {"above it", State::Run, 217, 10001, Refused},
        {"lower limit", State::Run, 217, -10000, Accepted},
        {"below it", State::Run, 217, -10001, Refused},
        {"stop-only, emergency stop", State::EStop, 1, 218, Accepted},
        {"stop-only, running", State::Run, 1, 218, Refused},
        {"stop-only, still ramping", State::RampStop, 1, 218, Refused},
        {"a command left alone in a whole-table write", State::Stop, 408, 0, Accepted},
    };
    for (const auto &row : rows) {
        DriveRig rig;
        rig.table.Put(Param::DriveState, int(row.state));
        const int before = rig.table.Get(row.p);
        EXPECT_EQ(rig.Write(row.p, row.value), row.answer) << row.what;
        EXPECT_EQ(rig.table.Get(row.p), row.answer == Accepted ? row.value : before) << row.what;
    }
}

TEST(Protocol, LimitsFollowTheSelectorAndTheModel)
{
    DriveRig rig;
    EXPECT_EQ(rig.Write(15, 2), Refused) << "input 1 starts on a switch";
    EXPECT_EQ(rig.Write(1, 217), Accepted);
    EXPECT_EQ(rig.Write(15, 10000), Accepted);
    EXPECT_EQ(rig.Write(15, 10001), Refused);
    EXPECT_EQ(rig.Write(1, 239), Accepted);
    EXPECT_EQ(rig.Read(15), 1) << "held within the narrower limits";
    rig.table.SetDriveModel(17);
    EXPECT_EQ(rig.Read(122), 36);
    EXPECT_EQ(rig.Write(123, 37), Refused);
    EXPECT_EQ(rig.Write(123, 6), Refused);
    EXPECT_EQ(rig.Write(123, 7), Accepted);
}

TEST(Protocol, SavesAndLoadsAfterAWhile)
{
    DriveRig rig;
    const std::pair<int, int> changes[] = {{217, 1234}, {123, 100}, {406, 1}, {217, 99},
                                           {123, 50},   {1, 217},   {407, 1}};
    for (const auto &[p, value] : changes) {
        EXPECT_EQ(rig.Write(p, value), Accepted) << p;
        EXPECT_EQ(rig.Read(p), value) << p;
        ASSERT_TRUE(rig.WaitFor([&] { return rig.Read(406) == 0 && rig.Read(407) == 0; }));
    }
    EXPECT_EQ(rig.Read(217), 1234);
    EXPECT_EQ(rig.Read(123), 100) << "the rating must not take the motor's place";
    EXPECT_EQ(rig.Write(15, 2), Refused) << "the limits come back with the selector";
}

TEST(Protocol, RestartIsSilentAndForgetsWhatWasNotSaved)
{
    for (const int command : {1, 2}) {
        DriveRig rig;
        EXPECT_EQ(rig.Write(217, 1234), Accepted);
        rig.Send(WriteRequest(408, command) + ReadRequest(217));
        ASSERT_TRUE(rig.WaitFor([&] { return rig.server->Counts().unanswered == 1; }));
        EXPECT_TRUE(rig.commands.IsSilent());
        ASSERT_TRUE(rig.WaitFor([&] { return !rig.commands.IsSilent(); }));
        EXPECT_EQ(rig.Exchange(ReadRequest(217), 5).toHex(), "0200000000");
        EXPECT_EQ(rig.Read(408), 0);
    }
}

TEST(Protocol, LineSurvivesTheToolClosingIt)
{
    DriveRig rig;
    rig.Close();
    const std::clock_t before = std::clock();
    PumpWhile([] { return true; }, QDeadlineTimer(300));
    EXPECT_LT(double(std::clock() - before) / CLOCKS_PER_SEC, 0.2) << "it spins while nobody listens";
    rig.Reopen();
    EXPECT_EQ(rig.Exchange(ReadRequest(0), 5).size(), 5);
}

} // namespace quorvik::drive
