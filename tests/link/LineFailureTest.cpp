#include "link/LinkFixture.h"

#include <QSignalSpy>
#include <QTimer>
#include <utility>

namespace quorvik::testing
{

class LineFailureTest : public LinkFixture
{
protected:
    /** The adapter is pulled out here, its device gone. */
    struct State {
        const char *title;
        std::function<void()> enter;        ///< makes the engine go there; the peer is on line and answers
        std::function<bool()> isThere;      ///< nothing for a state that pulls the cable itself
        const char *box = "not Responding"; ///< what tells the user, empty where the link goes down silently
        bool isLeftByUser = false;          ///< the engine does not leave it by itself
    };

    std::function<bool()> Awaits(int replyLength, const QByteArray &frame)
    {
        return [this, replyLength, frame] {
            return link.SerialCommTimeout.isActive() && link.MSComm1.RThreshold() == replyLength &&
                   !peer.Frames.isEmpty() && peer.Frames.last() == frame;
        };
    }

    std::vector<State> States()
    {
        const auto betweenScans = [this] { return link.SerialCommTimer.isActive(); };
        const QByteArray write = WriteRequest(20, 5);
        const auto answerWrite = [this, write](const QByteArray &reply) {
            Answer(write, reply);
            table.SetParamValue(20, 5, false, false);
        };
        const auto askForProps = [this](const QByteArray &reply) {
            Answer(PropsRequest(1), reply);
            link.ReadPropsIndex = 1;
        };
        return {
            {"closed", [this] { operations.GoOffLine(OffLineReason::User); },
             [this] { return !link.PortOpen(); }, ""},
            {"between scans", [] {}, betweenScans},
            {"awaiting the first read", [this] { Answer(ReadRequest(10)); }, Awaits(5, ReadRequest(10))},
            {"awaiting a read within a run", [this] { Answer(Ack); }, Awaits(5, Ack)},
            {"awaiting a write", [=] { answerWrite({}); }, Awaits(1, write)},
            {"awaiting properties", [=] { askForProps({}); }, Awaits(13, PropsRequest(1))},
            {"going on line",
             [this] {
                 operations.GoOffLine(OffLineReason::User);
                 Answer(PropsRequest(1));
                 QTimer::singleShot(15, &link, [this] { peer.PullOut(); });
                 operations.GoOnLine();
             },
             nullptr},
            {"stalled", [=] { askForProps(Spoiled(PropsReply(0, 40, 0, 0, 0))); },
             [this] { return link.BCCErrorCount == 1 && IsAtRest(); }, "", true},
            {"emptying the line", [this] { Answer(ReadRequest(10), ValueReply(0) + 'x'); },
             [this] { return link.PacketSizeErrorCount == 1 && IsAtRest(); }},
            {"telling the user",
             [=, this] {
                 asker.Expect(QStringLiteral("Could not write value"));
                 asker.WhileShown = [this] {
                     asker.WhileShown = nullptr;
                     asker.Expect(QStringLiteral("not Responding"));
                     peer.PullOut();
                     EXPECT_TRUE(WaitForOffLine()) << "behind the message";
                 };
                 answerWrite(Nak);
             },
             nullptr, ""},
            {"about to command a restart", [this] { link.SetDriveCommand(Restart::ReInitialize); },
             betweenScans, ""},
            {"about to go off line", [this] { link.OffLineRequested = true; }, betweenScans, ""},
        };
    }
};

TEST_F(LineFailureTest, PulledOutInEveryStateItGoesOnLineAgain)
{
    link.SerialCommTimer.setInterval(5);
    link.SerialCommTimeout.setInterval(40);
    Want({10, 11, 15});
    Connect();
    int pulls = 0;
    // The engine notices by itself, or a user who is faster has the switch.
    for (const bool isUserFirst : {false, false, true}) {
        for (const State &state : States()) {
            SCOPED_TRACE(state.title);
            const QString box = QString::fromLatin1(state.box);
            // The state "going on line" waits until the engine has given up.
            if (!box.isEmpty() && (!state.isThere || !isUserFirst))
                asker.Expect(box);
            state.enter();
            if (state.isThere) {
                ASSERT_TRUE(WaitUntil(state.isThere));
                peer.PullOut();
            }
            if (link.PortOpen() && state.isThere && (isUserFirst || state.isLeftByUser))
                operations.ToggleComStatus();
            int turns = 0;
            ASSERT_TRUE(WaitUntil([&] { return ++turns > 0 && !link.PortOpen(); }));
            EXPECT_LT(turns, 300) << "the event loop sleeps";
            EXPECT_TRUE(IsAtRest());

            asker.Expect(QStringLiteral("There is no serial port"));
            operations.GoOnLine();
            EXPECT_FALSE(link.PortOpen());
            table.SetAllWriteFlags(WriteState::None);
            table.WritePending = false;
            // Plugged in again under the same name it is a new device.
            peer.PlugIn();
            peer.Values[11] = ++pulls;
            ASSERT_NO_FATAL_FAILURE(Connect());
            ASSERT_TRUE(WaitUntil([&] { return P(11).Value == pulls; }))
                << "the table follows the drive again";
        }
    }
    EXPECT_TRUE(failures.isEmpty()) << qPrintable(failures.join(u'\n'));
}

TEST_F(LineFailureTest, ThreeOfAKindInARowTakeTheLinkDown)
{
    const QByteArray good = ValueReply(1);
    const struct {
        std::vector<QByteArray> replies; ///< in turn
        int requests;                    ///< of four parameters
        const char *problem;
        const char *title = "Communications Error";
        int run = 0;
        int state = 0;
    } cases[] = {
        // A bad check does not end the scan, and behind the third nothing more is said.
        {{Spoiled(good)}, 4, "Invalid BCC.", "Communication Error"},
        {.replies = {good.first(2)}, .requests = 3, .problem = "Incorrect Packet Size!", .run = 1},
        {.replies = {good + good}, .requests = 3, .problem = "Incorrect Packet Size!", .state = 1},
        {.replies = {{}}, .requests = 3, .problem = "Drive not Responding!", .state = 8},
        // Each kind is counted apart: a bad check is a right length.
        {{good.first(3), Spoiled(good)}, 7, "Invalid BCC.", "Communication Error"},
    };
    Want({10, 11, 12, 13});
    for (const auto &c : cases) {
        SCOPED_TRACE(c.problem);
        peer.LastParam = 450;
        ASSERT_NO_FATAL_FAILURE(Connect());
        ASSERT_TRUE(WaitFor(ReadRequest(10), 2));
        ASSERT_TRUE(WaitUntil([&] { return link.SerialCommTimer.isActive(); }));
        EXPECT_TRUE(std::exchange(table.DriveStateUnread, false)) << "others tell nothing of it";
        P(Param::DriveState).Value = c.state;
        P(Param::Run).Value = c.run;
        const QSignalSpy changes(&link, &DriveLink::ComStatusChanged);
        std::size_t requests = 0;
        peer.Answer = [&](const QByteArray &frame) {
            return frame == Eot ? QByteArray() : c.replies[requests++ % c.replies.size()];
        };
        asker.Shown.clear();
        asker.Expect(QLatin1String(c.problem) +
                     QStringLiteral(" Check connections and power. Switching OffLine."));
        ASSERT_TRUE(WaitForOffLine());
        const ShownBox &box = asker.Shown.last();
        EXPECT_EQ(box.text.contains(QStringLiteral("The motor may still be turning")),
                  c.run != 0 || c.state == 1);
        EXPECT_EQ(box.title, QLatin1String(c.title));
        EXPECT_EQ(box.icon, MsgIcon::Exclamation);
        EXPECT_EQ(int(requests), c.requests);
        EXPECT_TRUE(IsSilent() && IsAtRest());
        EXPECT_EQ(changes.size(), 1);
        EXPECT_FALSE(link.OffLineRequested);
        EXPECT_EQ(link.BCCErrorCount + link.NoResponseCount, 0);
    }
}

TEST_F(LineFailureTest, LateBytesAreNoAnswerAndNeverReachTheTable)
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

TEST_F(LineFailureTest, AWrongLengthIsThrownAwayWholeAfterAPause)
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

} // namespace quorvik::testing
