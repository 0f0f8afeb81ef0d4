#include "desktop/BoxColors.h"
#include "platform/TimeUnits.h"
#include "trend/forms/PlotColours.h"
#include "trend/forms/PlotReduction.h"
#include "trend/forms/PlotScales.h"

#include <cmath>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

std::int32_t Wave(int i)
{
    return std::int32_t(1000 * std::sin(i * 0.05)) + i * 7919 % 13;
}

/** What is drawn, as text: what differs is read off at once. */
QString Drawn(const PlotReduction &reduction)
{
    QString text;
    for (const PlotPoint &point : reduction.Points())
        text += QStringLiteral("%1%2:%3 ")
                    .arg(point.isBreak ? QStringLiteral("|") : QString())
                    .arg(point.timeUs)
                    .arg(point.rawValue);
    return text;
}

} // namespace

TEST(PlotReduction, KeepsTheLeastAndTheGreatestOfEachColumn)
{
    SampleRing samples;
    for (int i = 0; i < 2000; ++i)
        samples.Append({.timeUs = i * UsPerMs, .rawValue = i == 1234 ? 9000 : i == 1237 ? -9000 : Wave(i)});
    PlotReduction reduction;
    const qint64 columnUs = 20 * UsPerMs;
    reduction.Update(samples, 0, 1999 * UsPerMs, columnUs);
    ASSERT_TRUE(reduction.IsReduced());
    EXPECT_LE(reduction.Points().size(), 200U);
    for (qint64 column = 0; column < 100; ++column) {
        std::pair<int, int> wanted = {9999, -9999};
        std::pair<int, int> drawn = wanted;
        const auto widen = [](std::pair<int, int> &extent, int value) {
            extent = {std::min(extent.first, value), std::max(extent.second, value)};
        };
        for (int i = int(column) * 20; i < int(column + 1) * 20; ++i)
            widen(wanted, samples[std::size_t(i)].rawValue);
        for (const PlotPoint &point : reduction.Points())
            if (point.timeUs / columnUs == column)
                widen(drawn, point.rawValue);
        EXPECT_EQ(drawn, wanted) << column;
    }
    EXPECT_EQ(reduction.Extent(), std::pair(-9000, 9000));
}

TEST(PlotReduction, FollowsARecordingAsIfItHadSeenItAtOnce)
{
    SampleRing samples;
    PlotReduction following;
    int next = 0;
    const auto record = [&](int count) {
        for (const int end = next + count; next < end; ++next)
            samples.Append({.timeUs = next * UsPerMs, .rawValue = Wave(next)});
    };
    record(3000);
    for (int round = 0; round < 60; ++round) {
        record(17);
        if (round == 20)
            samples.Interrupt();
        if (round == 30) // as when an answer turns out to be nobody's
            samples.DropSince((next - 40) * UsPerMs);
        if (round == 45) {
            samples.DropSince((next - 60) * UsPerMs);
            for (int i = next - 60; i < next; ++i)
                samples.Append({.timeUs = i * UsPerMs, .rawValue = -Wave(i)});
        }
        samples.DropBefore((next - 2900) * UsPerMs);
        const qint64 lastUs = samples.Last().timeUs;
        following.Update(samples, lastUs - 2000 * UsPerMs, lastUs, 10 * UsPerMs);
        PlotReduction atOnce;
        atOnce.Update(samples, lastUs - 2000 * UsPerMs, lastUs, 10 * UsPerMs);
        ASSERT_TRUE(following.IsReduced());
        ASSERT_EQ(Drawn(following).right(2000), Drawn(atOnce).right(2000)) << round;
        ASSERT_EQ(following.Extent(), atOnce.Extent()) << round;
    }
}

