#include "link/LinkFixture.h"
#include "settings/SettingsFile.h"
#include "support/SimulatedDrive.h"

namespace quorvik::testing
{

using ReadingTest = LinkFixture;

TEST_F(ReadingTest, ReadsRunsContinuouslyAndEndsEachWithEot)
{
    const std::pair<std::vector<int>, QList<QByteArray>> cases[] = {
        {{10, 11, 14}, {ReadRequest(10), Ack, Eot, ReadRequest(14), Eot}},
        {{39, 40}, {ReadRequest(39), Ack, Eot}},
        {{40}, {ReadRequest(40), Eot}},
        {{0, 1}, {ReadRequest(0), Ack, Eot}},
    };
    Want({peer.LastParam + 1});
    Connect();
    for (const auto &[wanted, bytes] : cases) {
        EXPECT_TRUE(IsSilent()) << "what nobody wants, or the drive does not have, is not asked for";
        for (const int p : wanted) {
            peer.Values[p] = 100 + p;
            table.AddReadInterest(p);
        }
        ASSERT_TRUE(WaitFor(bytes.first(), 2));
        EXPECT_EQ(peer.Frames.first(bytes.size()), bytes);
        for (const int p : wanted) {
            EXPECT_EQ(P(p).Value, 100 + p);
            table.RemoveReadInterest(p);
        }
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.last() == Eot; }));
    }
}

TEST_F(ReadingTest, HoldsAndPendingWritesAreLeftAlone)
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
    table.RemoveReadInterest(4);
    ASSERT_TRUE(WaitFor(ReadRequest(6))) << "a held parameter opens no run";
    Enter(9, 3);
    ASSERT_TRUE(WaitFor(WriteRequest(9, 3)));
    EXPECT_EQ(peer.Count(WriteRequest(5, 55)), 0);
}

TEST_F(ReadingTest, AScanBegunAnewGivesUpTheReplyUnderWay)
{
    Connect();
    Want({20, 21});
    peer.Values = {{20, 5}, {21, 6}};
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == Ack && peer.Count(Ack) == 1)
            link.StartScan(WholeScan::Writing);
        return peer.DriveAnswer(frame);
    };
    ASSERT_TRUE(WaitFor(ReadRequest(20), 2));
    EXPECT_EQ(peer.Frames.first(4), (QList<QByteArray>{ReadRequest(20), Ack, Eot, ReadRequest(20)}));
    EXPECT_EQ(P(0).Value, 0) << "the value of 21 is not that of 0";
    EXPECT_TRUE(WaitUntil([&] { return P(21).Value == 6; }));
}

TEST_F(ReadingTest, AWholeReadIsWholeOrSaysWhatIsMissing)
{
    const struct {
        const char *title;
        int damages; ///< so many times the first row's value is wrong
        int strays;  ///< so many times a reply comes behind the end of a pass
        const char
            *behind; ///< the value of row 5 always comes with that behind it, or in part; null for neither
        const char *box;
        int reads; ///< of the first row
        std::vector<int> missing = {};
    } cases[] = {
        {"damaged once and again", 2, 0, nullptr, nullptr, 3},
        {"damaged for good", 99, 0, nullptr, "(0) Name 0", 3, {0}},
        {"out of step once", 0, 1, nullptr, nullptr, 2},
        {"out of step for ever", 0, 99, nullptr, "out of step", 4},
        {"broken off at a row", 0, 0, "", "(5) Name 5", 4, {5}},
        {"too much at a row", 0, 0, "x", "(5) Name 5", 4, {5}},
    };
    int boxes = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        ASSERT_NO_FATAL_FAILURE(Connect());
        peer.Answer = [&, strays = 0](const QByteArray &frame) mutable {
            const QByteArray reply = peer.DriveAnswer(frame);
            if (frame == Eot && peer.Frames.size() > 40 && strays++ < c.strays)
                return ValueReply(9);
            if (c.behind && frame == Ack &&
                peer.Frames.size() == peer.Frames.lastIndexOf(ReadRequest(0)) + 1 + 5)
                return *c.behind ? reply + c.behind : reply.first(3);
            return frame == ReadRequest(0) && peer.Count(frame) <= c.damages ? Spoiled(reply) : reply;
        };
        if (c.box)
            asker.Expect(QLatin1String(c.box));
        const OperationResult result = operations.ReadAll();
        EXPECT_EQ(result.outcome, c.box ? Outcome::Partial : Outcome::Done);
        EXPECT_EQ(result.missing, c.missing);
        EXPECT_EQ(peer.Count(ReadRequest(0)), c.reads);
        EXPECT_EQ(document.HalfRead, c.box != nullptr);
        EXPECT_EQ(document.Title().contains(QStringLiteral("half read*]")), c.box != nullptr);
        operations.GoOffLine(OffLineReason::BrokenOff);
        boxes += c.box ? 1 : 0;
        ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == boxes; }));
    }
}

