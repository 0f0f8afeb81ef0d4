#include "trend/Trigger.h"

#include "trend/TrendFixture.h"

#include <gmock/gmock.h>
#include <vector>

namespace quorvik::testing
{

namespace
{

bool IsMet(const TriggerSetting &setting, int raw)
{
    switch (setting.kind) {
    case TriggerKind::Rising:
        return raw >= setting.rawLevel;
    case TriggerKind::Falling:
        return raw <= setting.rawLevel;
    case TriggerKind::Leaving:
        return raw < setting.rawLevel || raw > setting.rawHigh;
    default:
        return raw == setting.rawLevel;
    }
}

/** How far a value is on the side from which it is waited for. */
int Inside(const TriggerSetting &setting, int raw)
{
    switch (setting.kind) {
    case TriggerKind::Rising:
        return setting.rawLevel - raw;
    case TriggerKind::Falling:
        return raw - setting.rawLevel;
    case TriggerKind::Leaving:
        return std::min(raw - setting.rawLevel, setting.rawHigh - raw);
    default:
        return setting.rawBand;
    }
}

/** The indices at which it must have fired: looks back from each sample, and keeps no state. */
std::vector<std::size_t> Expected(const TriggerSetting &setting, const std::vector<TrendSample> &samples)
{
    std::vector<std::size_t> indices;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (!IsMet(setting, samples[i].rawValue))
            continue;
        for (std::size_t k = i; k > 0 && samples[k].isAfterGap == 0; --k) {
            const int before = samples[k - 1].rawValue;
            if (IsMet(setting, before))
                break;
            if (Inside(setting, before) < setting.rawBand)
                continue;
            indices.push_back(i);
            break;
        }
    }
    return indices;
}

} // namespace

TEST(TriggerTest, TenThousandEventsAreNeitherMissedNorDoubled)
{
    std::mt19937 dice(20);
    std::size_t events = 0;
    for (const TriggerKind kind :
         {TriggerKind::Rising, TriggerKind::Falling, TriggerKind::Leaving, TriggerKind::Equals})
        for (const int band : {0, 7}) {
            SCOPED_TRACE(::testing::Message() << int(kind) << ", band " << band);
            TriggerSetting setting;
            setting.kind = kind;
            setting.rawLevel = -5;
            setting.rawHigh = 15;
            setting.rawBand = band;
            // A walk that is drawn back, with noise of the band's size on it, so that it turns at the level.
            std::vector<TrendSample> samples;
            double walk = 0;
            std::normal_distribution<double> normal(0, 1);
            for (int i = 0; i < 300'000; ++i) {
                walk = 0.98 * walk + 3 * normal(dice);
                samples.push_back({.timeUs = i * 2866LL,
                                   .rawValue = std::int32_t(std::lround(walk + 3 * normal(dice))),
                                   .isAfterGap = dice() % 50 == 0 ? 1U : 0U});
            }
            const std::vector<std::size_t> expected = Expected(setting, samples);
            events += expected.size();
            Trigger trigger(setting);
            std::vector<std::size_t> fired;
            for (std::size_t i = 0; i < samples.size(); ++i) {
                const std::optional<qint64> met = trigger.Take(samples[i]);
                if (!met)
                    continue;
                fired.push_back(i);
                const TrendSample &from = samples[i - 1];
                const TrendSample &to = samples[i];
                ASSERT_TRUE(*met >= from.timeUs && *met <= to.timeUs);
                if (kind == TriggerKind::Equals)
                    continue;
                // The line between the two is at an edge then, to a microsecond.
                const double slope = double(to.rawValue - from.rawValue) / double(to.timeUs - from.timeUs);
                const double there = from.rawValue + slope * double(*met - from.timeUs);
                const double edge =
                    kind == TriggerKind::Leaving && to.rawValue > 15 ? setting.rawHigh : setting.rawLevel;
                ASSERT_NEAR(there, edge, std::abs(slope));
            }
            EXPECT_EQ(fired, expected);
        }
    EXPECT_GT(events, 50'000u);
}

TEST(TriggerTest, ReachesTheEndsOfWhatARawValueCanBe)
{
    constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
    TriggerSetting setting;
    setting.kind = TriggerKind::Rising;
    setting.rawLevel = Least + 5;
    setting.rawBand = Most;
    Trigger trigger(setting);
    EXPECT_FALSE(trigger.Take({.timeUs = 0, .rawValue = Least})) << "never so far below";
    EXPECT_FALSE(trigger.Take({.timeUs = 10, .rawValue = Most}));
    setting.rawBand = 0;
    trigger = Trigger(setting);
    EXPECT_FALSE(trigger.Take({.timeUs = 0, .rawValue = Least}));
    EXPECT_EQ(trigger.Take({.timeUs = 10, .rawValue = Most}), 0);
}

} // namespace quorvik::testing
