#include "trend/TrendStatistics.h"

#include "trend/TrendFixture.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

struct Row {
    double seconds;
    int raw;
    bool isAfterGap = false;
};

TrendTrack TrackOf(std::initializer_list<Row> rows, std::int32_t attributes = TwoDecimals)
{
    TrendTrack track;
    track.channel.attributes = attributes;
    for (const Row &row : rows)
        track.samples.Append({.timeUs = std::llround(row.seconds * 1e6),
                              .rawValue = row.raw,
                              .isAfterGap = row.isAfterGap ? 1U : 0U});
    return track;
}

} // namespace

TEST(TrendStatisticsTest, OfAFewSamplesByHand)
{
    const TrendTrack ramp = TrackOf({{0, 0}, {1, 1000}, {4, 1000}, {4.5, 0}});
    const TrendTrack torn = TrackOf({{0, 1000}, {1, 1000}, {9, -2000, true}, {10, -2000}, {20, 5000, true}});
    const struct {
        const TrendTrack &track;
        double from;
        double to;
        TrendStatistics expected;
    } cases[] = {
        // Both edges lie within pieces: 7.5 over 0.5 s, then 10 over 1 s.
        {ramp, 0.5, 2, {1, 10, 10, (3.75 + 10) / 1.5, std::sqrt((700.0 / 24 + 100) / 1.5), 0}},
        {ramp, 0, 1, {2, 0, 10, 5, std::sqrt(100.0 / 3), 10}},
        // Behind the last sample nothing is known, nor before the first.
        {ramp, -5, 50, {4, 0, 10, 37.5 / 4.5, std::sqrt((100.0 / 3 + 300 + 50.0 / 3) / 4.5), 2.5 / 14.6875}},
        {torn, 0, 10, {4, -20, 10, -5, std::sqrt(250.0), -270.0 / 82}},
        {torn, 5, 9.5, {1, -20, -20, -20, 20, 0}},
        {torn, 15, 30, {1, 50, 50, 50, 50, 0}},
        {torn, 1, 1, {1, 10, 10, 10, 10, 0}},
    };
    for (const auto &[track, from, to, expected] : cases) {
        SCOPED_TRACE(::testing::Message() << from << " to " << to);
        const auto got = StatisticsOf(track, std::llround(from * 1e6), std::llround(to * 1e6));
        ASSERT_TRUE(got);
        EXPECT_EQ(got->count, expected.count);
        EXPECT_DOUBLE_EQ(got->least, expected.least);
        EXPECT_DOUBLE_EQ(got->greatest, expected.greatest);
        EXPECT_NEAR(got->mean, expected.mean, 1e-9);
        EXPECT_NEAR(got->effective, expected.effective, 1e-9);
        EXPECT_NEAR(got->slope, expected.slope, 1e-9);
    }
    EXPECT_FALSE(StatisticsOf(ramp, 1'100'000, 3'900'000)) << "no sample, though a line";
    EXPECT_FALSE(StatisticsOf(TrackOf({{0, 1}, {1, 0}}, 64), 0, 1'000'000)) << "texts have no mean";
}

TEST(TrendStatisticsTest, OfASineAtAnUnevenRate)
{
    SampledSignal signal;
    signal.noise = 0.02;
    // Far from the beginning of time, where squares of times would lose the slope.
    signal.fromSeconds = 4e5;
    signal.toSeconds = 4e5 + 10;
    const TrendTrack track =
        signal.Track([](double seconds) { return 20 * std::sin(2 * M_PI * (seconds - 4e5)) + 5; });
    const auto got = StatisticsOf(track, 400'001'000'000, 400'009'000'000);
    ASSERT_TRUE(got);
    EXPECT_NEAR(got->mean, 5, 0.01);
    EXPECT_NEAR(got->effective, std::sqrt(200 + 25), 0.01);
    const TrendTrack ramp = signal.Track([](double seconds) { return 3 * (seconds - 4e5); });
    EXPECT_NEAR(StatisticsOf(ramp, 0, 400'010'000'000)->slope, 3, 0.001);
}

} // namespace quorvik::testing
