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
        for (const int p : c.wanted) {
            peer.Values[p] = 100 + p;
            P(p).Value = 0;
            model.AddReadInterest(p);
        }
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.count(c.bytes.first()) >= 2; }));
        EXPECT_EQ(peer.Frames.first(c.bytes.size()), c.bytes);
        for (const int p : c.wanted) {
            EXPECT_EQ(P(p).Value, 100 + p);
            model.RemoveReadInterest(p);
        }
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.last() == Eot; }));
        Idle(3 * Short.scanPause);
        peer.Frames.clear();
    }
}

TEST_F(ScansTest, NobodysInterestLeavesTheLineSilent)
{
    Connect();
    Idle(5 * Short.scanPause);
    EXPECT_EQ(peer.Frames, QList<QByteArray>());
    EXPECT_TRUE(link.SerialCommTimer.isActive());
    Want({3});
    EXPECT_TRUE(WaitFor(ReadRequest(3))) << "and ticks go on";
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
    model.SetParamValue(9, 3, true, false);
    ASSERT_TRUE(WaitFor(WriteRequest(9, 3)));
    EXPECT_EQ(peer.Count(WriteRequest(5, 55)), 0);
}

TEST_F(ScansTest, WritesFollowEachOtherWithoutATick)
{
    Connect();
    model.SetParamValue(9, -1, true, false);
    model.SetParamValue(5, 70, true, false);
    peer.Answer = [&](const QByteArray &frame) {
        EXPECT_FALSE(link.SerialCommTimer.isActive());
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{WriteRequest(5, 70), WriteRequest(9, -1)}));
    EXPECT_EQ(P(5).WriteFlag + P(9).WriteFlag, 0);
}

TEST_F(ScansTest, AWriteInTheMiddleOfAReadScanWaitsForTheNextTick)
{
    Connect();
    Want({10, 11, 12, 20});
    peer.Values = {{11, 1}, {12, 1}};
    bool written = false;
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == ReadRequest(10) && !std::exchange(written, true))
            model.SetParamValue(11, 99, true, false);
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
    bool changed = false;
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == WriteRequest(20, 1) && !std::exchange(changed, true)) {
            model.SetParamValue(20, 2, true, false); // the very parameter whose answer is under way
            model.SetParamValue(5, 3, true, false);  // and one behind the cursor
        }
        return peer.DriveAnswer(frame);
    };
    model.SetParamValue(20, 1, true, false);
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{WriteRequest(20, 1), WriteRequest(5, 3), WriteRequest(20, 2)}));
}

TEST_F(ScansTest, AnUnsignedWriteIsCutToSixteenBits)
{
    Connect();
    P(8).Attributes = Attr::Long;
    model.SetParamValue(8, 70000, true, false);
    EXPECT_TRUE(WaitFor(WriteRequest(8, 0x1170)));
}

TEST_F(ScansTest, ARefusedWriteIsTriedThreeTimesAPauseApart)
{
    const struct {
        int refusals;
        bool givenUp;
    } cases[] = {{2, false}, {3, true}};
    Connect();
    for (const auto &c : cases) {
        peer.Frames.clear();
        QList<qint64> times;
        QElapsedTimer clock;
        clock.start();
        peer.Answer = [&](const QByteArray &frame) {
            if (frame == WriteRequest(30, 4)) {
                times.append(clock.elapsed());
                return times.size() <= c.refusals ? Nak : Ack;
            }
            return peer.DriveAnswer(frame);
        };
        if (c.givenUp)
            asker.Expect(QStringLiteral("Could not write value of 4 to (30) Name 30"));
        model.SetParamValue(30, 4, true, false);
        model.SetParamValue(31, 1, true, false);
        ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
        ASSERT_EQ(times.size(), 3);
        for (int i = 1; i < 3; ++i)
            EXPECT_GE(times.at(i) - times.at(i - 1), Short.scanPause - 2);
        EXPECT_EQ(P(30).Value, 4) << "the value stays, refused or not";
        EXPECT_EQ(link.WriteRetryCount, 0);
        EXPECT_EQ(peer.Count(WriteRequest(31, 1)), 1) << "and the scan goes on";
    }
    ASSERT_EQ(asker.Shown.size(), 1);
    EXPECT_EQ(asker.Shown.first().title, QStringLiteral("Write Error"));
}

