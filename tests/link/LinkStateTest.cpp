#include "link/LinkFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quorvik::testing
{

namespace
{

const QString NotResponding =
    QStringLiteral("Drive not Responding! Check connections and power. Switching OffLine.");
const QString WriteQuestion = QStringLiteral("Write current parameter settings to drive?");
const QString SaveQuestion = QStringLiteral("Save Changes in Drive?");

} // namespace

class LinkStateTest : public LinkFixture
{
protected:
    void Connect()
    {
        LinkFixture::Connect();
        QObject::connect(&link, &DriveLink::ComStatusChanged, &link,
                         [this] { states.append(link.PortOpen()); });
    }
    bool WaitForOffLine()
    {
        return WaitUntil([this] { return !link.PortOpen(); });
    }
    /** Nothing of the link is armed, and nothing more goes out. */
    void ExpectStandstill()
    {
        peer.Frames.clear();
        Idle(5 * Short.scanPause);
        EXPECT_TRUE(peer.Frames.isEmpty());
        EXPECT_FALSE(link.SerialCommTimer.isActive() || link.SerialCommTimeout.isActive());
    }

    QList<bool> states;
};

TEST_F(LinkStateTest, TheSmallerTableCounts)
{
    const struct {
        int claimed;
        int lastParam;
    } cases[] = {{400, 400}, {500, 500}, {501, 500}, {32767, 500}, {-1, -1}, {-32768, -32768}};
    for (const auto &c : cases) {
        peer.LastParam = c.claimed;
        Connect();
        EXPECT_EQ(model.LastParam, c.lastParam);
        Want({0, 420});
        Idle(3 * Short.scanPause);
        EXPECT_EQ(peer.Count(ReadRequest(420)) > 0, c.lastParam == 500) << c.claimed;
        EXPECT_EQ(peer.Count(ReadRequest(0)) > 0, c.lastParam >= 0) << c.claimed;
        link.GoOffLine(0);
        EXPECT_EQ(model.LastParam, FileLastParam);
        model.RemoveReadInterest(0);
        model.RemoveReadInterest(420);
    }
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(LinkStateTest, AStalledWaitIsEscapedByTheUsersSwitch)
{
    QByteArray badCheck = PropsReply(0, 400, 0, 0, 0);
    badCheck[4] = char(badCheck.at(4) ^ 1);
    const struct {
        QByteArray reply;
        bool standstill;
    } cases[] = {{badCheck, true}, {PropsReply(0, 0, 0, 0, 0), false}};
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
            EXPECT_FALSE(link.PortOpen());
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

TEST_F(LinkStateTest, ASilentDriveEndsTheWaitAtTheThirdTimeOut)
{
    peer.Answer = [](const QByteArray &) { return QByteArray(); };
    asker.Expect(NotResponding);
    QElapsedTimer clock;
    clock.start();
    link.GoOnLine();
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(peer.Count(PropsRequest(1)), 3);
    EXPECT_GE(clock.elapsed(), 3 * Short.replyTimeout + 3 * Short.scanPause);
    EXPECT_EQ(asker.Shown.first().title, QStringLiteral("Communications Error"));
    EXPECT_EQ(asker.Shown.first().icon, MsgIcon::Exclamation);
    ExpectStandstill();
}

TEST_F(LinkStateTest, TwoSilencesAreForgiven)
{
    int requests = 0;
    peer.Answer = [&](const QByteArray &frame) {
        return ++requests < 3 ? QByteArray() : peer.DriveAnswer(frame);
    };
    link.GoOnLine();
    EXPECT_TRUE(link.PortOpen());
    EXPECT_EQ(model.LastParam, 40);
}

TEST_F(LinkStateTest, ThreeFailuresOfAKindInARowTakeTheLinkDown)
{
    const QByteArray good = ValueReply(1);
    QByteArray badCheck = good;
    badCheck[4] = char(badCheck.at(4) ^ 1);
    const struct {
        QByteArray reply;
        QString message;
        QString title;
    } cases[] = {
        {badCheck, QStringLiteral("Invalid BCC. Check connections and power. Switching OffLine."),
         QStringLiteral("Communication Error")},
        {good.first(2),
         QStringLiteral("Incorrect Packet Size! Check connections and power. Switching OffLine."),
         QStringLiteral("Communications Error")},
        {good + good,
         QStringLiteral("Incorrect Packet Size! Check connections and power. Switching OffLine."),
         QStringLiteral("Communications Error")},
        {{}, NotResponding, QStringLiteral("Communications Error")},
    };
    const auto drive = peer.Answer;
    for (const auto &c : cases) {
        peer.Answer = drive;
        Connect();
        states.clear();
        peer.Answer = [&](const QByteArray &frame) { return frame == Eot ? QByteArray() : c.reply; };
        Want({10});
        asker.Expect(c.message);
        ASSERT_TRUE(WaitForOffLine());
        EXPECT_EQ(asker.Shown.last().title, c.title);
        EXPECT_EQ(peer.Count(ReadRequest(10)), 3);
        ExpectStandstill();
        EXPECT_EQ(states.count(false), states.size());
        EXPECT_FALSE(link.OffLineRequested);
        EXPECT_EQ(link.BCCErrorCount + link.PacketSizeErrorCount + link.NoResponseCount, 0);
        QObject::disconnect(&link, &DriveLink::ComStatusChanged, &link, nullptr);
        model.RemoveReadInterest(10);
    }
}

TEST_F(LinkStateTest, FailuresOfDifferentKindsAreCountedApart)
{
    Connect();
    QByteArray badCheck = ValueReply(1);
    badCheck[4] = char(badCheck.at(4) ^ 1);
    // Neither kind comes three times in a row, since each lets the other's reset pass or not as it must: a
    // bad check is a right length.
    int requests = 0;
    peer.Answer = [&](const QByteArray &frame) {
        if (frame == Eot)
            return QByteArray();
        return ++requests % 2 == 0 ? badCheck : ValueReply(1).first(3);
    };
    Want({10});
    asker.Expect(QStringLiteral("Invalid BCC."));
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(requests, 6);
}

TEST_F(LinkStateTest, AScanGoesOnToItsEndBehindTheThirdBadCheck)
{
    Connect();
    peer.Answer = [](const QByteArray &frame) {
        QByteArray reply = ValueReply(1);
        reply[4] = char(reply.at(4) ^ 1);
        return frame == Eot ? QByteArray() : reply;
    };
    Want({10, 11, 12, 13, 14});
    asker.Expect(QStringLiteral("Invalid BCC."));
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(peer.Frames, (QList<QByteArray>{ReadRequest(10), Ack, Ack, Ack, Ack, Eot}));
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
        asker.Expect(WriteQuestion, c.answer);
        if (c.answer == MsgAnswer::Yes && c.driveState == 1)
            asker.Expect(QStringLiteral("Drive must be in Stop mode to perform this command."));
        link.ToggleComStatus();
        EXPECT_EQ(link.PortOpen(), c.onLine);
        EXPECT_EQ(link.ScanKind, c.scanKind);
        EXPECT_EQ(progressBars, c.onLine ? 1 : 0);
        EXPECT_EQ(P(10).ReadFlag, c.scanKind == 1 ? 1 : 0);
        EXPECT_EQ(P(3).WriteFlag, c.scanKind == 1 ? WriteState::None : WriteState::Queued);
        EXPECT_EQ(model.FileName, c.scanKind == 1 ? QStringLiteral("unnamed") : QStringLiteral("/x/y.Svx"));
        EXPECT_EQ(model.FileModified, c.scanKind != 1);
        model.DriveModified = false;
        if (c.onLine)
            link.ToggleComStatus();
        EXPECT_FALSE(link.PortOpen());
    }
}

TEST_F(LinkStateTest, ADriveCommandTakesTheLinkDownWithAWarningAtMost)
{
    for (const bool modified : {false, true}) {
        Connect();
        Want({10});
        model.DriveModified = modified;
        if (modified) {
            asker.Expect(QStringLiteral("Drive parameters have not been saved!"));
            asker.WhileShown = [&] { Idle(4 * Short.scanPause); };
        }
        link.SetDriveCommand(2);
        ASSERT_TRUE(WaitForOffLine());
        ASSERT_TRUE(WaitFor(WriteRequest(408, 2)));
        EXPECT_EQ(peer.Frames.last(), WriteRequest(408, 2)) << "the restarting drive is left alone";
        ExpectStandstill();
        model.RemoveReadInterest(10);
    }
}

TEST_F(LinkStateTest, ChangesAreSavedInTheDriveWhileTheLinkIsUp)
{
    const struct {
        int readsUntilDone; ///< how often 406 still reads 1
        bool saved;
    } cases[] = {{2, true}, {1000000, false}};
    rules.SaveLimitMs = 1500;
    peer.LastParam = 450;
    for (const auto &c : cases) {
        Connect();
        int reads = 0;
        peer.Answer = [&](const QByteArray &frame) {
            if (frame == ReadRequest(406) && ++reads > c.readsUntilDone)
                peer.Values[406] = 0;
            return peer.DriveAnswer(frame);
        };
        model.DriveModified = true;
        asker.Expect(SaveQuestion, MsgAnswer::Yes);
        if (!c.saved)
            asker.Expect(QStringLiteral("Changes in Drive not saved!"));
        QTimer::singleShot(20, &link, [&] { link.ToggleComStatus(); }); // ignored while leaving
        link.GoOffLine(0);
        EXPECT_FALSE(link.PortOpen());
        EXPECT_EQ(peer.Count(WriteRequest(406, 1)), 1);
        EXPECT_EQ(model.DriveModified, !c.saved);
        EXPECT_EQ(P(406).Value, 0);
        EXPECT_EQ(P(406).ReadFlag, 0);
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

TEST_F(LinkStateTest, APulledAdapterIsSilenceAndComesBack)
{
    Connect();
    Want({10});
    ASSERT_TRUE(WaitFor(ReadRequest(10)));
    asker.Expect(NotResponding);
    peer.PullOut();
    int turns = 0;
    EXPECT_TRUE(PumpWhile(
        [&] {
            ++turns;
            return link.NoResponseCount < 2;
        },
        QDeadlineTimer(5000)));
    EXPECT_LT(turns, 300) << "the event loop sleeps";
    EXPECT_TRUE(link.PortOpen());
    ASSERT_TRUE(WaitForOffLine());

    peer.PlugIn();
    peer.Values[10] = 77;
    link.GoOnLine();
    ASSERT_TRUE(link.PortOpen());
    EXPECT_TRUE(WaitUntil([&] { return P(10).Value == 77; }));
}

TEST_F(LinkStateTest, APortClosedBehindItsOwnEventStaysWhole)
{
    Connect();
    Want({10});
    bool closed = false;
    QObject::connect(
        &link.MSComm1, &MSComm::OnComm, &link,
        [&] {
            // As behind a message box: closed in a nested event loop that then goes on for a while.
            QTimer::singleShot(0, &link, [&] { link.GoOffLine(0); });
            Idle(60);
            closed = true;
        },
        Qt::SingleShotConnection);
    ASSERT_TRUE(WaitUntil([&] { return closed; }));
    EXPECT_FALSE(link.PortOpen());
    peer.Values[10] = 5;
    link.GoOnLine();
    EXPECT_TRUE(WaitUntil([&] { return P(10).Value == 5; }));
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
    EXPECT_EQ(link.NoResponseCount, 0);
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
        QString words;
    } cases[] = {
        {QStringLiteral("/dev/ttyNone7"), QStringLiteral("There is no serial port /dev/ttyNone7 (Com5)")},
        {QString(), QStringLiteral("There is no port Com5")},
        {file, QStringLiteral("is not a serial port")},
        {peer.Device(), QStringLiteral("is in use by another program")},
    };
    link.MSComm1.SetCommPort(5);
    QObject::connect(&link, &DriveLink::ComStatusChanged, &link, [this] { states.append(link.PortOpen()); });
    for (const auto &c : cases) {
        link.MSComm1.DeviceOf = [&](int) { return c.device; };
        asker.Expect(c.words);
        link.GoOnLine();
        EXPECT_FALSE(link.PortOpen());
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::None);
    }
    EXPECT_TRUE(states.isEmpty());
    ::close(other);
    link.GoOnLine();
    EXPECT_TRUE(link.PortOpen()) << "free again";

    MSComm second;
    second.DeviceOf = link.MSComm1.DeviceOf;
    EXPECT_TRUE(second.SetPortOpen(true).contains(QStringLiteral("in use by another program")));
}

} // namespace quorvik::testing
