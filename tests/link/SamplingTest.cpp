#include "link/LinkFixture.h"
#include "link/SampleInterest.h"

namespace quorvik::testing
{

class SamplingTest : public LinkFixture
{
protected:
    SamplingTest()
    {
        for (int p = 0; p <= peer.LastParam; ++p)
            peer.Values[p] = 500 + p;
        QObject::connect(&link, &DriveLink::Confirmed, [this](int p, std::int32_t rawValue) {
            ++told[p];
            wrong += rawValue == 500 + p ? 0 : 1;
            EXPECT_LE(link.AskedUs(), link.AnsweredUs());
        });
    }

    void TearDown() override { sampled.Set({}); }

    /** Where each of these frames stands first after the one before it; -1 where it does not. */
    bool FollowEachOther(const QList<QByteArray> &frames) const
    {
        for (qsizetype at = 0; at + frames.size() <= peer.Frames.size(); ++at)
            if (peer.Frames.mid(at, frames.size()) == frames)
                return true;
        return false;
    }

    SampleInterest sampled{link};
    std::map<int, int> told;
    int wrong = 0;
};

TEST_F(SamplingTest, ThePausesAreFilledAndNeighboursAreARun)
{
    Connect();
    sampled.Set({10, 11, 30, 400});
    ASSERT_TRUE(WaitFor(ReadRequest(30), 50));
    EXPECT_TRUE(FollowEachOther({ReadRequest(10), Ack, Eot, ReadRequest(30), Eot, ReadRequest(10), Ack}));
    EXPECT_EQ(peer.Count(ReadRequest(400)), 0) << "this drive does not have it";
    EXPECT_LE(told[30], told[10] + 1);
    EXPECT_GE(told[30], told[11] - 1);
    EXPECT_EQ(P(11).Value, 511) << "the table holds what the drive told";
    EXPECT_EQ(wrong, 0);

    sampled.Set({});
    PumpWhile([] { return true; }, QDeadlineTimer(2 * Short.scanPause));
    EXPECT_TRUE(IsSilent()) << "and ends with the interest in it";
    Want({12});
    EXPECT_TRUE(WaitFor(ReadRequest(12), 3)) << "scans go on";
}

TEST_F(SamplingTest, ScansGoOnBesideIt)
{
    Want({3, 7, 20});
    Connect();
    sampled.Set({30});
    const int before = told[20];
    PumpWhile([] { return true; }, QDeadlineTimer(20 * Short.scanPause));
    EXPECT_GE(told[20] - before, 8) << "about one each pause";
    EXPECT_GT(told[30], 5 * told[20]);
    EXPECT_EQ(wrong, 0);
}

TEST_F(SamplingTest, ALongScanLeavesRoomForIt)
{
    Connect();
    sampled.Set({30});
    peer.Answer = [this](const QByteArray &frame) {
        // Each answer takes a while, as on a real line.
        QTimer::singleShot(2, &link, [this, reply = peer.DriveAnswer(frame)] { peer.Send(reply); });
        return QByteArray();
    };
    ASSERT_TRUE(WaitFor(ReadRequest(30), 3));
    peer.Frames.clear();
    bool isOver = false;
    QObject::connect(&link, &DriveLink::ScanFinished, [&](const ScanResult &result) {
        isOver = true;
        EXPECT_TRUE(result.missing.empty());
        EXPECT_EQ(result.end, ScanResult::End::Complete);
    });
    link.StartScan(WholeScan::Reading);
    ASSERT_TRUE(WaitUntil([&] { return isOver; }));
    EXPECT_GE(peer.Count(ReadRequest(30)), 3);
    for (int p = 0; p <= peer.LastParam; ++p)
        EXPECT_EQ(P(p).Value, 500 + p);

    isOver = false;
    link.StartFetch({1, 5, 9, 30});
    ASSERT_TRUE(WaitUntil([&] { return isOver; }));
    isOver = false;
    link.StartStore({{4, 9}, {6, 8}});
    ASSERT_TRUE(WaitUntil([&] { return isOver; }));
    EXPECT_EQ(peer.Values[6], 8);
    const int before = told[30];
    EXPECT_TRUE(WaitUntil([&] { return told[30] > before + 5; })) << "and afterwards it goes on";
}

TEST_F(SamplingTest, AnEntryGoesBeforeTheNextRound)
{
    Want({3, 7, 20, 25, 33});
    Connect();
    sampled.Set({12, 15, 18, 30});
    ASSERT_TRUE(WaitFor(ReadRequest(30), 5));
    for (int round = 0; round < 40; ++round) {
        // At another moment of scan and pause each time.
        PumpWhile([] { return true; }, QDeadlineTimer(round % 7));
        peer.Frames.clear();
        Enter(21, round);
        ASSERT_TRUE(WaitFor(WriteRequest(21, round)));
        const qsizetype reads = std::ranges::count_if(
            peer.Frames, [](const QByteArray &frame) { return frame.size() == 5 || frame == Ack; });
        EXPECT_LE(reads, 4);
        ASSERT_TRUE(WaitForWrites());
    }
    EXPECT_TRUE(failures.isEmpty());
    EXPECT_EQ(peer.Values[21], 39);
    const int before = told[33];
    EXPECT_TRUE(WaitUntil([&] { return told[33] > before + 2; }));
}

TEST_F(SamplingTest, AStreamOfEntriesKeepsNoBoxFromBeingRead)
{
    Want({3, 33});
    Connect();
    sampled.Set({12});
    QTimer slider;
    int value = 0;
    QObject::connect(&slider, &QTimer::timeout, [&] { Enter(21, ++value % 900); });
    slider.start(1);
    const int before = told[33];
    EXPECT_TRUE(WaitUntil([&] { return told[33] > before + 5; }));
}

TEST_F(SamplingTest, ARefusedEntryIsRepeatedAPauseApart)
{
    Connect();
    sampled.Set({12});
    ASSERT_TRUE(WaitFor(ReadRequest(12), 5));
    Answer(WriteRequest(21, 5), Nak);
    asker.Expect(QStringLiteral("Could not write value of 5 to (21) Name 21"));
    int samples = 0;
    bool isGivenUp = false;
    QObject::connect(&link, &DriveLink::WriteRefused, [&] { isGivenUp = true; });
    QElapsedTimer clock;
    clock.start();
    Enter(21, 5);
    ASSERT_TRUE(WaitUntil([&] { return isGivenUp; }));
    EXPECT_GE(clock.elapsed(), 2 * Short.scanPause - 2);
    EXPECT_EQ(peer.Count(WriteRequest(21, 5)), 3);
    samples = told[12];
    EXPECT_TRUE(WaitUntil([&] { return told[12] > samples; }));
}

TEST_F(SamplingTest, FailuresCountAsInAScan)
{
    struct Case {
        const char *name;
        QByteArray reply;
        LinkFault fault;
    };
    const Case cases[] = {{"damage", Spoiled(ValueReply(530)), LinkFault::DamagedReply},
                          {"silence", {}, LinkFault::NoReply},
                          {"too short", ValueReply(530).first(4), LinkFault::WrongLength},
                          {"too long", ValueReply(530) + '\1', LinkFault::WrongLength}};
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        Connect();
        sampled.Set({30});
        ASSERT_TRUE(WaitFor(ReadRequest(30), 5));
        // Twice is forgiven, after as long a silence as ever.
        const QMetaObject::Connection broken =
            QObject::connect(&link, &DriveLink::Broken, [&] { FAIL() << "twice is forgiven"; });
        Answer(ReadRequest(30), row.reply, peer.Count(ReadRequest(30)) + 2);
        const int before = told[30];
        ASSERT_TRUE(WaitUntil([&] { return told[30] > before + 5; }));
        QObject::disconnect(broken);
        std::optional<LinkFault> ended;
        const QMetaObject::Connection expected =
            QObject::connect(&link, &DriveLink::Broken, [&](LinkFault fault) { ended = fault; });
        asker.Expect({});
        Answer(ReadRequest(30), row.reply);
        EXPECT_TRUE(WaitForOffLine());
        EXPECT_EQ(ended, row.fault);
        QObject::disconnect(expected);
        sampled.Set({});
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(SamplingTest, OneReplyTooManyShowsInTheNextQuietPause)
{
    LinkTimings timings = Short;
    timings.sampleQuiet = 200;
    DriveLink other(table, timings);
    other.MSComm1.DeviceOf = [this](int) { return peer.Device(); };
    Answer({});
    ASSERT_TRUE(other.Open().isEmpty());
    ASSERT_TRUE(WaitUntil([&] { return other.PropMax != 0; }));
    ASSERT_TRUE(other.TakeSize());
    SampleInterest wanted(other);
    wanted.Set({10, 20});
    QElapsedTimer sinceExtra;
    bool isSeen = false;
    int passes = 0;
    QObject::connect(&other, &DriveLink::PassBegins, [&] { ++passes; });
    QObject::connect(&other, &DriveLink::OutOfStep, [&] { isSeen = true; });
    ASSERT_TRUE(WaitFor(ReadRequest(20), 10));
    // It comes before the answer to the next question, is taken for it, and so is each one after it.
    peer.Answer = [&](const QByteArray &frame) {
        const QByteArray reply = peer.DriveAnswer(frame);
        QTimer::singleShot(3, &link, [this, reply] { peer.Send(reply); });
        if (frame == ReadRequest(10) && !sinceExtra.isValid()) {
            sinceExtra.start();
            QTimer::singleShot(4, &link, [this, reply] { peer.Send(reply); });
        }
        return QByteArray();
    };
    ASSERT_TRUE(WaitUntil([&] { return isSeen; }));
    EXPECT_LT(sinceExtra.elapsed(), 2 * timings.sampleQuiet + 2 * timings.quiet);
    EXPECT_GE(passes, 1);
    Answer({});
    other.Close();
}

} // namespace quorvik::testing