TEST_F(ScansTest, NothingIsArmedWhileAMessageIsOnTheScreen)
{
    Connect();
    peer.Answer = [](const QByteArray &) { return Nak; };
    asker.Expect(QStringLiteral("Could not write"));
    asker.WhileShown = [&] {
        EXPECT_FALSE(link.SerialCommTimer.isActive() || link.SerialCommTimeout.isActive());
        peer.Frames.clear();
        Idle(5 * Short.scanPause);
        EXPECT_TRUE(peer.Frames.isEmpty());
    };
    model.SetParamValue(2, 4, true, false);
    EXPECT_TRUE(WaitUntil([&] { return !model.WritePending; })) << "the scan goes on after the answer";
}

TEST_F(ScansTest, AnOverflowIsToldOnceAndTheLinkGoesOn)
{
    Connect();
    Want({20});
    model.SetParamValue(6, 40000, true, false);
    model.SetParamValue(7, 5, true, false);
    ASSERT_TRUE(WaitFor(WriteRequest(7, 5)));
    ASSERT_TRUE(WaitFor(ReadRequest(20), 3));
    EXPECT_EQ(failures.size(), 1);
    EXPECT_EQ(P(6).Value, 40000);
    EXPECT_EQ(P(6).WriteFlag, WriteState::None);

    // The same behind an acknowledged write, with the failure raised out of the port's event.
    model.SetParamValue(6, -40000, true, false);
    model.SetParamValue(5, 1, true, false);
    const int reads = peer.Count(ReadRequest(20));
    ASSERT_TRUE(WaitFor(ReadRequest(20), reads + 2));
    EXPECT_EQ(failures.size(), 2);
    EXPECT_TRUE(link.PortOpen());
}

TEST_F(ScansTest, AnAcknowledgementRefreshesWhatHangsOnTheEditedParameter)
{
    Connect();
    P(15).Max = 77;
    model.EditParamNumber = 1;
    model.SetParamValue(1, 15, true, false);
    EXPECT_EQ(P(8).Max, 1000);
    ASSERT_TRUE(WaitUntil([&] { return P(1).WriteFlag == WriteState::None; }));
    EXPECT_EQ(P(8).Max, 77);
}

TEST_F(ScansTest, LateBytesNeverReachTheTable)
{
    Connect();
    Want({10, 20});
    peer.Values = {{10, 111}, {20, 222}};
    // The reply to 10 comes after its time-out: whole, or in two halves of which one arrives with the next
    // scan.
    for (const qsizetype lateBytes : {5, 3}) {
        int silences = 0;
        peer.Answer = [&](const QByteArray &frame) {
            return frame == ReadRequest(10) && silences++ == 0 ? QByteArray() : peer.DriveAnswer(frame);
        };
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount == 1; }));
        peer.Send(ValueReply(9999).first(lateBytes));
        ASSERT_TRUE(WaitUntil([&] { return silences >= 3; }));
        EXPECT_EQ(P(10).Value, 111);
        EXPECT_EQ(P(20).Value, 222);
        EXPECT_EQ(link.NoResponseCount + link.PacketSizeErrorCount, 0);
    }
}

TEST_F(ScansTest, ALateReplyProvesThatTheDriveAnswers)
{
    Connect();
    Want({10});
    int replies = 0;
    peer.Answer = [&](const QByteArray &) { return QByteArray(); };
    // Always too late, in the pause between scans: never three silences in a row.
    for (int scan = 0; scan < 4; ++scan) {
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount == 1; }));
        peer.Send(ValueReply(++replies));
        ASSERT_TRUE(WaitUntil([&] { return link.NoResponseCount == 0; }));
    }
    EXPECT_TRUE(link.PortOpen());
    EXPECT_EQ(P(10).Value, 0);
}

TEST_F(ScansTest, AWrongLengthIsThrownAwayWholeAfterAPause)
{
    const QByteArray tooLong = ValueReply(500) + '\x01';
    const QByteArray tooShort = ValueReply(500).first(4);
    for (const QByteArray &wrong : {tooLong, tooShort}) {
        Connect();
        Want({10});
        peer.Values[10] = 42;
        int answered = 0;
        peer.Answer = [&](const QByteArray &frame) {
            if (frame != ReadRequest(10) || answered++ > 0)
                return peer.DriveAnswer(frame);
            return wrong;
        };
        ASSERT_TRUE(WaitUntil([&] { return link.PacketSizeErrorCount == 1; }));
        EXPECT_EQ(P(10).Value, 0);
        EXPECT_FALSE(link.SerialCommTimeout.isActive());
        peer.Send(tooLong);
        ASSERT_TRUE(WaitUntil([&] { return P(10).Value == 42; })) << "the rest did not reach the next scan";
        EXPECT_EQ(link.PacketSizeErrorCount, 0);
        model.RemoveReadInterest(10);
        P(10).Value = 0;
        link.GoOffLine(0);
    }
}

