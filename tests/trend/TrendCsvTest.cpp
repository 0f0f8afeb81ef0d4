#include "trend/TrendCsv.h"

#include "trend/TrendFixture.h"

#include <QBuffer>
#include <QDateTime>
#include <gmock/gmock.h>

namespace quorvik::testing
{

using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace
{

using Cells = std::vector<std::string>;

/** Comma-separated values as RFC 4180 has them, by one character after the other. */
std::vector<Cells> Parsed(const QByteArray &csv)
{
    std::vector<Cells> lines;
    Cells cells(1);
    bool isQuoted = false;
    for (qsizetype i = 0; i < csv.size(); ++i) {
        const char character = csv[i];
        if (character == '"' && isQuoted && i + 1 < csv.size() && csv[i + 1] == '"')
            cells.back() += csv[++i];
        else if (character == '"')
            isQuoted = !isQuoted;
        else if (isQuoted)
            cells.back() += character;
        else if (character == ',')
            cells.emplace_back();
        else if (character == '\n')
            lines.push_back(std::exchange(cells, Cells(1)));
        else if (character != '\r')
            cells.back() += character;
    }
    EXPECT_EQ(cells, Cells(1)) << "the last line has an end";
    return lines;
}

std::vector<Cells> Written(const TrendData &data)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_EQ(WriteTrendCsv(data, buffer), QString());
    return Parsed(buffer.data());
}

constexpr std::int32_t Polarity = 64; ///< "Unipolar", "Bipolar"

TrendChannel Channel(int param, std::int32_t attributes, const char *name)
{
    TrendChannel channel;
    channel.param = param;
    channel.attributes = attributes;
    channel.name = QString::fromUtf8(name);
    return channel;
}

} // namespace

TEST(TrendCsvTest, ALineForEachMoment)
{
    TrendData data;
    data.head.beganUs = 5'000'000;
    data.head.beganUtcMs = QDateTime(QDate(2026, 2, 28), QTime(22, 59, 59), Qt::UTC).toMSecsSinceEpoch();
    data.head.offsetMinutes = 60;
    data.triggerUs = 6'500'000;
    data.tracks = {{Channel(5, TwoDecimals, "Speed, \"real\""), {}}, {Channel(7, Polarity, "On"), {}}};
    SampleRing &speed = data.tracks[0].samples;
    speed.Append({.timeUs = 6'000'001, .rawValue = -1234, .spanUs = 2001});
    speed.Append({.timeUs = 6'600'000, .rawValue = 5});
    data.tracks[1].samples.Append({.timeUs = 6'600'000, .rawValue = 1, .isAfterGap = 1});
    data.tracks[1].samples.Append({.timeUs = 6'700'000, .rawValue = 0});
    speed.Append({.timeUs = 6'700'000, .rawValue = 32767});
    data.marks = {{6'550'000, TrendMarkKind::Note, -1, QStringLiteral("=HYPERLINK(\"x\")\nSpeed")}};
    EXPECT_THAT(Written(data),
                ElementsAre(ElementsAre("Seconds", "Local Time", "Asked", "Answered", "After Gap",
                                        "(5) Speed, \"real\", raw", "(5) Speed, \"real\"", "(7) On, raw",
                                        "(7) On", "Mark"),
                            ElementsAre("-0.499999", "2026-03-01T00:00:00.000", "-0.500999", "-0.498998", "1",
                                        "-1234", "-12.34", "", "", ""),
                            ElementsAre("0.050000", "2026-03-01T00:00:00.550", "", "", "", "", "", "", "",
                                        "'=HYPERLINK(\"x\")\nSpeed"),
                            ElementsAre("0.100000", "2026-03-01T00:00:00.600", "0.100000", "0.100000", "",
                                        "5", "0.05", "", "", ""),
                            ElementsAre("0.100000", "2026-03-01T00:00:00.600", "0.100000", "0.100000", "1",
                                        "", "", "1", "Bipolar", ""),
                            ElementsAre("0.200000", "2026-03-01T00:00:00.700", "0.200000", "0.200000", "",
                                        "32767", "327.67", "0", "Unipolar", "")));
}

TEST(TrendCsvTest, EndsWhereItIsToldToOrCannotGoOn)
{
    TrendData data;
    data.tracks.push_back(SampledSignal{.toSeconds = 60}.Track([](double) { return 1; }));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    double part = 0;
    EXPECT_THAT(WriteTrendCsv(data, buffer,
                              [&](double done) {
                                  part = done;
                                  return false;
                              })
                    .toStdString(),
                StartsWith("The writing was ended"));
    EXPECT_GT(part, 0.05);
    EXPECT_LT(part, 0.95);
    QBuffer closed;
    closed.open(QIODevice::ReadOnly);
    EXPECT_THAT(WriteTrendCsv(data, closed).toStdString(), StartsWith("The recording cannot be written"));
}

} // namespace quorvik::testing
