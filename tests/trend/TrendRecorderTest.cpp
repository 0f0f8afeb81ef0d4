#include "trend/TrendRecorder.h"

#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "link/Frames.h"
#include "platform/Waiting.h"
#include "settings/SetFixture.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

namespace
{

constexpr std::array Channels = {Param::VelocityDemand, Param::VelFeedback, Param::CurrentFeedback,
                                 Param::FieldIFeedback};
constexpr int Swings = Param::VelFeedback;
constexpr double PeriodUs = 200'000;
constexpr std::int32_t Peak = 1000;
constexpr std::int32_t Band = 300;

/** What a channel is at a time. No two channels are ever the same, so that a value tells whose it is. */
std::int32_t TruthAt(int p, qint64 timeUs)
{
    const double phase = std::fmod(double(timeUs) / PeriodUs, 1.0);
    const double triangle = phase < 0.5 ? 4 * phase - 1 : 3 - 4 * phase;
    return std::int32_t(std::lround(Peak * triangle)) + 2500 * (p == Swings ? 0 : p % 7 + 1);
}

} // namespace

/** The recorder over a pseudo-terminal. The drive at its other end is in this process, so what it held at
 * each moment is known. */
class TrendRecorderTest : public SetTest
{
protected:
    TrendRecorderTest()
    {
        SettingsFile(driveParameters, driveDocument).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE));
        driveParameters.ResetToDefaults();
        driveTable.emplace(driveParameters);
        commands.emplace(*driveTable, drive::CommandTimings{30, 40});
        EXPECT_EQ(terminal.Open(), QString());
        server.emplace(*driveTable, *commands, faults, terminal, 0);
        link.MSComm1.DeviceOf = [this](int) { return terminal.DevicePath(); };
        QObject::connect(&*server, &drive::DriveServer::Answered, [this](int, std::int32_t) { Live(); });
        QObject::connect(&ageing, &QTimer::timeout, [this] { Live(); });
        ageing.start(1);
        Live();
    }
    ~TrendRecorderTest() override { link.Close(); }

    /** The drive's values go on, and are noted. */
    void Live()
    {
        const qint64 now = MicrosecondsUp();
        for (const int p : Channels)
            driveTable->Put(p, TruthAt(p, now));
        changes.push_back(now);
    }
    void GoOnLine()
    {
        ASSERT_EQ(link.Open(), QString());
        ASSERT_TRUE(Waits([this] { return !link.IsAskingForSize(); }));
        ASSERT_TRUE(link.TakeSize());
    }
    void Record()
    {
        for (const int p : Channels)
            ASSERT_EQ(recorder.AddChannel(p, TrendPace::Fast), QString());
        recorder.Start();
    }
    bool Waits(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(30000));
    }
    /** Each recorded value is one that the drive held between question and answer. */
    void ExpectTruth()
    {
        for (const TrendTrack &track : recorder.Data().tracks) {
            ASSERT_GT(track.samples.Size(), 50u) << track.channel.param;
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < track.samples.Size(); ++i) {
                const TrendSample &sample = track.samples[i];
                const qint64 askedUs = sample.timeUs - sample.spanUs / 2;
                // From the last change before the question on.
                auto change = std::ranges::upper_bound(changes, askedUs);
                change -= change == changes.begin() ? 0 : 1;
                bool isTrue = false;
                for (; change != changes.end() && *change <= askedUs + sample.spanUs; ++change)
                    isTrue = isTrue || TruthAt(track.channel.param, *change) == sample.rawValue;
                wrong += isTrue ? 0 : 1;
            }
            EXPECT_EQ(wrong, 0u) << track.channel.param << " of " << track.samples.Size();
        }
    }

    ParameterTable driveParameters;
    Document driveDocument{driveParameters};
    std::optional<drive::DriveTable> driveTable;
    std::optional<drive::DriveCommands> commands;
    drive::FaultInjector faults;
    drive::PseudoTerminal terminal;
    std::optional<drive::DriveServer> server;
    std::vector<qint64> changes;
    QTimer ageing; ///< what it holds goes on also where nothing is asked

    DriveLink link{
        table, LinkTimings{.scanPause = 50, .replyTimeout = 30, .sizeErrorPause = 40, .sampleQuiet = 100}};
    DriveEmulator emulator{table};
    TrendTimings timings{.fastGapMs = 45};
    TrendRecorder recorder{table, document, link, emulator, timings};
};

