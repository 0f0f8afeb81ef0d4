#include "DriveRig.h"

#include <gtest/gtest.h>

namespace quorvik::drive
{

constexpr double ByteNs = 10e9 / 38400;

TEST(Pacing, BytesQueueOnTheLineInBothDirections)
{
    Pacer pacer(38400);
    const std::int64_t first = pacer.Arrived(1000, 5);
    EXPECT_NEAR(double(pacer.Arrived(2000, 1)), 1000 + 6 * ByteNs, 1);
    EXPECT_NEAR(double(pacer.DueTime(first, 5)), 1000 + 10 * ByteNs, 1);
    EXPECT_NEAR(double(pacer.DueTime(first, 5)), 1000 + 15 * ByteNs, 1);
    Pacer unpaced(0);
    EXPECT_EQ(unpaced.DueTime(unpaced.Arrived(1000, 5), 5), 1000);
}

TEST(Pacing, LatenessOfTheTimerDoesNotAddUp)
{
    constexpr int transactions = 1000;
    constexpr std::int64_t late = 90'000;
    Pacer pacer(38400);
    std::int64_t now = 0;
    for (int i = 0; i < transactions; ++i) {
        const std::int64_t due = pacer.DueTime(pacer.Arrived(now, 1), 5);
        now = due + late;
        pacer.Sent(now, due);
    }
    EXPECT_NEAR(double(now), transactions * 6 * ByteNs + late, 2.0 * transactions);
}

TEST(Pacing, RunOfReadsTakesItsTimeOnTheWire)
{
    constexpr int baud = 1200; // slow enough that a busy machine hardly counts
    constexpr int values = 8;
    DriveRig rig(baud);
    const std::int64_t start = SteadyNow();
    ASSERT_EQ(rig.Exchange(ReadRequest(100), 5).size(), 5);
    for (int i = 1; i < values; ++i)
        ASSERT_EQ(rig.Exchange(Hex("06"), 5).size(), 5);
    const double taken = double(SteadyNow() - start);
    const double wire = (10 + (values - 1) * 6) * 10e9 / baud;
    EXPECT_GE(taken, wire * 0.999);
}

} // namespace quorvik::drive