TEST(PlotReduction, NeverJoinsWhatAGapParts)
{
    for (const qint64 columnUs : {qint64(1), 20 * UsPerMs}) {
        SampleRing samples;
        for (int i = 0; i < 400; ++i) {
            if (i == 200)
                samples.Interrupt();
            samples.Append({.timeUs = (i < 200 ? i : i + 500) * UsPerMs, .rawValue = i});
        }
        PlotReduction reduction;
        reduction.Update(samples, 0, 900 * UsPerMs, columnUs);
        int breaks = 0;
        for (std::size_t i = 1; i < reduction.Points().size(); ++i) {
            const PlotPoint &point = reduction.Points()[i];
            const bool isAcross = point.timeUs - reduction.Points()[i - 1].timeUs > 400 * UsPerMs;
            EXPECT_EQ(point.isBreak, isAcross) << point.timeUs;
            breaks += point.isBreak ? 1 : 0;
        }
        EXPECT_EQ(breaks, 1);
    }
}

TEST(PlotColours, AreSeenOnEveryGroundAndToldApart)
{
    for (const QColor ground :
         {QColor(0xFFFFFF), QColor(0xEFEFEF), QColor(0x232629), QColor(0x353535), QColor(0x808080)})
        for (int colour = 0; colour < 2 * PlotColourCount; ++colour)
            EXPECT_GE(Contrast(PlotColour(colour, ground), ground), LeastCurveContrast)
                << ground.name().toStdString() << ' ' << colour;
    // To an eye without the receptors for red or for green (Machado and others, 2009).
    using Row = std::array<double, 3>;
    static constexpr std::array<std::array<Row, 3>, 3> eyes = {
        {{Row{1, 0, 0}, Row{0, 1, 0}, Row{0, 0, 1}},
         {Row{0.152, 1.053, -0.205}, Row{0.115, 0.786, 0.099}, Row{-0.004, -0.048, 1.052}},
         {Row{0.367, 0.861, -0.228}, Row{0.280, 0.673, 0.047}, Row{-0.012, 0.043, 0.969}}}};
    const auto seen = [](const QColor &colour, const std::array<Row, 3> &eye) {
        std::array<double, 3> result{};
        const std::array<double, 3> light = {std::pow(colour.redF(), 2.2), std::pow(colour.greenF(), 2.2),
                                             std::pow(colour.blueF(), 2.2)};
        for (std::size_t i = 0; i < 3; ++i)
            result[i] = std::pow(
                std::clamp(eye[i][0] * light[0] + eye[i][1] * light[1] + eye[i][2] * light[2], 0.0, 1.0),
                1 / 2.2);
        return result;
    };
    for (const QColor ground : {QColor(0xFFFFFF), QColor(0x232629)})
        for (const auto &eye : eyes)
            for (int i = 0; i < PlotColourCount; ++i)
                for (int j = 0; j < i; ++j) {
                    const auto a = seen(PlotColour(i, ground), eye);
                    const auto b = seen(PlotColour(j, ground), eye);
                    EXPECT_GT(std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]), 0.12) << i << ' ' << j;
                }
    EXPECT_NE(PlotPen(1, Qt::white).style(), PlotPen(1 + PlotColourCount, Qt::white).style());
}

TEST(PlotScales, StandStillUntilTheValuesNeedAnotherRange)
{
    struct Case {
        QCPRange present;
        double least;
        double greatest;
        QCPRange wanted;
    };
    const std::vector<Case> cases = {
        {{0, 1}, -3, 97, {-50, 150}},       // round ends
        {{-50, 150}, 20, 110, {-50, 150}},  // fills enough of it
        {{-50, 150}, 20, 60, {0, 80}},      // too little
        {{-50, 150}, 100, 151, {80, 160}},  // above it
        {{0, 1}, 12.5, 12.5, {12.4, 12.6}}, // stands still: ten times the value's step
    };
    for (const Case &c : cases) {
        const QCPRange range = ScaleFor(c.present, c.least, c.greatest, 0.01);
        EXPECT_NEAR(range.lower, c.wanted.lower, 1e-9) << c.least << ' ' << c.greatest << ' ' << range.upper;
        EXPECT_NEAR(range.upper, c.wanted.upper, 1e-9) << c.least << ' ' << c.greatest;
    }
    EXPECT_EQ(TimeText(-75.5, 1).toStdString(), "-1:15.5");
    EXPECT_EQ(TimeText(3723, 0).toStdString(), "1:02:03");
}

} // namespace quorvik::testing
