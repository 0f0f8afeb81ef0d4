#include "link/LinkFixture.h"

#include <QFile>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quorvik::testing
{

class LinkStateTest : public LinkFixture
{
protected:
    LinkStateTest()
    {
        QObject::connect(&link, &DriveLink::ComStatusChanged, &link,
                         [this] { states.append(link.PortOpen()); });
    }
    void ExpectStandstill()
    {
        peer.Frames.clear();
        Idle(5 * Short.scanPause);
        EXPECT_TRUE(peer.Frames.isEmpty());
        EXPECT_TRUE(IsAtRest());
    }

    QList<bool> states;
};

TEST_F(LinkStateTest, TheSmallerTableCounts)
{
    const struct {
        int claimed;
        int lastParam;
    } cases[] = {{400, 400}, {500, 500}, {501, 500}, {32767, 500}, {-1, -1}, {-32768, -32768}};
    Want({0, 420});
    for (const auto &c : cases) {
        peer.LastParam = c.claimed;
        Connect();
        EXPECT_EQ(model.LastParam, c.lastParam);
        Idle(3 * Short.scanPause);
        EXPECT_EQ(peer.Count(ReadRequest(420)) > 0, c.lastParam == 500) << c.claimed;
        EXPECT_EQ(peer.Count(ReadRequest(0)) > 0, c.lastParam >= 0) << c.claimed;
        link.GoOffLine(0);
        EXPECT_EQ(model.LastParam, FileLastParam);
    }
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(LinkStateTest, AStalledWaitIsEscapedByTheUsersSwitch)
{
    const struct {
        QByteArray reply;
        bool standstill;
    } cases[] = {{Spoiled(PropsReply(0, 400, 0, 0, 0)), true}, {PropsReply(0, 0, 0, 0, 0), false}};
    for (const auto &c : cases) {
        peer.Frames.clear();
        peer.Answer = [&](const QByteArray &) { return c.reply; };
        bool escaped = false;
        QTimer::singleShot(400, &link, [&] {
            EXPECT_TRUE(link.PortOpen());
            EXPECT_EQ(peer.Count(PropsRequest(1)), 1) << "not asked again";
            if (c.standstill)
                ExpectStandstill();
            link.ToggleComStatus();
            link.ToggleComStatus(); // the second half of a double click asks nothing
            escaped = true;
        });
        link.GoOnLine();
        EXPECT_TRUE(escaped);
        EXPECT_FALSE(link.PortOpen());
        EXPECT_EQ(link.ReadPropsIndex, 0);
        EXPECT_EQ(model.LastParam, FileLastParam);
    }
}

TEST_F(LinkStateTest, TheThirdSilenceEndsTheWaitForTheDrive)
{
    for (const int silences : {3, 2}) {
        peer.Frames.clear();
        peer.Answer = [&](const QByteArray &frame) {
            return peer.Frames.size() <= silences ? QByteArray() : peer.DriveAnswer(frame);
        };
        if (silences == 3)
            asker.Expect(QStringLiteral("Drive not Responding!"));
        QElapsedTimer clock;
        clock.start();
        link.GoOnLine();
        EXPECT_GE(clock.elapsed(), silences * (Short.replyTimeout + Short.scanPause));
        EXPECT_EQ(peer.Count(PropsRequest(1)), 3);
        EXPECT_EQ(link.PortOpen(), silences == 2);
    }
}

TEST_F(LinkStateTest, ThreeFailuresOfAKindInARowTakeTheLinkDown)
{
    const QByteArray good = ValueReply(1);
    const struct {
        QByteArray reply;
        const char *problem;
        const char *title;
    } cases[] = {
        {Spoiled(good), "Invalid BCC.", "Communication Error"},
        {good.first(2), "Incorrect Packet Size!", "Communications Error"},
        {good + good, "Incorrect Packet Size!", "Communications Error"},
        {{}, "Drive not Responding!", "Communications Error"},
    };
    Want({10});
    for (const auto &c : cases) {
        Connect();
        states.clear();
        peer.Answer = [&](const QByteArray &frame) { return frame == Eot ? QByteArray() : c.reply; };
        asker.Expect(QLatin1String(c.problem) +
                     QStringLiteral(" Check connections and power. Switching OffLine."));
        ASSERT_TRUE(WaitForOffLine());
        EXPECT_EQ(asker.Shown.last().title, QLatin1String(c.title));
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Exclamation);
        EXPECT_EQ(peer.Count(ReadRequest(10)), 3);
        ExpectStandstill();
        EXPECT_EQ(states, QList<bool>{false});
        EXPECT_FALSE(link.OffLineRequested);
        EXPECT_EQ(link.BCCErrorCount + link.PacketSizeErrorCount + link.NoResponseCount, 0);
    }
}

TEST_F(LinkStateTest, FailuresOfDifferentKindsAreCountedApart)
{
    Connect();
    // Neither kind comes three times in a row, since each lets the other's reset pass or not as it must: a
    // bad check is a right length.
    int requests = 0;
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == Eot)
            return QByteArray();
        return ++requests % 2 == 0 ? Spoiled(ValueReply(1)) : ValueReply(1).first(3);
    };
    Want({10});
    asker.Expect(QStringLiteral("Invalid BCC."));
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(requests, 6);
}

