#include "LinkFixture.h"

#include <QTimer>
#include <vector>

namespace quorvik::testing
{

/**
 * The adapter is pulled out, its device gone, in every state of the engine, and plugged in again under the
 * same name as a new device.
 */
class CableTest : public LinkFixture
{
protected:
    struct State {
        const char *title;
        std::function<void()> enter;        ///< makes the engine go there; the peer is on line and answers
        std::function<bool()> isThere;      ///< nothing for a state that pulls the cable itself
        const char *box = "not Responding"; ///< what tells the user, empty where the link goes down silently
        bool isLeftByUser = false;          ///< the engine does not leave it by itself
    };

    CableTest()
    {
        link.SerialCommTimer.setInterval(5);
        link.SerialCommTimeout.setInterval(40);
    }

    std::function<bool()> Awaits(int replyLength, const QByteArray &frame)
    {
        return [this, replyLength, frame] {
            return link.SerialCommTimeout.isActive() && link.MSComm1.RThreshold() == replyLength &&
                   !peer.Frames.isEmpty() && peer.Frames.last() == frame;
        };
    }
    void Write() { model.SetParamValue(20, 5, false, false); }

    std::vector<State> States()
    {
        const auto nothing = [] {};
        const auto betweenScans = [this] { return link.SerialCommTimer.isActive(); };
        return {
            {"closed", [this] { link.GoOffLine(0); }, [this] { return !link.PortOpen(); }, ""},
            {"between scans", nothing, betweenScans},
            {"awaiting the first read", [this] { Answer(ReadRequest(10)); }, Awaits(5, ReadRequest(10))},
            {"awaiting a read within a run", [this] { Answer(Ack); }, Awaits(5, Ack)},
            {"awaiting a write",
             [this] {
                 Answer(WriteRequest(20, 5));
                 Write();
             },
             Awaits(1, WriteRequest(20, 5))},
            {"awaiting properties",
             [this] {
                 Answer(PropsRequest(1));
                 link.ReadPropsIndex = 1;
             },
             Awaits(13, PropsRequest(1))},
            {"going on line",
             [this] {
                 link.GoOffLine(0);
                 Answer(PropsRequest(1));
                 QTimer::singleShot(15, &link, [this] { peer.PullOut(); });
                 link.GoOnLine();
             },
             nullptr},
            {"stalled",
             [this] {
                 Answer(PropsRequest(1), Spoiled(PropsReply(0, 40, 0, 0, 0)));
                 link.ReadPropsIndex = 1;
             },
             [this] { return link.BCCErrorCount == 1 && IsAtRest(); }, "", true},
            {"emptying the line", [this] { Answer(ReadRequest(10), ValueReply(0) + 'x'); },
             [this] { return link.PacketSizeErrorCount == 1 && IsAtRest(); }},
            {"telling the user",
             [this] {
                 Answer(WriteRequest(20, 5), Nak);
                 asker.Expect(QStringLiteral("Could not write value"));
                 asker.WhileShown = [this] {
                     asker.WhileShown = nullptr;
                     asker.Expect(QStringLiteral("not Responding"));
                     peer.PullOut();
                     EXPECT_TRUE(WaitForOffLine()) << "behind the message";
                 };
                 Write();
             },
             nullptr, ""},
            {"about to command a restart", [this] { link.SetDriveCommand(1); }, betweenScans, ""},
            {"about to go off line", [this] { link.OffLineRequested = true; }, betweenScans, ""},
        };
    }
};

TEST_F(CableTest, PulledInEveryStateItGoesOnLineAgain)
{
    Want({10, 11, 15});
    Connect();
    int pulls = 0;
    for (int round = 0; round < 3; ++round) {
        for (const State &state : States()) {
            SCOPED_TRACE(state.title);
            const bool isUserFirst = round == 2;
            const QString box = QString::fromLatin1(state.box);
            // The state "going on line" waits until the engine has given up.
            if (!box.isEmpty() && (!state.isThere || !isUserFirst))
                asker.Expect(box);
            state.enter();
            if (state.isThere) {
                ASSERT_TRUE(WaitUntil(state.isThere));
                peer.PullOut();
            }
            // The engine notices by itself; a user who is faster, or a stalled engine's user, has the switch.
            if (link.PortOpen() && state.isThere && (isUserFirst || state.isLeftByUser))
                link.ToggleComStatus();
            int turns = 0;
            ASSERT_TRUE(WaitUntil([&] { return ++turns > 0 && !link.PortOpen(); }));
            EXPECT_LT(turns, 300) << "the event loop sleeps";
            EXPECT_TRUE(IsAtRest());

            asker.Expect(QStringLiteral("There is no serial port"));
            link.GoOnLine();
            EXPECT_FALSE(link.PortOpen());
            model.SetAllWriteFlags(WriteState::None);
            model.WritePending = false;
            peer.PlugIn();
            peer.Values[11] = ++pulls;
            ASSERT_NO_FATAL_FAILURE(Connect());
            ASSERT_TRUE(WaitUntil([&] { return P(11).Value == pulls; }))
                << "the table follows the drive again";
        }
    }
    EXPECT_GE(pulls, 36);
    EXPECT_TRUE(failures.isEmpty()) << qPrintable(failures.join(u'\n'));
}

} // namespace quorvik::testing
