#include "link/LinkFixture.h"

#include <QFile>
#include <QSignalSpy>
#include <QTimer>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quorvik::testing
{

using GoingOnLineTest = LinkFixture;

TEST_F(GoingOnLineTest, APortThatWillNotOpenSaysWhyAndChangesNothing)
{
    QTemporaryDir folder;
    const QString noPort = folder.filePath(QStringLiteral("file"));
    ASSERT_TRUE(QFile(noPort).open(QIODevice::WriteOnly));
    // Locked the way terminal programs lock.
    const int other = ::open(QFile::encodeName(peer.Device()).constData(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    const std::pair<QString, const char *> cases[] = {
        {QString(), "There is no port Com5"},
        {noPort, "Serial port "},
        {peer.Device(), "is in use by another program"},
    };
    const QSignalSpy changes(&link, &DriveLink::ComStatusChanged);
    link.MSComm1.SetCommPort(5);
    for (const auto &[device, words] : cases) {
        link.MSComm1.DeviceOf = [&device = device](int) { return device; };
        asker.Expect(QLatin1String(words));
        operations.GoOnLine();
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::None);
    }
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_FALSE(link.PortOpen());
    ::close(other);
    operations.GoOnLine();
    EXPECT_TRUE(link.PortOpen()) << "free again";

    MSComm second;
    second.DeviceOf = link.MSComm1.DeviceOf;
    EXPECT_TRUE(second.SetPortOpen(true).contains(QStringLiteral("in use by another program")));
}

TEST_F(GoingOnLineTest, WhatTheDriveSaysOfItsTableDecides)
{
    const struct {
        int claimed;
        int silences;
        int lastParam;             ///< -1 where the link stays down
        const char *box = nullptr; ///< where it does, what is told
    } cases[] = {
        {400, 0, 400},
        {501, 0, 500},
        {32767, 2, 500},
        {400, 3, -1, "Drive not Responding!"},
        {0, 0, -1, "its last parameter is 0, which no drive has"},
        {-32768, 0, -1, "its last parameter is -32768, which no drive has"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.claimed);
        P(Param::Run).Value = 1; // of a file: no motor was running
        peer.LastParam = c.claimed;
        peer.Frames.clear();
        asker.Shown.clear();
        Answer(PropsRequest(1), {}, c.silences);
        if (c.box)
            asker.Expect(QLatin1String(c.box));
        QElapsedTimer clock;
        clock.start();
        operations.GoOnLine();
        EXPECT_GE(clock.elapsed(), c.silences * (Short.replyTimeout + Short.scanPause));
        EXPECT_EQ(peer.Count(PropsRequest(1)), std::min(c.silences + 1, 3));
        EXPECT_EQ(link.PortOpen(), !c.box);
        if (c.box) {
            ASSERT_TRUE(WaitUntil([&] { return !asker.Shown.isEmpty(); }));
            EXPECT_FALSE(asker.Shown.first().text.contains(QStringLiteral("motor")));
        } else {
            EXPECT_EQ(table.LastParam, c.lastParam);
        }
        operations.GoOffLine(OffLineReason::User);
        EXPECT_EQ(table.LastParam, FileLastParam);
        EXPECT_FALSE(table.DriveStateUnread);
    }
}

TEST_F(GoingOnLineTest, AStalledWaitIsEscapedByTheUsersSwitch)
{
    Answer(PropsRequest(1), Spoiled(PropsReply(0, 400, 0, 0, 0)));
    QTimer::singleShot(0, &link, [this] {
        EXPECT_TRUE(WaitUntil([this] { return link.BCCErrorCount == 1; }));
        EXPECT_TRUE(IsSilent() && IsAtRest()) << "not asked again";
        operations.ToggleComStatus();
        operations.ToggleComStatus(); // the second half of a double click asks nothing
    });
    operations.GoOnLine();
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(link.ReadPropsIndex, 0);
}

TEST_F(GoingOnLineTest, AJogFromBeforeIsTakenBack)
{
    peer.LastParam = 300;
    const QByteArray stop = WriteRequest(Param::Jog, 0);
    for (const bool reads : {true, false}) {
        peer.Values[Param::Jog] = 1;
        P(Param::Jog).Value = 1;
        asker.Expect(QStringLiteral("Write current parameter settings to drive?"),
                     reads ? MsgAnswer::No : MsgAnswer::Yes);
        operations.ToggleComStatus();
        ASSERT_TRUE(WaitFor(stop));
        EXPECT_EQ(peer.Count(WriteRequest(Param::Jog, 1)), 0);
        EXPECT_FALSE(document.FileModified || document.DriveModified);
        ASSERT_TRUE(WaitForWrites());
        // From then on the button is the user's.
        Enter(Param::Jog, 1);
        ASSERT_TRUE(WaitFor(WriteRequest(Param::Jog, 1)));
        // Letting it go leaves before the port closes.
        const int stops = peer.Count(stop);
        Enter(Param::Jog, 0);
        document.FileModified = document.DriveModified = false;
        operations.GoOffLine(OffLineReason::User);
        EXPECT_TRUE(WaitFor(stop, stops + 1));
        peer.Frames.clear();
    }
}

TEST_F(GoingOnLineTest, TheSwitchSettlesWhichSideIsRight)
{
    const struct {
        MsgAnswer answer;
        int driveState;
        bool cancelled;
        bool onLine;
        int scanKind;
        Outcome outcome;
    } cases[] = {
        {MsgAnswer::Yes, 0, false, true, 2, Outcome::Done},
        {MsgAnswer::Yes, 1, false, false, 0, Outcome::Refused},
        {MsgAnswer::No, 1, false, true, 1, Outcome::Done},
        {MsgAnswer::No, 0, true, false, 0, Outcome::Cancelled},
        {MsgAnswer::Cancel, 0, false, false, 0, Outcome::Cancelled},
    };
    for (const auto &c : cases) {
        document.FileName = QStringLiteral("/x/y.Svx");
        document.FileModified = true;
        P(Param::DriveState).Value = c.driveState;
        for (const int queued : {3, Param::ClockFirst})
            P(queued).WriteFlag = WriteState::Queued;
        table.WritePending = true;
        peer.Values[10] = 77;
        P(10).ReadFlag = P(10).Value = 0;
        link.ScanKind = WholeScan::None;
        asker.Progresses.clear();
        peer.Frames.clear();
        asker.Expect(QStringLiteral("Write current parameter settings to drive?"), c.answer);
        if (c.answer == MsgAnswer::Yes && c.driveState == 1)
            asker.Expect(QStringLiteral("Drive must be in Stop mode to perform this command."));
        if (c.answer == MsgAnswer::No)
            asker.Expect(QStringLiteral("Save changes?"), c.cancelled ? MsgAnswer::Cancel : MsgAnswer::No);
        EXPECT_EQ(operations.ToggleComStatus().outcome, c.outcome);
        const bool reads = c.scanKind == 1;
        EXPECT_EQ(link.PortOpen(), c.onLine);
        EXPECT_EQ(int(link.ScanKind), c.scanKind);
        EXPECT_EQ(asker.Progresses, c.onLine ? std::vector({c.scanKind}) : std::vector<int>());
        EXPECT_EQ(P(10).ReadFlag, 0) << "the interest of the reading is given back";
        EXPECT_EQ(P(10).Value, reads ? 77 : 0) << "the reading is one";
        EXPECT_EQ(peer.Count(WriteRequest(10, 0)), c.scanKind == 2 ? 1 : 0) << "and so is the writing";
        EXPECT_EQ(P(Param::ClockFirst).WriteFlag, reads ? WriteState::None : WriteState::Queued);
        EXPECT_EQ(document.FileName, reads ? QStringLiteral("unnamed") : QStringLiteral("/x/y.Svx"));
        EXPECT_EQ(document.FileModified, !reads);
        document.MarkFile(false);
        document.DriveModified = false;
        if (c.onLine)
            operations.ToggleComStatus();
        EXPECT_FALSE(link.PortOpen());
    }
}

TEST_F(GoingOnLineTest, WhatASessionLeftUndoneHasEndedWithIt)
{
    Connect();
    Want({10});
    peer.Answer = [](const QByteArray &) { return QByteArray(9, 'x'); };
    ASSERT_TRUE(WaitUntil([&] { return link.PacketSizeErrorCount == 1; }));
    link.OffLineRequested = true;
    link.SetDriveCommand(Restart::Reset);
    operations.GoOffLine(OffLineReason::User);
    document.DriveModified = true;
    operations.GoOffLine(OffLineReason::CommandEnded); // asks nothing over a closed port
    peer.Frames.clear();
    peer.Answer = [&](const QByteArray &frame) {
        EXPECT_TRUE(frame == Eot || !link.SerialCommTimer.isActive()) << "a reply is being waited for";
        return peer.Frames.size() == 1 ? QByteArray() : peer.DriveAnswer(frame);
    };
    QElapsedTimer clock;
    clock.start();
    operations.GoOnLine();
    EXPECT_GE(clock.elapsed(), Short.replyTimeout) << "the pause of the last session did not cut it short";
    EXPECT_EQ(peer.Count(PropsRequest(1)), 2);
    ASSERT_TRUE(WaitFor(ReadRequest(10), 2));
    EXPECT_EQ(peer.Count(WriteRequest(408, 2)), 0);
}

} // namespace quorvik::testing
