#include "link/LinkFixture.h"

namespace quorvik::testing
{

class TransferTest : public LinkFixture
{
protected:
    TransferTest()
    {
        QObject::connect(&link, &DriveLink::Fetched, [this](int p, int rawValue) { fetched[p] = rawValue; });
        QObject::connect(&link, &DriveLink::Stored,
                         [this](int p, bool isTaken) { stored.emplace_back(p, isTaken); });
        QObject::connect(&link, &DriveLink::ScanFinished, [this](const ScanResult &result) {
            scan = result;
            isOver = true;
        });
        for (int p = 0; p <= peer.LastParam; ++p)
            peer.Values[p] = 500 + p;
    }

    bool Fetch(const std::set<int> &params)
    {
        isOver = false;
        fetched.clear();
        link.StartFetch(params);
        return WaitUntil([this] { return isOver; });
    }
    bool Store(const std::vector<ParamValue> &values)
    {
        isOver = false;
        stored.clear();
        link.StartStore(values);
        return WaitUntil([this] { return isOver; });
    }
    std::vector<int> SentWrites() const
    {
        std::vector<int> params;
        for (const QByteArray &frame : peer.Frames)
            if (frame.size() == 7 && frame.at(1) == 1)
                params.push_back(quint8(frame.at(2)) * 256 + quint8(frame.at(3)));
        return params;
    }

    std::map<int, int> fetched;
    std::vector<std::pair<int, bool>> stored;
    ScanResult scan;
    bool isOver = false;
};

TEST_F(TransferTest, FetchedValuesLeaveTheTableAlone)
{
    Want({12});
    Connect();
    Enter(21, 7);
    const std::map<int, int> wanted = {{10, 510}, {11, 511}, {12, 512}, {20, 520}};
    ASSERT_TRUE(Fetch({10, 11, 12, 20}));
    EXPECT_EQ(fetched, wanted);
    EXPECT_TRUE(scan.missing.empty() && scan.end == ScanResult::End::Complete);
    EXPECT_EQ(P(10).Value, 0);
    EXPECT_EQ(P(12).Value, 512) << "but for what is polled anyway";
    EXPECT_EQ(peer.Values[21], 7) << "an edit goes before";
    // Held for a file that is just being loaded: what the drive holds can still be asked for.
    P(10).WriteFlag = WriteState::Held;
    ASSERT_TRUE(Fetch({10}));
    EXPECT_EQ(fetched[10], 510);
}

TEST_F(TransferTest, AReadingOfRowsGoesOnAfterSilenceDamageAndStrays)
{
    struct Case {
        const char *name;
        std::function<QByteArray(const QByteArray &frame, int count)> spoil;
    };
    const Case cases[] = {
        {"silence",
         [&](const QByteArray &f, int n) { return n % 9 == 8 ? QByteArray() : peer.DriveAnswer(f); }},
        {"damage",
         [&](const QByteArray &f, int n) {
             const QByteArray reply = peer.DriveAnswer(f);
             return n % 7 == 6 && reply.size() == 5 ? Spoiled(reply) : reply;
         }},
        {"one reply twice",
         [&](const QByteArray &f, int n) {
             const QByteArray reply = peer.DriveAnswer(f);
             return n == 5 ? reply + reply : reply;
         }},
    };
    Connect();
    std::set<int> all;
    for (int p = 0; p <= peer.LastParam; ++p)
        all.insert(p);
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        int count = 0;
        peer.Answer = [&](const QByteArray &frame) {
            return frame == Eot ? QByteArray() : row.spoil(frame, count++);
        };
        ASSERT_TRUE(Fetch(all));
        EXPECT_EQ(fetched.size(), all.size());
        EXPECT_TRUE(scan.missing.empty());
        for (const auto &[p, rawValue] : fetched)
            EXPECT_EQ(rawValue, 500 + p) << p;
    }
}

