#include "link/LinkFixture.h"

#include <QTimer>
#include <utility>

namespace quorvik::testing
{

using WritingTest = LinkFixture;

TEST_F(WritingTest, KeepsTheOrderAndLosesNoChange)
{
    peer.LastParam = 300;
    const QByteArray run = WriteRequest(Param::Run, 0);
    const struct {
        const char *title;
        std::vector<std::pair<int, int>> entries = {}; ///< before the first frame
        int wanted = 0;
        QByteArray trigger = {}; ///< at this frame the rest is entered
        std::vector<std::pair<int, int>> rest = {};
        QList<QByteArray> bytes;
    } cases[] = {
        {.title = "rising, an unsigned value cut to 16 bits",
         .entries = {{9, -1}, {8, 70000}, {5, 70}},
         .bytes = {WriteRequest(5, 70), WriteRequest(8, 0x1170), WriteRequest(9, -1)}},
        {.title = "the one under way again, and one behind the cursor",
         .entries = {{20, 1}},
         .trigger = WriteRequest(20, 1),
         .rest = {{20, 2}, {5, 3}},
         .bytes = {WriteRequest(20, 1), WriteRequest(5, 3), WriteRequest(20, 2)}},
        {.title = "in a read scan at the next tick",
         .wanted = 3,
         .trigger = ReadRequest(10),
         .rest = {{11, 99}},
         .bytes = {ReadRequest(10), Ack, Ack, Eot, WriteRequest(11, 99)}},
        {.title = "Stop before all others",
         .entries = {{20, 1}, {21, 1}},
         .trigger = WriteRequest(20, 1),
         .rest = {{5, 3}, {Param::Run, 0}},
         .bytes = {WriteRequest(20, 1), run, WriteRequest(21, 1), WriteRequest(5, 3)}},
        {.title = "Stop in a read scan at once",
         .wanted = 3,
         .trigger = ReadRequest(10),
         .rest = {{Param::Run, 0}},
         .bytes = {ReadRequest(10), Eot, run, ReadRequest(11), Ack, Eot}},
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
            table.AddReadInterest(10 + i);
        ASSERT_TRUE(WaitUntil([&] { return peer.Frames.size() >= c.bytes.size(); }));
        EXPECT_EQ(peer.Frames.first(c.bytes.size()), c.bytes);
        for (int i = 0; i < c.wanted; ++i)
            table.RemoveReadInterest(10 + i);
        ASSERT_TRUE(WaitForWrites());
    }
    EXPECT_EQ(P(11).Value, 99) << "the value of the scan under way is the older one";

    // As one of the whole table it has no right of way.
    peer.Frames.clear();
    table.SetAllWriteFlags(WriteState::Queued);
    ASSERT_TRUE(WaitFor(run));
    EXPECT_EQ(peer.Count(WriteRequest(20, 1)), 1);
}

TEST_F(WritingTest, OneThatFailsIsTriedThreeTimesAPauseApart)
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
        ASSERT_TRUE(WaitForWrites());
        EXPECT_EQ(peer.Count(WriteRequest(30, 4)), 3);
        EXPECT_EQ(P(30).Value, 4) << "the value stays, refused or not";
        EXPECT_EQ(link.WriteRetryCount + link.NoResponseCount, 0);
        EXPECT_EQ(peer.Count(WriteRequest(31, 1)), 1) << "and the scan goes on";
    }
    ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == 1; }));
    EXPECT_EQ(asker.Shown.first().title, QStringLiteral("Write Error"));
}

TEST_F(WritingTest, AFailureIsToldOnceAndTheLinkGoesOn)
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
        // A selector that points nowhere.
        [&] {
            table.EditParamNumber = 3;
            Enter(3, 9999);
        },
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

