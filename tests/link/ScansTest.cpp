#include "link/LinkFixture.h"

#include <QElapsedTimer>
#include <memory>
#include <utility>

namespace quorvik::testing
{

using ScansTest = LinkFixture;

TEST_F(ScansTest, ReadsRunsContinuouslyAndEndsEachWithEot)
{
    const struct {
        std::vector<int> wanted;
        QList<QByteArray> bytes;
    } cases[] = {
        {{10, 11, 14}, {ReadRequest(10), Ack, Eot, ReadRequest(14), Eot}},
        {{39, 40}, {ReadRequest(39), Ack, Eot}},
        {{40}, {ReadRequest(40), Eot}},
        {{0, 1}, {ReadRequest(0), Ack, Eot}},
    };
    Connect();
    for (const auto &c : cases) {
        Idle(3 * Short.scanPause);
        EXPECT_TRUE(peer.Frames.isEmpty()) << "nobody's interest leaves the line silent";
        for (const int p : c.wanted) {
            peer.Values[p] = 100 + p;
            model.AddReadInterest(p);
        }
        ASSERT_TRUE(WaitFor(c.bytes.first(), 2));
        EXPECT_EQ(peer.Frames.first(c.bytes.size()), c.bytes);
        for (const int p : c.wanted) {
            EXPECT_EQ(P(p).Value, 100 + p);
            model.RemoveReadInterest(p);
        }
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.last() == Eot; }));
        peer.Frames.clear();
    }
}

TEST_F(ScansTest, HoldsAndPendingWritesAreLeftAlone)
{
    Connect();
    peer.Values = {{4, 7}, {5, 8}, {6, 9}};
    P(5).WriteFlag = WriteState::Held;
    P(5).Value = 55;
    Want({4, 5, 6});
    // Within a run the value of a held parameter is fetched, and dropped.
    ASSERT_TRUE(WaitFor(ReadRequest(4), 2));
    EXPECT_EQ(peer.Frames.first(4), (QList<QByteArray>{ReadRequest(4), Ack, Ack, Eot}));
    EXPECT_EQ(P(5).Value, 55);
    EXPECT_EQ(P(6).Value, 9);
    model.RemoveReadInterest(4);
    ASSERT_TRUE(WaitFor(ReadRequest(6))) << "a held parameter opens no run";
    Enter(9, 3);
    ASSERT_TRUE(WaitFor(WriteRequest(9, 3)));
    EXPECT_EQ(peer.Count(WriteRequest(5, 55)), 0);
}

TEST_F(ScansTest, WritesKeepTheirOrderAndLoseNoChange)
{
    peer.LastParam = 300;
    const QByteArray run = WriteRequest(Param::Run, 0);
    const struct {
        const char *title;
        std::vector<std::pair<int, int>> entries; ///< before the first frame
        int wanted;
        QByteArray trigger; ///< at this frame the rest is entered
        std::vector<std::pair<int, int>> rest;
        QList<QByteArray> bytes;
    } cases[] = {
        {"rising, an unsigned value cut to 16 bits",
         {{9, -1}, {8, 70000}, {5, 70}},
         0,
         {},
         {},
         {WriteRequest(5, 70), WriteRequest(8, 0x1170), WriteRequest(9, -1)}},
        {"the one under way again, and one behind the cursor",
         {{20, 1}},
         0,
         WriteRequest(20, 1),
         {{20, 2}, {5, 3}},
         {WriteRequest(20, 1), WriteRequest(5, 3), WriteRequest(20, 2)}},
        {"in a read scan at the next tick",
         {},
         3,
         ReadRequest(10),
         {{11, 99}},
         {ReadRequest(10), Ack, Ack, Eot, WriteRequest(11, 99)}},
        {"Stop before all others",
         {{20, 1}, {21, 1}},
         0,
         WriteRequest(20, 1),
         {{5, 3}, {Param::Run, 0}},
         {WriteRequest(20, 1), run, WriteRequest(21, 1), WriteRequest(5, 3)}},
        {"Stop in a read scan at once",
         {},
         3,
         ReadRequest(10),
         {{Param::Run, 0}},
         {ReadRequest(10), Eot, run, ReadRequest(11), Ack, Eot}},
    };
    Connect();
    ASSERT_TRUE(WaitFor(ReadRequest(Param::Jog)) && WaitFor(Eot))
        << "what the drive holds of a Jog is looked up once";
    P(8).Attributes = Attr::Long;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        peer.Frames.clear();
        bool isRest = false;
        peer.Answer = [&](const QByteArray &frame) {
            EXPECT_TRUE(frame == Eot || !link.SerialCommTimer.isActive())
                << "one follows the other without a tick";
            if (frame == c.trigger && !std::exchange(isRest, true))
                for (const auto &[p, rawValue] : c.rest)
                    Enter(p, rawValue);
            return peer.DriveAnswer(frame);
        };
        for (const auto &[p, rawValue] : c.entries)
            Enter(p, rawValue);
        for (int i = 0; i < c.wanted; ++i)
            model.AddReadInterest(10 + i);
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.size() >= c.bytes.size(); }));
        EXPECT_EQ(peer.Frames.first(c.bytes.size()), c.bytes);
        for (int i = 0; i < c.wanted; ++i)
            model.RemoveReadInterest(10 + i);
        ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    }
    EXPECT_EQ(P(11).Value, 99) << "the value of the scan under way is the older one";

    // As one of the whole table it has no right of way.
    peer.Frames.clear();
    model.SetAllWriteFlags(WriteState::Queued);
    ASSERT_TRUE(WaitFor(run));
    EXPECT_EQ(peer.Count(WriteRequest(20, 1)), 1);
}