TEST_F(ScansTest, ABadCheckLosesOneValueAndTheRunGoesOn)
{
    Connect();
    Want({10, 11, 12});
    peer.Values = {{10, 1}, {11, 2}, {12, 3}};
    int acks = 0;
    peer.Answer = [&](const QByteArray &frame) {
        QByteArray reply = peer.DriveAnswer(frame);
        if (frame == Ack && ++acks == 1)
            reply[2] = char(reply.at(2) ^ 1);
        return reply;
    };
    ASSERT_TRUE(WaitUntil([&] { return P(12).Value == 3; }));
    EXPECT_EQ(P(11).Value, 0);
    EXPECT_EQ(peer.Frames.first(3), (QList<QByteArray>{ReadRequest(10), Ack, Ack}));
    ASSERT_TRUE(WaitUntil([&] { return P(11).Value == 2; })) << "the next scan brings it";
    EXPECT_EQ(link.BCCErrorCount, 0);
}

TEST_F(ScansTest, AWriteWithoutAnswerIsSentAgain)
{
    Connect();
    int writes = 0;
    peer.Answer = [&](const QByteArray &frame) {
        return ++writes < 3 ? QByteArray() : peer.DriveAnswer(frame);
    };
    model.SetParamValue(5, 6, true, false);
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    EXPECT_EQ(peer.Count(WriteRequest(5, 6)), 3);
    EXPECT_EQ(link.NoResponseCount, 0);
}

TEST_F(ScansTest, PropertiesGoBeforeWritesAndAreDecodedByTheSignOfTheirParameter)
{
    Connect();
    P(9).Attributes = Attr::Long;
    peer.Answer = [&](const QByteArray &frame) {
        return frame.at(1) == 4 ? PropsReply(1, 0xFFFE, 0x8000, 4, 5) : peer.DriveAnswer(frame);
    };
    for (const int p : {9, 10}) {
        peer.Frames.clear();
        model.SetParamValue(3, p, true, false);
        link.ReadPropsIndex = std::int16_t(p);
        ASSERT_TRUE(WaitFor(WriteRequest(3, p)));
        EXPECT_EQ(peer.Frames.first(), PropsRequest(p));
        EXPECT_EQ(link.PropMin, 1);
        EXPECT_EQ(link.PropMax, p == 9 ? 65534 : -2);
        EXPECT_EQ(link.PropAttrib, p == 9 ? 32768 : -32768);
        EXPECT_EQ(link.PropPreset, 4);
        EXPECT_EQ(link.PropValue, 5);
        EXPECT_EQ(link.ReadPropsIndex, 0);
    }
}

TEST_F(ScansTest, PropertiesOfAParameterBeyondTheTableAreToldAndForgotten)
{
    Connect();
    Want({20});
    link.ReadPropsIndex = 900;
    ASSERT_TRUE(WaitFor(ReadRequest(20), 2));
    EXPECT_EQ(failures.size(), 1);
}

TEST_F(ScansTest, AnUnknownReplyLengthIsFatal)
{
    Connect();
    Want({20});
    bool fatal = false;
    QObject::connect(&link, &DriveLink::FatalError, &link, [&] { fatal = true; });
    peer.Answer = [&](const QByteArray &) {
        link.MSComm1.SetRThreshold(7);
        return QByteArray(7, 'x');
    };
    asker.Expect(QStringLiteral("Invalid MSCOMM1.RTHRESHOLD Value in ParsePacket()"));
    EXPECT_TRUE(WaitUntil([&] { return fatal; }));
    EXPECT_EQ(asker.Shown.first().icon, MsgIcon::Critical);
}

TEST_F(ScansTest, AScanBegunAnewGivesUpTheReplyUnderWay)
{
    Connect();
    Want({20, 21});
    peer.Values = {{20, 5}, {21, 6}};
    bool begunAnew = false;
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == Ack && !std::exchange(begunAnew, true))
            link.BeginScanAnew();
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitFor(ReadRequest(20), 2));
    EXPECT_EQ(P(0).Value, 0) << "the value of 21 is not that of 0";
    EXPECT_TRUE(WaitUntil([&] { return P(21).Value == 6; }));
}

TEST_F(ScansTest, AWrongReadFlagDeltaIsToldAndChangesNothing)
{
    asker.Expect(QStringLiteral("Invalid value of NewState in Sub SetAllReadFlags."));
    link.SetAllReadFlags(2);
    EXPECT_EQ(P(0).ReadFlag, 0);
    link.SetAllReadFlags(1);
    EXPECT_EQ(P(FileLastParam).ReadFlag, 1);
}

} // namespace quorvik::testing