TEST_F(TransferTest, AReplyThatComesTooLateIsTakenForNoOther)
{
    Connect();
    int count = 0;
    peer.Answer = [&](const QByteArray &frame) -> QByteArray {
        const QByteArray reply = peer.DriveAnswer(frame);
        if (frame == Eot || count++ != 4)
            return reply;
        // After the time-out and the pause: while the next request is under way already.
        QTimer::singleShot(Short.replyTimeout + Short.scanPause + 3, [this, reply] { peer.Send(reply); });
        return {};
    };
    ASSERT_TRUE(Fetch({1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(scan.missing.empty());
    for (const auto &[p, rawValue] : fetched)
        EXPECT_EQ(rawValue, 500 + p) << p;
}

TEST_F(TransferTest, StoresInItsOwnOrderAndTriesTheRefusedAgain)
{
    Connect();
    // 30 is taken once 20 has arrived, 9 at the third attempt, 5 never.
    peer.Answer = [&](const QByteArray &frame) {
        const bool isEarly = frame == WriteRequest(30, 1) && peer.Count(WriteRequest(20, 2)) == 0;
        const bool isRefused =
            frame == WriteRequest(5, 3) || (frame == WriteRequest(9, 4) && peer.Count(frame) < 3);
        return isEarly || isRefused ? Nak : peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(Store({{30, 1}, {20, 2}, {5, 3}, {9, 4}}));
    EXPECT_EQ(SentWrites(), (std::vector{30, 20, 5, 9, 30, 5, 9, 5, 9, 5}));
    EXPECT_EQ(stored, (std::vector<std::pair<int, bool>>{{20, true}, {30, true}, {9, true}, {5, false}}));
    EXPECT_EQ(scan.missing, std::set({5}));
    EXPECT_EQ(scan.taken, 3);
    EXPECT_EQ(P(20).Value, 0) << "the table is the listener's";
    // One that fits into no packet keeps none of the others.
    ASSERT_TRUE(Store({{8, 70000}, {7, 1}}));
    EXPECT_EQ(stored, (std::vector<std::pair<int, bool>>{{7, true}, {8, false}}));
    EXPECT_FALSE(failures.isEmpty());
}

TEST_F(TransferTest, AStopGoesBeforeAndCancelEndsBetweenTwo)
{
    Connect();
    const auto at = [this](const QByteArray &wanted, const std::function<void()> &act) {
        peer.Answer = [=, this](const QByteArray &frame) {
            if (frame == wanted)
                act();
            return peer.DriveAnswer(frame);
        };
    };
    table.LastParam = 300;
    at(WriteRequest(11, 1), [this] { Enter(Param::Stop, 1); });
    ASSERT_TRUE(Store({{10, 1}, {11, 1}, {12, 1}}));
    EXPECT_EQ(SentWrites(), (std::vector{10, 11, Param::Stop, 12}));

    peer.Frames.clear();
    at(WriteRequest(11, 1), [this] { link.CancelScan(); });
    ASSERT_TRUE(Store({{10, 1}, {11, 1}, {12, 1}}));
    EXPECT_EQ(scan.end, ScanResult::End::Cancelled);
    EXPECT_EQ(stored.size(), 2U) << "the answer that was on its way counts";
    EXPECT_EQ(SentWrites(), (std::vector{10, 11}));
}

TEST_F(TransferTest, StopOnlyParametersAreGivenUpTogether)
{
    Connect();
    for (const int p : {3, 5, 7, 9, 11})
        P(p).Attributes |= Attr::Icr;
    std::vector<int> givenUp;
    QObject::connect(&link, &DriveLink::StopOnlyGivenUp,
                     [&](const std::vector<int> &params) { givenUp = params; });
    peer.Answer = [&](const QByteArray &frame) {
        const int p = frame.size() == 7 ? frame.at(3) : 0;
        return p == 2 || (p > 0 && p < 12 && p % 2 == 1) ? Nak : peer.DriveAnswer(frame);
    };
    for (const int limit : {3, 0}) {
        link.StopOnlyRefusals = limit;
        givenUp.clear();
        for (int p = 2; p <= 12; ++p)
            Enter(p, 40 + p);
        for (int boxes = limit == 0 ? 6 : 4; boxes > 0; --boxes)
            asker.Expect("Could not write value");
        if (limit != 0)
            asker.Expect("These were not sent any more:\r\n(9) Name 9\r\n(11) Name 11\r\n\r\n");
        isOver = false;
        link.StartScan(WholeScan::Writing);
        ASSERT_TRUE(WaitUntil([this] { return isOver; }));
        EXPECT_EQ(givenUp, limit == 0 ? std::vector<int>() : std::vector({9, 11}));
        EXPECT_EQ(scan.missing, (std::set{2, 3, 5, 7, 9, 11}));
        EXPECT_EQ(scan.taken, 5);
        EXPECT_EQ(peer.Values[12], 52);
    }
}

} // namespace quorvik::testing