TEST_F(WritingTest, MemoryCommandsAreGivenOnceAndLeaveTheFileAlone)
{
    peer.LastParam = 450;
    Connect();
    for (const auto &[saves, isRefused] : {std::pair(true, false), {false, false}, {true, true}}) {
        const int command = saves ? Param::SaveParameters : Param::LoadParameters;
        Answer(isRefused ? WriteRequest(command, 1) : QByteArray(), Nak);
        document.DriveModified = true;
        if (isRefused) {
            asker.Expect(QStringLiteral("Could not write value of 1 to (406)"));
            asker.Expect(QStringLiteral("Changes in Drive not saved!"));
        }
        if (saves)
            operations.SaveDriveParameters();
        else
            operations.LoadDriveParameters();
        EXPECT_FALSE(document.DriveModified || document.FileModified);
        ASSERT_TRUE(WaitUntil([this] { return !table.WritePending && !IsAtRest(); }));
        EXPECT_EQ(P(command).Value, 0) << "a whole write carries no command";
        EXPECT_EQ(document.DriveModified, isRefused);
    }
    ASSERT_TRUE(WaitUntil([this] { return asker.Shown.size() == 2; }));

    Answer(WriteRequest(Param::SaveParameters, 1));
    asker.Expect(QStringLiteral("not Responding"));
    asker.Expect(QStringLiteral("Drive parameters have not been saved!"));
    operations.SaveDriveParameters();
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(P(Param::SaveParameters).WriteFlag, WriteState::None);
}

TEST_F(WritingTest, GoingOffLineAsksAndWaitsForTheSaveUntilTheDriveTellsThatItIsDone)
{
    const QByteArray save = WriteRequest(Param::SaveParameters, 1);
    const QByteArray asked = ReadRequest(Param::SaveParameters);
    const QString notSaved = QStringLiteral("Changes in Drive not saved!");
    const struct {
        const char *title;
        MsgAnswer answer;
        QByteArray reply;  ///< to the command; empty for none
        int clearedAt = 3; ///< so many polls later
        QStringList boxes = {};
        int limitMs = 5000;
    } cases[] = {
        {"cleared", MsgAnswer::Yes, Ack},
        {"not wanted", MsgAnswer::No, Ack, 0},
        {"refused",
         MsgAnswer::Yes,
         Nak,
         0,
         {notSaved, QStringLiteral("Could not write value of 1 to (406)")}},
        {"silent",
         MsgAnswer::Yes,
         {},
         0,
         {QStringLiteral("not Responding"), QStringLiteral("have not been saved"), notSaved}},
        {"too late", MsgAnswer::Yes, Ack, 0, {notSaved}, 60},
    };
    peer.LastParam = 450;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        Connect();
        asker.Shown.clear();
        peer.Answer = [&](const QByteArray &frame) {
            const QByteArray reply = peer.DriveAnswer(frame);
            if (c.clearedAt > 0 && peer.Count(asked) == c.clearedAt)
                peer.Values[Param::SaveParameters] = 0;
            return frame == save ? c.reply : frame == asked ? peer.DriveAnswer(frame) : reply;
        };
        document.DriveModified = true;
        asker.Expect(QStringLiteral("Save Changes in Drive?\r\n\r\nParameter changes not saved will be lost"),
                     c.answer);
        for (const QString &box : c.boxes)
            asker.Expect(box);
        operations.SaveLimitMs = c.limitMs;
        // Ignored while leaving.
        if (c.answer == MsgAnswer::Yes)
            QTimer::singleShot(5, &link, [this] { operations.ToggleComStatus(); });
        operations.GoOffLine(OffLineReason::User);
        EXPECT_FALSE(link.PortOpen());
        EXPECT_EQ(document.DriveModified, c.clearedAt == 0);
        EXPECT_EQ(peer.Count(asked) > 0, c.answer == MsgAnswer::Yes && c.reply == Ack);
        ASSERT_TRUE(WaitUntil([&] { return asker.Shown.size() == 1 + c.boxes.size(); }));
        EXPECT_EQ(P(Param::SaveParameters).Value + P(Param::SaveParameters).ReadFlag, 0);
        EXPECT_EQ(P(Param::SaveParameters).WriteFlag, WriteState::None)
            << "nothing is left for the next time";
    }
}

} // namespace quorvik::testing