TEST_F(LinkStateTest, AScanGoesOnToItsEndBehindTheThirdBadCheck)
{
    Connect();
    peer.Values[14] = 5;
    peer.Answer = [this](const QByteArray &frame) {
        const QByteArray reply = peer.DriveAnswer(frame);
        return frame == Eot || peer.Frames.size() == 5 ? reply : Spoiled(reply);
    };
    Want({10, 11, 12, 13, 14});
    asker.Expect(QStringLiteral("Invalid BCC."));
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{ReadRequest(10), Ack, Ack, Ack, Ack, Eot}));
    EXPECT_EQ(P(13).Value, 0);
    EXPECT_EQ(P(14).Value, 5);
    EXPECT_EQ(link.BCCErrorCount, 0);
}

TEST_F(LinkStateTest, AnOldRequestToLeaveDoesNotStrikeTheNextSession)
{
    Connect();
    link.OffLineRequested = true;
    link.SetDriveCommand(2);
    link.ToggleComStatus();
    link.GoOnLine();
    Idle(3 * Short.scanPause);
    EXPECT_TRUE(link.PortOpen());
    EXPECT_EQ(peer.Count(WriteRequest(408, 2)), 0);
}

TEST_F(LinkStateTest, TheSwitchSettlesWhichSideIsRight)
{
    const struct {
        MsgAnswer answer;
        int driveState;
        bool cancelled;
        bool onLine;
        int scanKind;
    } cases[] = {
        {MsgAnswer::Yes, 0, false, true, 2},  {MsgAnswer::Yes, 8, false, true, 2},
        {MsgAnswer::Yes, 1, false, false, 0}, {MsgAnswer::No, 1, false, true, 1},
        {MsgAnswer::No, 0, true, false, 0},   {MsgAnswer::Cancel, 0, false, false, 0},
    };
    for (const auto &c : cases) {
        model.FileName = QStringLiteral("/x/y.Svx");
        model.FileModified = true;
        P(Param::DriveState).Value = c.driveState;
        P(3).WriteFlag = WriteState::Queued;
        P(10).ReadFlag = 0;
        cancelled = c.cancelled;
        progressBars = link.ScanKind = 0;
        asker.Expect(QStringLiteral("Write current parameter settings to drive?"), c.answer);
        if (c.answer == MsgAnswer::Yes && c.driveState == 1)
            asker.Expect(QStringLiteral("Drive must be in Stop mode to perform this command."));
        link.ToggleComStatus();
        const bool reads = c.scanKind == 1;
        EXPECT_EQ(link.PortOpen(), c.onLine);
        EXPECT_EQ(link.ScanKind, c.scanKind);
        EXPECT_EQ(progressBars, c.onLine ? 1 : 0);
        EXPECT_EQ(P(10).ReadFlag, reads ? 1 : 0);
        EXPECT_EQ(P(3).WriteFlag, reads ? WriteState::None : WriteState::Queued);
        EXPECT_EQ(model.FileName, reads ? QStringLiteral("unnamed") : QStringLiteral("/x/y.Svx"));
        EXPECT_EQ(model.FileModified, !reads);
        model.DriveModified = false;
        if (c.onLine)
            link.ToggleComStatus();
        EXPECT_FALSE(link.PortOpen());
    }
}