TEST_F(ScansTest, AWriteThatFailsIsTriedThreeTimesAPauseApart)
{
    const struct {
        QByteArray reply;
        int failures;
    } cases[] = {{Nak, 2}, {{}, 2}, {Nak, 3}};
    Connect();
    asker.WhileShown = [&] {
        Enter(33, 1);
        EXPECT_TRUE(WaitFor(WriteRequest(33, 1))) << "the line goes on behind a message";
    };
    for (const auto &c : cases) {
        peer.Frames.clear();
        QElapsedTimer clock;
        peer.Answer = [&](const QByteArray &frame) {
            // Its own refusals count, whatever becomes of a parameter before it.
            if (frame == WriteRequest(29, 7))
                return peer.Count(frame) == 1 ? Nak : Ack;
            if (frame != WriteRequest(30, 4))
                return peer.DriveAnswer(frame);
            EXPECT_TRUE(!clock.isValid() || clock.elapsed() >= Short.scanPause - 2);
            clock.start();
            if (peer.Count(frame) == 2)
                Enter(29, 7);
            return peer.Count(frame) <= c.failures ? c.reply : Ack;
        };
        if (c.failures == 3)
            asker.Expect(QStringLiteral("Could not write value of 4 to (30) Name 30"));
        Enter(30, 4);
        Enter(31, 1);
        ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
        EXPECT_EQ(peer.Count(WriteRequest(30, 4)), 3);
        EXPECT_EQ(P(30).Value, 4) << "the value stays, refused or not";
        EXPECT_EQ(link.WriteRetryCount + link.NoResponseCount, 0);
        EXPECT_EQ(peer.Count(WriteRequest(31, 1)), 1) << "and the scan goes on";
    }
    ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == 1; }));
    EXPECT_EQ(asker.Shown.first().title, QStringLiteral("Write Error"));
}

TEST_F(ScansTest, AFailureIsToldOnceAndTheLinkGoesOn)
{
    Connect();
    Want({20});
    const std::function<void()> causes[] = {
        [&] { Enter(6, 40000); },
        // The same behind an acknowledged write, with the failure raised out of the port's event.
        [&] {
            Enter(5, 1);
            Enter(6, -40000);
        },
        [&] { link.ReadPropsIndex = 900; },
    };
    for (int told = 1; const auto &cause : causes) {
        const int reads = peer.Count(ReadRequest(20));
        cause();
        ASSERT_TRUE(WaitFor(ReadRequest(20), reads + 3));
        EXPECT_EQ(failures.size(), told++);
        EXPECT_EQ(P(6).WriteFlag, WriteState::None);
    }
    EXPECT_EQ(P(6).Value, -40000);
    EXPECT_EQ(peer.Count(WriteRequest(5, 1)), 1);
}

TEST_F(ScansTest, LateBytesAreNoAnswerAndNeverReachTheTable)
{
    Connect();
    Want({10, 20});
    Answer(ReadRequest(10));
    asker.Expect(QStringLiteral("not Responding"));
    // A whole reply, or half of one, always in the pause between scans.
    for (const int lateBytes : {5, 3}) {
        const int silences = link.NoResponseCount;
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount > silences; }));
        peer.Send(ValueReply(9999).first(lateBytes));
    }
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(P(10).Value, 0);
    EXPECT_EQ(link.PacketSizeErrorCount, 0);
}

