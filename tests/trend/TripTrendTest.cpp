#include "trend/TripTrend.h"

#include "link/ValueStates.h"
#include "operations/TripRecords.h"
#include "support/SimulatedDrive.h"
#include "trend/StoreFixture.h"

#include <QSignalSpy>

namespace quorvik::testing
{

/** The recorder before a trip, over a line to the simulated drive; thirty seconds are three tenths here. */
class TripTrendTest : public SetTest
{
protected:
    static constexpr int LongMs = 20'000;

    TripTrendTest()
    {
        link.MSComm1.DeviceOf = [this](int) { return drive.LinkPath(); };
        table.AddReadInterest(Param::DriveState);
        table.AddReadInterest(Param::LatchedFault);
        QObject::connect(&watch, &TripRecords::Recorded, [this] {
            trips.NoteTrip(watch.Records().front().number, QStringLiteral("Phase Loss"));
        });
    }
    ~TripTrendTest() override { link.Close(); }

    static TrendTimings Scaled()
    {
        TrendTimings timings;
        timings.tripMs = 1500;
        timings.afterTripMs = 250;
        return timings;
    }
    void GoOnLine()
    {
        ASSERT_EQ(link.Open(), QString());
        ASSERT_TRUE(PumpWhile([this] { return link.IsAskingForSize(); }, QDeadlineTimer(LongMs)));
        ASSERT_TRUE(link.TakeSize());
    }
    bool WaitFor(const std::function<bool()> &isTrue)
    {
        return PumpWhile([&] { return !isTrue(); }, QDeadlineTimer(LongMs));
    }
    void Rest(int milliseconds)
    {
        PumpWhile([] { return true; }, QDeadlineTimer(milliseconds));
    }

    SimulatedDrive drive{SimulatedDrive::Live()};
    DriveLink link{table, LinkTimings{.scanPause = 5, .replyTimeout = 150}};
    ValueStates states{table, link};
    TripRecords watch{table, link, states};
    DriveEmulator emulator{table};
    TrendRecorder recorder{table, document, link, emulator, Scaled()};
    TrendStore store{folder.filePath(QStringLiteral("recordings")), Scaled()};
    TripTrend trips{recorder, store, link};
};

TEST_F(TripTrendTest, ATripKeepsTheTimeBeforeIt)
{
    trips.SetOn(true);
    EXPECT_FALSE(recorder.IsRunning()) << "no drive is there";
    GoOnLine();
    EXPECT_TRUE(recorder.IsRunning());
    ASSERT_TRUE(WaitFor([this] { return watch.Records().empty() && recorder.RateOf(Param::VelFeedback); }));
    Rest(Scaled().tripMs + 300);
    QSignalSpy saved(&trips, &TripTrend::Saved);
    drive.Send(QStringLiteral("trip 64"));
    ASSERT_TRUE(WaitFor([&] { return !saved.isEmpty(); }));
    const int number = watch.Records().front().number;
    const QString path = trips.PathOf(number);
    ASSERT_TRUE(store.Flush(LongMs));
    QString failure;
    const TrendDataPtr data = store.Load(path, &failure);
    ASSERT_TRUE(data) << failure.toStdString();
    EXPECT_TRUE(data->head.title.startsWith(QStringLiteral("Trip %1 of ").arg(number)));
    ASSERT_EQ(data->tracks.size(), TripTrend::MostChannels);
    ASSERT_TRUE(data->triggerUs);
    constexpr qint64 ATenth = 100'000;
    for (const TrendTrack &track : data->tracks) {
        const SampleRing &samples = track.samples;
        EXPECT_LE(samples.First().timeUs, *data->triggerUs - Scaled().tripMs * 1000 + ATenth);
        EXPECT_GE(samples.Last().timeUs, *data->triggerUs + Scaled().afterTripMs * 1000 - ATenth);
    }
    const SampleRing &state = data->TrackOf(Param::DriveState)->samples;
    EXPECT_NE(state.First().rawValue, 8);
    EXPECT_EQ(state.Last().rawValue, 8) << "the trip is within it";
    EXPECT_EQ(store.List().at(0).kind, RecordingKind::Trip);
    EXPECT_EQ(trips.PathOf(number + 1), QString());
    // The next one is waited for; what comes while it is still being recorded belongs to it.
    trips.NoteTrip(number + 1, QStringLiteral("a second one"));
    trips.NoteTrip(number + 2, QStringLiteral("a third one"));
    trips.SetOn(false);
    EXPECT_FALSE(recorder.IsRunning());
    EXPECT_NE(trips.PathOf(number + 1), QString()) << "cut short, and yet kept";
    EXPECT_NE(trips.PathOf(number + 1), path);
    EXPECT_EQ(trips.PathOf(number + 1), trips.PathOf(number + 2));
}

} // namespace quorvik::testing
