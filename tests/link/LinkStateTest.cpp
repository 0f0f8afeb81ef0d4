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
        int lastParam; ///< -1 where no drive can be so
    } cases[] = {{400, 400}, {500, 500}, {501, 500}, {32767, 500}, {0, -1}, {-1, -1}, {-32768, -1}};
    int told = 0;
    Want({0, 420});
    for (const auto &c : cases) {
        SCOPED_TRACE(c.claimed);
        peer.LastParam = c.claimed;
        peer.Frames.clear();
        if (c.lastParam < 0)
            asker.Expect(QStringLiteral("its last parameter is %1, which no drive has").arg(c.claimed));
        link.GoOnLine();
        EXPECT_EQ(link.PortOpen(), c.lastParam >= 0);
        if (c.lastParam >= 0) {
            EXPECT_EQ(model.LastParam, c.lastParam);
            // Two scans: what is wanted of the first has gone out by then.
            ASSERT_TRUE(WaitFor(ReadRequest(0), 2));
            EXPECT_EQ(peer.Count(ReadRequest(420)) > 0, c.lastParam == 500);
        } else {
            ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == told + 1; }));
            ++told;
        }
        link.GoOffLine(0);
        EXPECT_EQ(model.LastParam, FileLastParam);
    }
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(LinkStateTest, AStalledWaitIsEscapedByTheUsersSwitch)
{
    Answer(PropsRequest(1), Spoiled(PropsReply(0, 400, 0, 0, 0)));
    bool escaped = false;
    QTimer::singleShot(400, &link, [&] {
        EXPECT_TRUE(link.PortOpen());
        EXPECT_EQ(peer.Count(PropsRequest(1)), 1) << "not asked again";
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

TEST_F(LinkStateTest, TheThirdSilenceEndsTheWaitForTheDrive)
{
    P(Param::Run).Value = 1; // of a file: no motor was running
    for (const int silences : {3, 2}) {
        peer.Frames.clear();
        Answer(PropsRequest(1), {}, silences);
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
        std::vector<QByteArray> replies; ///< in turn
        int requests;
        const char *problem;
        const char *title;
        int run = 0;
        int state = 0;
    } cases[] = {
        {{Spoiled(good)}, 3, "Invalid BCC.", "Communication Error"},
        {{good.first(2)}, 3, "Incorrect Packet Size!", "Communications Error", 1},
        {{good + good}, 3, "Incorrect Packet Size!", "Communications Error", 0, 1},
        {{{}}, 3, "Drive not Responding!", "Communications Error", 0, 8},
        // Each kind is counted apart: a bad check is a right length.
        {{good.first(3), Spoiled(good)}, 6, "Invalid BCC.", "Communication Error"},
    };
    peer.LastParam = 450;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.problem);
        Want({10, Param::Run, Param::DriveState});
        Connect();
        EXPECT_TRUE(model.DriveStateUnread);
        peer.Values[Param::Run] = c.run;
        peer.Values[Param::DriveState] = c.state;
        ASSERT_TRUE(WaitFor(ReadRequest(Param::DriveState)));
        ASSERT_TRUE(WaitFor(ReadRequest(10), 2));
        EXPECT_FALSE(model.DriveStateUnread);
        model.RemoveReadInterest(Param::Run);
        model.RemoveReadInterest(Param::DriveState);
        ASSERT_TRUE(WaitUntil([&] { return link.SerialCommTimer.isActive(); }));
        states.clear();
        peer.Frames.clear();
        std::size_t requests = 0;
        peer.Answer = [&](const QByteArray &frame) {
            return frame == Eot ? QByteArray() : c.replies[requests++ % c.replies.size()];
        };
        const QString sentence =
            QLatin1String(c.problem) + QStringLiteral(" Check connections and power. Switching OffLine.");
        asker.Shown.clear();
        asker.Expect(sentence);
        ASSERT_TRUE(WaitForOffLine());
        const bool warns = c.run != 0 || c.state == 1;
        EXPECT_EQ(asker.Shown.last().text.contains(QStringLiteral("The motor may still be turning")), warns);
        EXPECT_EQ(asker.Shown.last().title, QLatin1String(c.title));
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Exclamation);
        EXPECT_EQ(peer.Count(ReadRequest(10)), c.requests);
        ExpectStandstill();
        EXPECT_EQ(states, QList<bool>{false});
        EXPECT_FALSE(link.OffLineRequested);
        EXPECT_EQ(link.BCCErrorCount + link.NoResponseCount, 0);
        model.RemoveReadInterest(10);
    }
}

TEST_F(LinkStateTest, AScanGoesOnToItsEndBehindTheThirdBadCheckAndSaysNoMore)
{
    Connect();
    peer.Values[18] = 5;
    peer.Answer = [this](const QByteArray &frame) {
        const QByteArray reply = peer.DriveAnswer(frame);
        return frame == Eot || peer.Frames.size() == 9 ? reply : Spoiled(reply);
    };
    Want({10, 11, 12, 13, 14, 15, 16, 17, 18});
    asker.Expect(QStringLiteral("Invalid BCC."));
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(peer.Frames.size(), 10);
    EXPECT_EQ(P(17).Value, 0);
    EXPECT_EQ(P(18).Value, 5);
    EXPECT_EQ(link.BCCErrorCount, 0);
}

