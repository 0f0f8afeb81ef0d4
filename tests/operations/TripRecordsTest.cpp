#include "operations/TripRecords.h"

#include "link/ValueStates.h"
#include "operations/OperationsFixture.h"
#include "operations/TripReport.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"

#include <QSignalSpy>
#include <algorithm>
#include <gmock/gmock.h>

namespace quorvik::testing
{

using namespace Param;

class TripRecordsTest : public OperationsTest
{
protected:
    TripRecordsTest() { table.AddReadInterest(DriveState); }
    ~TripRecordsTest() override { drive.GoOffLine(OffLineReason::User); }

    bool WaitUntil(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(5000));
    }
    void GoOnLine() { ASSERT_TRUE(drive.GoOnLine().IsDone()); }
    const TripValue &ValueOf(int p) const
    {
        const auto &values = trips.Records().front().values;
        return *std::ranges::find(values, p, [](const TripValue &value) { return value.row.param; });
    }
    std::vector<int> ReadFlags() const
    {
        std::vector<int> flags;
        for (int p = 0; p <= table.LastParam; ++p)
            flags.push_back(table[p].ReadFlag);
        return flags;
    }

    qint64 now = 0;
    ValueStates states{table, link, [this] { return now; }};
    TripRecords trips{table, link, states, [this] { return now; }};
};

TEST_F(TripRecordsTest, WhatTheDriveTellsOfOneTripIsOneRecord)
{
    struct Case {
        const char *what;
        std::vector<std::pair<int, int>> told;
        std::vector<bool> ofBefore;
    };
    const Case cases[] = {
        {"it runs", {{LatchedFault, 0}, {DriveState, 1}}, {}},
        {"it trips", {{DriveState, 1}, {DriveState, 8}, {LatchedFault, 64}, {LatchedFault, 65}}, {false}},
        {"the latch is told first",
         {{LatchedFault, 0}, {DriveState, 1}, {LatchedFault, 64}, {DriveState, 1}, {DriveState, 8}},
         {false}},
        {"it is stopped and cannot go to EStop",
         {{LatchedFault, 0}, {DriveState, 0}, {LatchedFault, 4}, {LatchedFault, 0}, {LatchedFault, 4}},
         {false, false}},
        {"it is cleared and trips again",
         {{DriveState, 0}, {DriveState, 8}, {LatchedFault, 64}, {DriveState, 0}, {DriveState, 8}},
         {false, false}},
        {"it stood tripped", {{DriveState, 8}, {LatchedFault, 64}}, {true}},
        {"it stood tripped, the latch is told first", {{LatchedFault, 64}, {DriveState, 8}}, {true}},
    };
    for (const Case &each : cases) {
        TripRecords told(table, link, states);
        for (const auto &[p, rawValue] : each.told)
            Q_EMIT link.Confirmed(p, rawValue);
        std::vector<bool> ofBefore;
        for (const TripRecord &record : told.Records()) {
            ofBefore.push_back(record.isOfBefore);
            EXPECT_EQ(record.values.empty(), record.isOfBefore) << each.what;
        }
        EXPECT_EQ(ofBefore, each.ofBefore) << each.what;
    }
    for (int trip = 0; trip < 7; ++trip)
        for (const int rawState : {0, 8})
            Q_EMIT link.Confirmed(DriveState, rawState);
    EXPECT_EQ(trips.Records().size(), TripRecords::Most);
}

TEST_F(TripRecordsTest, WhatWasNotLiveIsReadAtOnceAndSaysSo)
{
    peer.Values[DriveState] = 1;
    peer.Values[VelFeedback] = 5000;
    peer.Values[ArmatureAmps] = 30;
    table.AddReadInterest(VelFeedback);
    peer.Values[ForwardMaxSpeed] = 9000;
    for (const int p : {ArmatureAmps, ForwardMaxSpeed})
        table.AddReadInterest(p);
    GoOnLine();
    ASSERT_TRUE(WaitUntil([&] { return states.Age(ForwardMaxSpeed).has_value(); }));
    for (const int p : {ArmatureAmps, ForwardMaxSpeed})
        table.RemoveReadInterest(p);
    now += 12000;
    ASSERT_TRUE(WaitUntil([&] { return states.Age(VelFeedback) == 0 && states.Age(DriveState) == 0; }));
    const std::vector<int> flags = ReadFlags();
    // An entry that the drive has not taken is none of its values.
    table.Row(ForwardMaxSpeed).WriteFlag = WriteState::Held;
    table.Row(ForwardMaxSpeed).Value = 4711;
    peer.Values[ArmatureAmps] = 0;
    peer.Values[LatchedFault] = 64;
    const QSignalSpy completed(&trips, &TripRecords::Completed);
    On(&trips, &TripRecords::Recorded, &trips, [this] { now += 300; });
    peer.Values[DriveState] = 8;
    ASSERT_TRUE(WaitUntil([&] { return !trips.Records().empty() && ValueOf(LatchedFault).after; }));

    const TripValue &speed = ValueOf(VelFeedback);
    EXPECT_EQ(speed.state, ValueState::Live);
    EXPECT_EQ(speed.before->rawValue, 5000);
    EXPECT_FALSE(speed.after);
    EXPECT_EQ(
        TripFields(ValueOf(ArmatureAmps), table),
        QStringList({QStringLiteral("Currents"), QStringLiteral("114"), QStringLiteral("Armature Amps"),
                     QStringLiteral("0 Amps"), QStringLiteral("0.3 s after; 12.0 s before was 30 Amps")}));
    EXPECT_EQ(ValueOf(ForwardMaxSpeed).before->rawValue, 9000);
    EXPECT_EQ(TripFaultsText(trips.Records().front()), QStringLiteral("Phase Loss"));
    EXPECT_TRUE(completed.empty()) << "one is held and not read yet";
    table.Row(ForwardMaxSpeed).WriteFlag = WriteState::None;
    ASSERT_TRUE(WaitUntil([&] { return completed.size() == 1; }));
    EXPECT_EQ(ReadFlags(), flags);

    // The same trip still stands when the link is back.
    drive.GoOffLine(OffLineReason::User);
    GoOnLine();
    EXPECT_EQ(trips.Records().size(), 1U);
}

TEST_F(TripRecordsTest, WhatCannotBeReadAnyMoreIsLetGo)
{
    peer.Values[DriveState] = 8;
    const std::vector<int> flags = ReadFlags();
    GoOnLine();
    ASSERT_TRUE(WaitUntil([&] { return trips.Records().size() == 1; }));
    peer.Values[DriveState] = 0;
    ASSERT_TRUE(WaitUntil([&] { return table.Value(DriveState) == 0; }));
    now += 12000;
    On(&trips, &TripRecords::Recorded, &trips, [this] { link.Close(); });
    peer.Values[DriveState] = 8;
    ASSERT_TRUE(WaitUntil([&] { return trips.Records().size() == 2; }));
    ASSERT_TRUE(WaitUntil([&] { return !link.PortOpen(); }));
    EXPECT_EQ(ReadFlags(), flags);
    EXPECT_EQ(TripFaultsText(trips.Records().front()), QStringLiteral("fault not read"));
    EXPECT_TRUE(trips.Records().back().isOfBefore);
}

} // namespace quorvik::testing