TEST_F(TrendRecorderTest, OverABadLineNothingWrongIsKeptAndNoTriggerLostOrDoubled)
{
    for (const char *words : {"bad-bcc,rate=0.00015,seed=3", "late,rate=0.00015,seed=4,ms=40",
                              "silent,rate=0.00015,seed=5", "short,rate=0.00015,seed=6"})
        ASSERT_EQ(faults.Add(QString::fromLatin1(words), drive::SteadyNow()), QString());
    GoOnLine();
    TriggerSetting setting;
    setting.kind = TriggerKind::Rising;
    setting.param = Swings;
    setting.rawBand = Band;
    setting.windowMs = 100;
    setting.captures = 10;
    recorder.Arm(setting);
    std::vector<qint64> fired;
    QObject::connect(&recorder, &TrendRecorder::Triggered, [&](qint64 timeUs) { fired.push_back(timeUs); });
    Record();
    ASSERT_TRUE(Waits([&] { return recorder.Captures().size() >= 10; }));
    recorder.Stop();
    std::int64_t injected = 0;
    for (int kind = 0; kind < drive::FaultKindCount; ++kind)
        injected += faults.Injected(drive::FaultKind(kind));
    EXPECT_GT(injected, 2);
    ExpectTruth();
    EXPECT_EQ(fired.size(), 10u) << "no more than was asked for";

    const SampleRing &samples = recorder.Data().TrackOf(Swings)->samples;
    auto next = fired.begin();
    int torn = 0;
    for (qint64 turn = samples.First().timeUs / qint64(PeriodUs); next != fired.end(); ++turn) {
        const auto metUs = qint64((double(turn) + 0.25) * PeriodUs);
        const auto armedUs = qint64((double(turn) + 0.25 * (1 - double(Band) / Peak)) * PeriodUs);
        const std::size_t after = samples.IndexFrom(metUs);
        if (after == 0)
            continue;
        ASSERT_LT(after, samples.Size()) << "fired at no passage";
        const std::size_t armed = samples.IndexFrom(armedUs);
        bool isTorn = false;
        for (std::size_t i = armed; i <= after; ++i)
            isTorn = isTorn || samples[i].isAfterGap != 0;
        torn += isTorn ? 1 : 0;
        // Where a time-out lies around the passage, all that can be known is between two samples.
        const qint64 openUs =
            samples[after].timeUs - samples[after - 1].timeUs + samples[after].spanUs + 10'000;
        const bool isHit = std::abs(*next - metUs) <= openUs;
        EXPECT_TRUE(isHit || isTorn) << "met at " << metUs << ", fired at " << *next;
        next += isHit ? 1 : 0;
    }
    // Each fault tears one passage at most, however slow the computer is.
    EXPECT_LE(torn, injected);
    for (std::size_t i = 0; i < fired.size(); ++i) {
        const TrendData &capture = *recorder.Captures().at(i);
        EXPECT_EQ(capture.triggerUs, fired[i]);
        const TrendData whole = recorder.Data().Cut(fired[i] - 20'000, fired[i] + 80'000);
        for (std::size_t k = 0; k < whole.tracks.size(); ++k)
            EXPECT_EQ(capture.tracks[k].samples.Size(), whole.tracks[k].samples.Size());
    }
}

TEST_F(TrendRecorderTest, OneReplyTooManyTakesBackWhatItMayHaveShifted)
{
    GoOnLine();
    Record();
    // Said once more while the next answer is still on its way: from then on each is that to the question
    // before.
    int doubled = 0;
    int asked = 0;
    const auto connection = QObject::connect(&link, &DriveLink::Asked, [&](int p) {
        if (++asked % 200 != 0 || doubled >= 8)
            return;
        ++doubled;
        terminal.Write(ValueReply(TruthAt(p == Swings ? Param::CurrentFeedback : Swings, MicrosecondsUp())));
    });
    ASSERT_TRUE(Waits([&] { return doubled >= 8; }));
    QObject::disconnect(connection);
    // A pause shows that the line is in step again.
    int passes = 0;
    QObject::connect(&link, &DriveLink::PassBegins, [&] { ++passes; });
    ASSERT_TRUE(Waits([&] { return passes >= 3; }));
    // Or it comes while nobody waits for one: then those before it may have been one too early.
    const SampleRing &first = recorder.Data().tracks.front().samples;
    const qint64 takenBack = first.TakenBack();
    EXPECT_GT(takenBack, 0);
    ASSERT_TRUE(Waits([&] { return !first.IsEmpty() && !link.SerialCommTimeout.isActive(); }));
    terminal.Write(ValueReply(0));
    ASSERT_TRUE(Waits([&] { return first.TakenBack() > takenBack; }));
    recorder.Stop();
    ExpectTruth();

    link.Close();
    recorder.Start();
    GoOnLine();
    ASSERT_TRUE(Waits([&] { return recorder.RateOf(Swings).value_or(0) > 20; }));
    link.Close();
    GoOnLine();
    const SampleRing &samples = recorder.Data().TrackOf(Swings)->samples;
    const qint64 lostUs = recorder.Data().marks.at(1).timeUs;
    ASSERT_TRUE(Waits([&] { return !samples.IsEmpty() && samples.Last().timeUs > lostUs; }));
    EXPECT_EQ(samples[samples.IndexFrom(lostUs)].isAfterGap, 1U);
    EXPECT_EQ(samples.At(lostUs), nullptr);
}

TEST_F(TrendRecorderTest, AnHourAtFullRateStaysWithinItsMemory)
{
    constexpr qint64 HourUs = 3'600'000'000;
    constexpr double PerSecond = 349;
    static_assert(sizeof(TrendSample) == 16, "20 MB for an hour of the whole line");
    qint64 nowUs = 1'000'000;
    TrendRecorder patient(table, document, link, emulator, {}, [&] { return nowUs; });
    patient.AddChannel(Swings, TrendPace::Fast);
    patient.SetKeepMs(24 * 3600 * 1000);
    patient.Start();
    std::size_t most = 0;
    while (nowUs < HourUs + HourUs / 4) {
        for (int i = 0; i < 20'000; ++i) {
            nowUs += qint64(1e6 / PerSecond);
            Q_EMIT emulator.Emulated();
        }
        // It tidies up ten times a second.
        const qint64 oldestUs = nowUs - HourUs;
        ASSERT_TRUE(Waits([&] { return patient.Data().FirstUs() >= oldestUs; }));
        most = std::max(most, patient.Data().tracks.front().samples.Size());
    }
    EXPECT_NEAR(double(most), PerSecond * 3600, PerSecond);
    EXPECT_LT(double(most) * sizeof(TrendSample), 21e6);
}

} // namespace quorvik::testing
