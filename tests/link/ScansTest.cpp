#include "link/LinkFixture.h"

#include <QElapsedTimer>

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

TEST_F(ScansTest, WritesFollowEachOtherWithoutATick)
{
    Connect();
    P(8).Attributes = Attr::Long;
    Enter(9, -1);
    Enter(8, 70000);
    Enter(5, 70);
    peer.Answer = [&](const QByteArray &frame) {
        EXPECT_FALSE(link.SerialCommTimer.isActive());
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    // An unsigned value is cut to sixteen bits.
    EXPECT_EQ(peer.Frames,
              (QList<QByteArray>{WriteRequest(5, 70), WriteRequest(8, 0x1170), WriteRequest(9, -1)}));
    EXPECT_EQ(P(5).WriteFlag + P(8).WriteFlag + P(9).WriteFlag, 0);
}

TEST_F(ScansTest, AWriteInTheMiddleOfAReadScanWaitsForTheNextTick)
{
    Connect();
    Want({10, 11, 12, 20});
    peer.Values = {{11, 1}, {12, 1}};
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == ReadRequest(10) && peer.Count(frame) == 1)
            Enter(11, 99);
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitFor(WriteRequest(11, 99)));
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{ReadRequest(10), Ack, Ack, Eot, ReadRequest(20), Eot,
                                              WriteRequest(11, 99)}));
    EXPECT_EQ(P(11).Value, 99) << "the value of the scan under way is the older one";
}

TEST_F(ScansTest, AChangeDuringAWriteScanIsNotLost)
{
    Connect();
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == WriteRequest(20, 1)) {
            Enter(20, 2); // the very parameter whose answer is under way
            Enter(5, 3);  // and one behind the cursor
        }
        return peer.DriveAnswer(frame);
    };
    Enter(20, 1);
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{WriteRequest(20, 1), WriteRequest(5, 3), WriteRequest(20, 2)}));
}

TEST_F(ScansTest, AWriteThatFailsIsTriedThreeTimesAPauseApart)
{
    const struct {
        QByteArray reply;
        int failures;
    } cases[] = {{Nak, 2}, {{}, 2}, {Nak, 3}};
    Connect();
    asker.WhileShown = [&] {
        EXPECT_TRUE(IsAtRest());
        const auto sent = peer.Frames;
        Idle(5 * Short.scanPause);
        EXPECT_EQ(peer.Frames, sent) << "nothing goes out behind a message";
    };
    for (const auto &c : cases) {
        peer.Frames.clear();
        QElapsedTimer clock;
        peer.Answer = [&](const QByteArray &frame) {
            if (frame != WriteRequest(30, 4))
                return peer.DriveAnswer(frame);
            EXPECT_TRUE(!clock.isValid() || clock.elapsed() >= Short.scanPause - 2);
            clock.start();
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
    ASSERT_EQ(asker.Shown.size(), 1);
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

TEST_F(ScansTest, LateBytesProveThatTheDriveAnswersAndNeverReachTheTable)
{
    Connect();
    Want({10, 20});
    peer.Values = {{10, 111}, {20, 222}};
    peer.Answer = [&](const QByteArray &frame) {
        return frame == ReadRequest(10) && peer.Count(frame) <= 4 ? QByteArray() : peer.DriveAnswer(frame);
    };
    // A whole reply, or half of one, always in the pause between scans: never three silences in a row.
    for (const qsizetype lateBytes : {5, 3, 5, 3}) {
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount == 1; }));
        peer.Send(ValueReply(9999).first(lateBytes));
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount == 0; }));
        EXPECT_EQ(P(10).Value, 0);
    }
    ASSERT_TRUE(WaitUntil([&] { return P(20).Value == 222; }));
    EXPECT_EQ(P(10).Value, 111);
    EXPECT_EQ(link.PacketSizeErrorCount, 0);
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
        peer.Answer = [&](const QByteArray &frame) {
            return frame == ReadRequest(10) && peer.Count(frame) == 1 ? wrong : peer.DriveAnswer(frame);
        };
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
    EXPECT_EQ(P(0).Value, 0) << "the value of 21 is not that of 0";
    EXPECT_TRUE(WaitUntil([&] { return P(21).Value == 6; }));
}

} // namespace quorvik::testing