TEST_F(LinkStateTest, ADriveCommandTakesTheLinkDownWithAWarningAtMost)
{
    Want({10});
    asker.WhileShown = [this] { Idle(4 * Short.scanPause); };
    for (const bool modified : {false, true}) {
        Connect();
        model.DriveModified = modified;
        if (modified)
            asker.Expect(QStringLiteral("Drive parameters have not been saved!"));
        link.SetDriveCommand(2);
        ASSERT_TRUE(WaitForOffLine());
        ASSERT_TRUE(WaitFor(WriteRequest(408, 2)));
        EXPECT_EQ(peer.Frames.last(), WriteRequest(408, 2)) << "the restarting drive is left alone";
        ExpectStandstill();
    }
}

TEST_F(LinkStateTest, MemoryCommandsLeaveTheFileAloneAndForgetTheDrivesMark)
{
    peer.LastParam = 450;
    Connect();
    model.DriveModified = true;
    link.SaveDriveParameters();
    link.LoadDriveParameters();
    EXPECT_FALSE(model.DriveModified || model.FileModified);
    ASSERT_TRUE(WaitFor(WriteRequest(407, 1)));
    EXPECT_EQ(peer.Count(WriteRequest(406, 1)), 1);
}

TEST_F(LinkStateTest, ThePauseBehindAWrongLengthEndsWithItsSession)
{
    Connect();
    Want({10});
    peer.Answer = [](const QByteArray &) { return QByteArray(9, 'x'); };
    ASSERT_TRUE(WaitUntil([&] { return link.PacketSizeErrorCount == 1; }));
    link.GoOffLine(0);
    peer.Frames.clear();
    peer.Answer = [&](const QByteArray &frame) {
        EXPECT_FALSE(link.SerialCommTimer.isActive()) << "a reply is being waited for";
        return peer.Frames.size() == 1 ? QByteArray() : peer.DriveAnswer(frame);
    };
    QElapsedTimer clock;
    clock.start();
    link.GoOnLine();
    EXPECT_GE(clock.elapsed(), Short.replyTimeout) << "the first silence ran its full time";
    EXPECT_EQ(peer.Count(PropsRequest(1)), 2);
}

TEST_F(LinkStateTest, APortThatWillNotOpenSaysWhyAndChangesNothing)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("file"));
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    // Locked the way terminal programs lock.
    const int other = ::open(QFile::encodeName(peer.Device()).constData(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    const struct {
        QString device;
        const char *words;
    } cases[] = {
        {QStringLiteral("/dev/ttyNone7"), "There is no serial port /dev/ttyNone7 (Com5)"},
        {QString(), "There is no port Com5"},
        {file, "is not a serial port"},
        {peer.Device(), "is in use by another program"},
    };
    link.MSComm1.SetCommPort(5);
    for (const auto &c : cases) {
        link.MSComm1.DeviceOf = [&](int) { return c.device; };
        asker.Expect(QLatin1String(c.words));
        link.GoOnLine();
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::None);
    }
    EXPECT_TRUE(states.isEmpty());
    EXPECT_FALSE(link.PortOpen());
    ::close(other);
    link.GoOnLine();
    EXPECT_TRUE(link.PortOpen()) << "free again";

    MSComm second;
    second.DeviceOf = link.MSComm1.DeviceOf;
    EXPECT_TRUE(second.SetPortOpen(true).contains(QStringLiteral("in use by another program")));
}

} // namespace quorvik::testing
