#include "trend/StepResponse.h"

#include "trend/TrendFixture.h"

#include <gtest/gtest.h>
#include <optional>

namespace quorvik::testing
{

namespace
{

/** The way of an answer at seconds from the step. */
struct Plant {
    int order = 1;
    double dead = 0;
    double time = 0.1;  ///< T of the first order, 1 / natural frequency of the second
    double damping = 0; ///< of the second

    double Way(double seconds) const
    {
        const double x = (seconds - dead) / time;
        if (x <= 0)
            return 0;
        if (order == 1)
            return 1 - std::exp(-x);
        if (damping >= 1)
            return 1 - std::exp(-x) * (1 + x);
        const double w = std::sqrt(1 - damping * damping);
        return 1 - std::exp(-damping * x) * (std::cos(w * x) + damping / w * std::sin(w * x));
    }
    double Overshoot() const
    {
        const double exponent = -M_PI * damping / std::sqrt(1 - damping * damping);
        return order == 2 && damping < 1 ? 100 * std::exp(exponent) : 0;
    }
    /** First (or last) time at which a condition of the way holds, found by looking everywhere. */
    double Search(bool last, const std::function<bool(double)> &holds) const
    {
        const double step = time / 5000;
        double found = 0;
        for (double seconds = 0; seconds < dead + 20 * time; seconds += step)
            if (holds(Way(seconds))) {
                found = seconds;
                if (!last)
                    break;
            }
        return found;
    }
    double RiseMs() const
    {
        return 1000 * (order == 1 ? time * std::log(9)
                                  : Search(false, [](double way) { return way >= 0.9; }) -
                                        Search(false, [](double way) { return way >= 0.1; }));
    }
    double SettlingMs() const
    {
        return 1000 * (order == 1 ? dead + time * std::log(50)
                                  : Search(true, [](double way) { return std::abs(way - 1) > 0.02; }));
    }
};

constexpr double Stands = 12.3;
constexpr double StepAt = 1; ///< second

StepQuestion Question()
{
    StepQuestion question;
    question.stepUs = qint64(StepAt * 1e6);
    return question;
}

TrendTrack TrackOf(const Plant &plant, double height, SampledSignal signal)
{
    const double ringing = plant.order == 1 || plant.damping > 0.7 ? 1 : plant.damping;
    signal.toSeconds = StepAt + 1.5 * plant.dead + 14 * plant.time / ringing;
    return signal.Track([&](double seconds) { return Stands + height * plant.Way(seconds - StepAt); });
}

} // namespace

TEST(StepResponseTest, TellsWhatTheClosedFormsTell)
{
    constexpr double TwoPercent = 0.02;
    unsigned seed = 0;
    for (const double time : {0.01, 0.1, 0.4})
        for (const double dead : {0.0, 0.05, 0.3})
            for (const double damping : {0.0, 0.3, 0.5, 0.7, 1.0}) {
                const Plant plant{damping == 0 ? 1 : 2, dead, time, damping};
                const double rise = plant.RiseMs();
                const double settling = plant.SettlingMs();
                for (const double rate : {349.0, 87.0})
                    for (const double height : {40.0, -10.0})
                        for (const double noise : {0.0, 0.001, 0.004}) {
                            SCOPED_TRACE(::testing::Message()
                                         << "T " << time << ", dead time " << dead << ", damping " << damping
                                         << ", rate " << rate << ", height " << height << ", noise " << noise
                                         << ", seed " << ++seed);
                            SampledSignal signal;
                            signal.perSecond = rate;
                            signal.noise = noise * std::abs(height);
                            signal.seed = seed;
                            const auto [failure, f] =
                                StepResponseOf(TrackOf(plant, height, signal), Question());
                            ASSERT_EQ(failure, StepFailure::None);
                            ASSERT_TRUE(f.settlingMs);
                            EXPECT_NEAR(f.deadMs, 1000 * dead,
                                        std::max(TwoPercent * 1000 * dead, f.deadUncertaintyMs));
                            EXPECT_NEAR(f.riseMs, rise, std::max(TwoPercent * rise, f.uncertaintyMs));
                            EXPECT_NEAR(*f.settlingMs, settling,
                                        std::max(TwoPercent * settling, f.settlingUncertaintyMs));
                            EXPECT_NEAR(f.overshootPercent, plant.Overshoot(),
                                        std::max(TwoPercent * plant.Overshoot(), f.uncertaintyPercent));
                            // What is stated is no way out.
                            const double interval = 1000 / rate;
                            if (noise > 0.001)
                                continue;
                            EXPECT_LT(f.uncertaintyMs, 1.2 * interval + 0.1 * rise);
                            EXPECT_LT(f.deadUncertaintyMs, 1.2 * interval + 0.15 * rise);
                            if (rise < 40 * interval)
                                continue;
                            EXPECT_NEAR(f.riseMs, rise, TwoPercent * rise);
                            EXPECT_NEAR(*f.settlingMs, settling, TwoPercent * settling);
                            EXPECT_LT(f.uncertaintyPercent, 0.5);
                        }
            }
}

TEST(StepResponseTest, MeasuresAgainstTheTarget)
{
    const Plant plant{.dead = 0.02, .time = 0.1};
    const TrendTrack track = TrackOf(plant, 20, {});
    const struct {
        double target;
        std::optional<double> settlingMs;
    } cases[] = {
        {Stands + 20, 20 + 100 * std::log(50)},
        {Stands + 20.2, 20 + 100 * std::log(1 / 0.01)}, // into the band from below at 99 %
        {Stands + 21, std::nullopt},
    };
    for (const auto &[target, settlingMs] : cases) {
        StepQuestion question = Question();
        question.target = target;
        const StepFigures figures = StepResponseOf(track, question).figures;
        EXPECT_NEAR(figures.steadyError, target - Stands - 20, 0.01);
        EXPECT_EQ(figures.settlingMs.has_value(), settlingMs.has_value()) << target;
        EXPECT_NEAR(figures.settlingMs.value_or(0), settlingMs.value_or(0), 12) << target;
    }
}

TEST(StepResponseTest, SaysWhyThereAreNoFigures)
{
    const Plant plant{.dead = 0.02, .time = 0.1};
    const auto failureOf = [&](double height, const SampledSignal &signal, auto &&change) {
        TrendTrack track = TrackOf(plant, height, signal);
        StepQuestion question = Question();
        change(track, question);
        return StepResponseOf(track, question).failure;
    };
    const auto gapAt = [](double seconds) {
        return [seconds](TrendTrack &track, StepQuestion &) {
            const TrendTrack whole = track;
            track.samples.Clear();
            for (std::size_t i = 0; i < whole.samples.Size(); ++i) {
                TrendSample sample = whole.samples[i];
                if (std::abs(double(sample.timeUs) / 1e6 - seconds) < 0.002)
                    sample.isAfterGap = 1;
                track.samples.Append(sample);
            }
        };
    };
    const auto asIs = [](TrendTrack &, StepQuestion &) {};
    SampledSignal noisy;
    noisy.noise = 1;
    SampledSignal late;
    late.fromSeconds = StepAt - 0.005;
    EXPECT_EQ(failureOf(20, {}, asIs), StepFailure::None);
    EXPECT_EQ(failureOf(20, {}, gapAt(StepAt + 0.1)), StepFailure::Gap);
    EXPECT_EQ(failureOf(20, {}, gapAt(StepAt - 0.5)), StepFailure::None);
    EXPECT_EQ(failureOf(20, late, asIs), StepFailure::NoSamples);
    EXPECT_EQ(
        failureOf(20, {},
                  [](TrendTrack &, StepQuestion &question) { question.endUs = question.stepUs + 25'000; }),
        StepFailure::NoSamples);
    EXPECT_EQ(failureOf(0, noisy, asIs), StepFailure::NoStep);
    EXPECT_EQ(failureOf(2, noisy, asIs), StepFailure::NoStep);
    EXPECT_EQ(failureOf(10, noisy, asIs), StepFailure::None);
}

} // namespace quorvik::testing