TEST_F(ReadingTest, AScanThatEndsEarlyGivesBackWhatItTook)
{
    const auto cut = [&](const std::function<void()> &act) {
        peer.Answer = [this, act](const QByteArray &frame) {
            if (peer.Count(Ack) + peer.Count(WriteRequest(10, 0)) == 10)
                act();
            return peer.Count(Ack) < 10 ? peer.DriveAnswer(frame) : QByteArray();
        };
    };
    peer.LastParam = 300;
    Connect();
    ASSERT_EQ(table.LastParam, 300);
    Want({400});
    cut([this] { peer.PullOut(); });
    asker.Expect(QStringLiteral("Drive not Responding!"));
    asker.Expect(QStringLiteral("The reading did not come to its end. Part of the set is the drive's, the "
                                "rest is what stood there before.\r\n"));
    EXPECT_EQ(operations.ReadAll().outcome, Outcome::LinkLost);
    EXPECT_EQ(table.LastParam, FileLastParam) << "grown again meanwhile";
    EXPECT_EQ(P(300).ReadFlag + P(301).ReadFlag, 0);
    EXPECT_EQ(P(400).ReadFlag, 1);
    ASSERT_TRUE(WaitUntil([this] { return asker.Shown.size() == 2; }));

    peer.PlugIn();
    for (const WholeScan kind : {WholeScan::Reading, WholeScan::Writing}) {
        Connect();
        if (kind == WholeScan::Writing)
            table.SetAllWriteFlags(WriteState::Queued);
        QObject once;
        QObject::connect(&link, &DriveLink::ScanProgress, &once, [this](int p) {
            if (p > 20)
                QMetaObject::invokeMethod(&link, &DriveLink::CancelScan, Qt::QueuedConnection);
        });
        const OperationResult result =
            kind == WholeScan::Reading ? operations.ReadAll() : operations.SendAll();
        EXPECT_EQ(result.outcome, Outcome::Cancelled);
        EXPECT_EQ(P(300).ReadFlag, 0);
        ASSERT_TRUE(WaitForWrites());
        EXPECT_LT(peer.Frames.size(), 200);
        operations.GoOffLine(OffLineReason::BrokenOff);
    }
}

// The simulated drive shares no code with the engine.
TEST_F(ReadingTest, AWholeFactoryTableComesFromTheDriveAndGoesBackToIt)
{
    SimulatedDrive drive;
    ASSERT_EQ(SettingsFile(table, document).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
    table.ResetToDefaults();
    const auto isClock = [](int p) { return p >= Param::ClockFirst && p <= Param::ClockLast; };
    const auto expectSameTables = [&] {
        const auto driveTable = drive.Table();
        ASSERT_EQ(int(driveTable.size()), table.LastParam + 1);
        for (const auto &[p, rawValue] : driveTable)
            EXPECT_TRUE(isClock(p) || P(p).Value == rawValue) << p << ": " << P(p).Value << ", " << rawValue;
    };
    link.MSComm1.DeviceOf = [&](int) { return drive.LinkPath(); };
    operations.GoOnLine();
    ASSERT_TRUE(link.PortOpen());
    EXPECT_TRUE(table.DriveStateUnread);
    drive.Set(7, 33);
    drive.Set(64, 60000);
    drive.Set(100, -12345);
    EXPECT_TRUE(operations.ReadAll().IsDone());
    EXPECT_FALSE(table.DriveStateUnread);
    expectSameTables();
    EXPECT_EQ(drive.Stat(QStringLiteral("reads")), 1) << "one run, one request";

    for (const auto &[p, rawValue] : {std::pair(7, 0), {64, 59999}, {100, -1}, {217, -10000}})
        P(p).Value = rawValue;
    P(Param::LoadParameters).Value = 1; // the drive would take back what it was sent
    table.SetAllWriteFlags(WriteState::Queued);
    EXPECT_TRUE(operations.SendAll().IsDone());
    ASSERT_TRUE(WaitForWrites());
    EXPECT_TRUE(asker.Shown.isEmpty());
    expectSameTables();
    EXPECT_EQ(drive.Stat(QStringLiteral("refusals")), 0);
}

} // namespace quorvik::testing
