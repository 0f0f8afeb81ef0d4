#include "SampleTrend.h"

#include "desktop/Desk.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int FlushMs = 10000;

constexpr double Before = 40; ///< percent of speed
constexpr double Height = 10;
constexpr double UpAt = 3; ///< seconds
constexpr double DownAt = 8;
constexpr double End = 12;
constexpr int RoundMs = 44; ///< in which each fast channel is read once

/** What a loop with a light damping makes of a step of 1, so many seconds after it. */
double Answer(double time)
{
    constexpr double damping = 0.45;
    constexpr double frequency = 5;
    if (time <= 0)
        return 0;
    const double swing = std::sqrt(1 - damping * damping);
    return 1 - std::exp(-damping * frequency * time) * (std::cos(swing * frequency * time) +
                                                        damping / swing * std::sin(swing * frequency * time));
}

double Speed(double time)
{
    return Before + Height * (Answer(time - UpAt) - Answer(time - DownAt));
}

/** The current follows the acceleration, on top of what the load takes. */
double Current(double time)
{
    constexpr double load = 24;
    constexpr double inertia = 1.1;
    constexpr double step = 0.02;
    return load + inertia * (Speed(time + step) - Speed(time - step)) / (2 * step);
}

double Demand(double time)
{
    return time >= UpAt && time < DownAt ? Before + Height : Before;
}

struct Signal {
    int param;
    double (*of)(double time);
    double noise; ///< percent, up and down
};

constexpr Signal Signals[] = {
    {Param::FinalVelDemand, Demand, 0},
    {Param::VelFeedback, Speed, 0.06},
    {Param::CurrentFeedback, Current, 0.4},
};

/** The same on every computer. */
class Noise
{
public:
    /** Between -1 and 1. */
    double Next()
    {
        state_ = state_ * 1664525U + 1013904223U;
        return double(state_ >> 8) / double(1U << 23) - 1;
    }

private:
    std::uint32_t state_ = 1;
};

TrendData Step(const ParameterTable &table, const QTime &at)
{
    const QDateTime time({2026, 11, 22}, at);
    TrendData data;
    data.head = {.title = {},
                 .setName = QStringLiteral("/home/anna/plant/pump 3.Svx"),
                 .drive = DriveIdentity{.model = 5,
                                        .driveAmps = 174,
                                        .firmware = 100,
                                        .triggerFirmware = 100,
                                        .operatingHours = 1204,
                                        .lastParam = Param::WinderSpeed},
                 .notes = {},
                 .beganUs = 0,
                 .beganUtcMs = time.toMSecsSinceEpoch(),
                 .offsetMinutes = time.offsetFromUtc() / SecondsPerMinute};
    Noise noise;
    int shift = 0;
    for (const Signal &signal : Signals) {
        TrendTrack track{
            {signal.param, TrendPace::Fast, table[signal.param].Attributes, table[signal.param].Name}, {}};
        constexpr qint64 answerUs = 11000;
        for (qint64 timeUs = shift; double(timeUs) < End * UsPerSecond; timeUs += RoundMs * UsPerMs) {
            const double percent = signal.of(double(timeUs) / UsPerSecond) + signal.noise * noise.Next();
            track.samples.Append({.timeUs = timeUs,
                                  .rawValue = std::int32_t(std::lround(percent * 100)),
                                  .spanUs = std::uint32_t(answerUs)});
        }
        shift += int(answerUs);
        data.tracks.push_back(std::move(track));
    }
    const auto mark = [&data](double seconds, TrendMarkKind kind, const char *text) {
        data.marks.push_back({qint64(seconds * UsPerSecond), kind,
                              kind == TrendMarkKind::Edit ? int(Param::Reference0) : -1,
                              QString::fromLatin1(text)});
    };
    mark(UpAt, TrendMarkKind::Edit, "(217) Reference 0: 40.00 % to 50.00 %");
    mark(DownAt, TrendMarkKind::Edit, "(217) Reference 0: 50.00 % to 40.00 %");
    data.triggerUs = qint64(UpAt * UsPerSecond);
    return data;
}

} // namespace

SampleTrend::SampleTrend(Desk &desk)
    : link_(desk.table)
    , emulator_(desk.table)
    , file_(desk.table, desk.document)
    , saving_(desk.document, desk.asker, file_, folder_.path())
    , snapshots_(desk.table, link_, desk.asker)
    , drive_(desk.table, desk.document, link_, desk.rules, saving_, desk.asker, snapshots_, desk.guards)
    , recorder_(desk.table, desk.document, link_, emulator_)
    , beforeTrips_(desk.table, desk.document, link_, emulator_)
    , store_(folder_.filePath(QStringLiteral("recordings")))
    , trips_(beforeTrips_, store_, link_)
    , steps_(desk.table, link_, desk.states, recorder_, drive_, desk.asker)
{
    const auto cut = [&desk](const QTime &at, double seconds) {
        return Step(desk.table, at).Cut(0, qint64(seconds * UsPerSecond));
    };
    Keep(cut({8, 14, 5}, End), RecordingKind::Running, "", "");
    Keep(cut({8, 57, 31}, 5), RecordingKind::Capture, "Speed dips under load", "Press 4, wide sheet");
    Keep(cut({9, 20, 0}, 4), RecordingKind::Trip, "Trip 1: Phase Loss", "");
    const TrendData step = Step(desk.table, {9, 52, 37});
    stepPath_ = Keep(step, RecordingKind::Running, "Gain 12, after the service", "");
}

QString SampleTrend::Keep(const TrendData &data, RecordingKind kind, const char *title, const char *notes)
{
    QString path = store_.Save(std::make_shared<const TrendData>(data), kind);
    // Only what is written can be given a title.
    store_.Flush(FlushMs);
    if (*title)
        store_.Keep(path, QString::fromUtf8(title), QString::fromUtf8(notes));
    return path;
}

} // namespace quorvik