TEST_F(LinkStateTest, AJogFromBeforeIsTakenBack)
{
    peer.LastParam = 300;
    const QByteArray stop = WriteRequest(Param::Jog, 0);
    for (const bool reads : {true, false}) {
        peer.Values[Param::Jog] = 1;
        P(Param::Jog).Value = 1;
        asker.Expect(QStringLiteral("Write current parameter settings to drive?"),
                     reads ? MsgAnswer::No : MsgAnswer::Yes);
        link.ToggleComStatus();
        ASSERT_TRUE(WaitFor(stop));
        EXPECT_EQ(peer.Count(WriteRequest(Param::Jog, 1)), 0);
        EXPECT_FALSE(model.FileModified || model.DriveModified);
        ASSERT_TRUE(WaitUntil([this] { return !model.WritePending; }));
        // From then on the button is the user's.
        Enter(Param::Jog, 1);
        ASSERT_TRUE(WaitFor(WriteRequest(Param::Jog, 1)));
        // Letting it go leaves before the port closes.
        const int stops = peer.Count(stop);
        Enter(Param::Jog, 0);
        model.FileModified = model.DriveModified = false;
        link.GoOffLine(0);
        EXPECT_TRUE(WaitFor(stop, stops + 1));
        peer.Frames.clear();
    }
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
        for (const int queued : {3, Param::ClockFirst})
            P(queued).WriteFlag = WriteState::Queued;
        model.WritePending = true;
        peer.Values[10] = 77;
        P(10).ReadFlag = P(10).Value = 0;
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
        EXPECT_EQ(P(10).Value, reads ? 77 : 0) << "the reading is one";
        EXPECT_EQ(P(Param::ClockFirst).WriteFlag, reads ? WriteState::None : WriteState::Queued);
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

TEST_F(LinkStateTest, MemoryCommandsAreGivenOnceAndLeaveTheFileAlone)
{
    peer.LastParam = 450;
    const struct {
        bool saves;
        bool isRefused;
    } cases[] = {{true, false}, {false, false}, {true, true}};
    Connect();
    for (const auto &c : cases) {
        const int command = c.saves ? Param::SaveParameters : Param::LoadParameters;
        Answer(c.isRefused ? WriteRequest(command, 1) : QByteArray(), Nak);
        model.DriveModified = true;
        if (c.isRefused) {
            asker.Expect(QStringLiteral("Could not write value of 1 to (406)"));
            asker.Expect(QStringLiteral("Changes in Drive not saved!"));
        }
        c.saves ? link.SaveDriveParameters() : link.LoadDriveParameters();
        EXPECT_FALSE(model.DriveModified || model.FileModified);
        ASSERT_TRUE(WaitUntil([this] { return !model.WritePending && !IsAtRest(); }));
        EXPECT_EQ(P(command).Value, 0) << "a whole write carries no command";
        EXPECT_EQ(model.DriveModified, c.isRefused);
    }
    ASSERT_TRUE(WaitUntil([this] { return asker.Shown.size() == 2; }));

    Answer(WriteRequest(Param::SaveParameters, 1));
    asker.Expect(QStringLiteral("not Responding"));
    asker.Expect(QStringLiteral("Drive parameters have not been saved!"));
    link.SaveDriveParameters();
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(P(Param::SaveParameters).WriteFlag, WriteState::None);
}

TEST_F(LinkStateTest, WhatASessionLeavesUndoneEndsWithIt)
{
    Connect();
    Want({10});
    peer.Answer = [](const QByteArray &) { return QByteArray(9, 'x'); };
    ASSERT_TRUE(WaitUntil([&] { return link.PacketSizeErrorCount == 1; }));
    link.OffLineRequested = true;
    link.SetDriveCommand(2);
    link.GoOffLine(0);
    model.DriveModified = true;
    link.GoOffLine(1); // asks nothing over a closed port
    peer.Frames.clear();
    peer.Answer = [&](const QByteArray &frame) {
        EXPECT_TRUE(frame == Eot || !link.SerialCommTimer.isActive()) << "a reply is being waited for";
        return peer.Frames.size() == 1 ? QByteArray() : peer.DriveAnswer(frame);
    };
    QElapsedTimer clock;
    clock.start();
    link.GoOnLine();
    EXPECT_GE(clock.elapsed(), Short.replyTimeout) << "the pause of the last session did not cut it short";
    EXPECT_EQ(peer.Count(PropsRequest(1)), 2);
    ASSERT_TRUE(WaitFor(ReadRequest(10), 2));
    EXPECT_EQ(peer.Count(WriteRequest(408, 2)), 0);
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
        {file, "Serial port "},
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