TEST_F(ScansTest, AWholeReadIsWholeOrSaysWhatIsMissing)
{
    const auto spoil = [this](int from, int times) {
        return [this, from, times, seen = std::make_shared<int>(0)](const QByteArray &frame) {
            const QByteArray reply = peer.DriveAnswer(frame);
            return frame == ReadRequest(from) && ++*seen <= times ? Spoiled(reply) : reply;
        };
    };
    const struct {
        const char *title;
        std::function<QByteArray(const QByteArray &)> answer;
        int strayAfter; ///< so many times a reply comes behind the end of a pass
        const char *box;
        int reads; ///< of the first row
    } cases[] = {
        {"damaged once and again", spoil(0, 2), 0, nullptr, 3},
        {"damaged for good", spoil(0, 99), 0, "(0) Name 0", 3},
        {"out of step once", {}, 1, nullptr, 2},
        {"out of step for ever", {}, 99, "out of step", 4},
    };
    int boxes = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        ASSERT_NO_FATAL_FAILURE(Connect());
        peer.Answer = [&, strays = 0](const QByteArray &frame) mutable {
            if (frame == Eot && peer.Frames.size() > 40 && strays++ < c.strayAfter)
                return ValueReply(9);
            return c.answer ? c.answer(frame) : peer.DriveAnswer(frame);
        };
        if (c.box)
            asker.Expect(QLatin1String(c.box));
        link.SetAllReadFlags(1);
        link.RunWholeScan(1);
        link.SetAllReadFlags(-1);
        EXPECT_EQ(peer.Count(ReadRequest(0)), c.reads);
        EXPECT_EQ(model.HalfRead, c.box != nullptr);
        EXPECT_EQ(model.Title().contains(QStringLiteral("half read*]")), c.box != nullptr);
        link.GoOffLine(2);
        boxes += c.box ? 1 : 0;
        ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == boxes; }));
    }
}

TEST_F(ScansTest, AWrongLengthIsThrownAwayWholeAfterAPause)
{
    Connect();
    Want({10});
    peer.Values[10] = 42;
    const QByteArray tooLong = ValueReply(500) + '\x01';
    for (const QByteArray &wrong : {tooLong, tooLong.first(4)}) {
        P(10).Value = 0;
        peer.Frames.clear();
        Answer(ReadRequest(10), wrong, 1);
        ASSERT_TRUE(WaitUntil([&] { return link.PacketSizeErrorCount == 1; }));
        EXPECT_EQ(P(10).Value, 0);
        EXPECT_FALSE(link.SerialCommTimeout.isActive());
        peer.Send(tooLong);
        ASSERT_TRUE(WaitUntil([&] { return P(10).Value == 42; })) << "the rest did not reach the next scan";
        EXPECT_EQ(link.PacketSizeErrorCount, 0);
    }
}

TEST_F(ScansTest, PropertiesGoBeforeWritesAndAreDecodedByTheSignOfTheirParameter)
{
    Connect();
    P(9).Attributes = Attr::Long;
    peer.Answer = [&](const QByteArray &frame) {
        return frame.at(1) == 4 ? PropsReply(0x7F01, 0xFFFE, 0x8000, 4, 5) : peer.DriveAnswer(frame);
    };
    for (const int p : {9, 10}) {
        peer.Frames.clear();
        Enter(3, p);
        link.ReadPropsIndex = std::int16_t(p);
        ASSERT_TRUE(WaitFor(WriteRequest(3, p)));
        EXPECT_EQ(peer.Frames.first(), PropsRequest(p));
        EXPECT_EQ(link.PropMin, 32513);
        EXPECT_EQ(link.PropMax, p == 9 ? 65534 : -2);
        EXPECT_EQ(link.PropAttrib, p == 9 ? 32768 : -32768);
        EXPECT_EQ(link.PropPreset, 4);
        EXPECT_EQ(link.PropValue, 5);
        EXPECT_EQ(link.ReadPropsIndex, 0);
    }
}

TEST_F(ScansTest, AScanBegunAnewGivesUpTheReplyUnderWay)
{
    Connect();
    Want({20, 21});
    peer.Values = {{20, 5}, {21, 6}};
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == Ack && peer.Count(Ack) == 1)
            link.BeginScanAnew();
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitFor(ReadRequest(20), 2));
    EXPECT_EQ(peer.Frames.first(4), (QList<QByteArray>{ReadRequest(20), Ack, Eot, ReadRequest(20)}));
    EXPECT_EQ(P(0).Value, 0) << "the value of 21 is not that of 0";
    EXPECT_TRUE(WaitUntil([&] { return P(21).Value == 6; }));
}

} // namespace quorvik::testing
