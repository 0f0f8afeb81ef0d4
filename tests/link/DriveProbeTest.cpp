#include "link/DriveProbe.h"
#include "link/LinkFixture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quorvik::testing
{

using Kind = DriveProbe::Answer::Kind;

class DriveProbeTest : public LinkFixture
{
protected:
    DriveProbeTest()
    {
        On(&probe, &DriveProbe::Finished, &probe,
           [this](const DriveProbe::Answer &answer) { answers.append(answer); });
        peer.Values = {{7, 0xFFFE}, {9, 0xFFFE}};
        P(9).Attributes = Attr::Long;
    }

    DriveProbe::Answer Ask(const QString &device, const std::set<int> &params = {})
    {
        answers.clear();
        probe.Start(device, params);
        EXPECT_TRUE(probe.IsRunning());
        EXPECT_TRUE(answers.isEmpty()) << "never from within Start";
        EXPECT_TRUE(WaitUntil([this] { return !answers.isEmpty(); }));
        EXPECT_FALSE(probe.IsRunning());
        return answers.value(0);
    }

    DriveProbe probe{table, Short};
    QList<DriveProbe::Answer> answers;
};

TEST_F(DriveProbeTest, OnlyADriveThatAnswersToTheEndIsOne)
{
    const QByteArray props = PropsReply(0, 40, 0, 0, 0);
    const struct {
        const char *what;
        QByteArray frame;
        QByteArray reply;
        int times;
        Kind kind;
    } cases[] = {
        {"a good drive", {}, {}, 0, Kind::Drive},
        {"silence", PropsRequest(1), {}, INT_MAX, Kind::Silent},
        {"silence once", PropsRequest(1), {}, 1, Kind::Drive},
        {"an echo", PropsRequest(1), PropsRequest(1), INT_MAX, Kind::Silent},
        {"one byte short", PropsRequest(1), props.left(12), INT_MAX, Kind::Silent},
        {"one byte more", PropsRequest(1), props + 'x', INT_MAX, Kind::Silent},
        {"a wrong check character", PropsRequest(1), Spoiled(props), INT_MAX, Kind::Silent},
        {"a wrong one once", PropsRequest(1), Spoiled(props), 1, Kind::Drive},
        {"a table that no drive has", PropsRequest(1), PropsReply(0, 0, 0, 0, 0), INT_MAX, Kind::Silent},
        {"a value that stays away", ReadRequest(9), {}, INT_MAX, Kind::Silent},
        {"a damaged value once", ReadRequest(9), Spoiled(ValueReply(5)), 1, Kind::Drive},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        peer.Frames.clear();
        Answer(c.frame, c.reply, c.times);
        const DriveProbe::Answer answer = Ask(peer.Device(), {7, 9, 41});
        EXPECT_EQ(answer.kind, c.kind) << answer.sentence.toStdString();
        if (c.kind == Kind::Drive) {
            EXPECT_EQ(answer.lastParam, 40);
            EXPECT_EQ(answer.rawValues, (std::map<int, std::int32_t>{{7, -2}, {9, 0xFFFE}}));
        }
        EXPECT_LE(peer.Count(c.frame), 2);
        for (const QByteArray &frame : std::as_const(peer.Frames))
            EXPECT_TRUE(frame == PropsRequest(1) || frame == ReadRequest(7) || frame == ReadRequest(9) ||
                        frame == Eot);
    }
}

TEST_F(DriveProbeTest, AnAnswerThatComesTooLateIsNotTakenForTheNextOne)
{
    // Both answers to the repeated question come after the repetition.
    peer.Answer = [this](const QByteArray &frame) {
        if (frame != ReadRequest(7))
            return peer.DriveAnswer(frame);
        QTimer::singleShot(Short.replyTimeout * 4 / 3, &probe, [this] { peer.Send(ValueReply(1)); });
        return QByteArray();
    };
    const DriveProbe::Answer answer = Ask(peer.Device(), {7, 9});
    EXPECT_EQ(answer.kind, Kind::Silent);
    EXPECT_EQ(peer.Count(ReadRequest(9)), 0);
}

TEST_F(DriveProbeTest, ADeviceThatCannotBeAskedSaysWhy)
{
    EXPECT_EQ(Ask({}).kind, Kind::NotPresent);
    EXPECT_EQ(Ask(QStringLiteral("/dev/ttyQuorvik9")).kind, Kind::NotPresent);
    EXPECT_EQ(Ask(QStringLiteral("/etc/passwd")).kind, Kind::Failed);

    const int other = ::open(QFile::encodeName(peer.Device()).constData(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    const DriveProbe::Answer busy = Ask(peer.Device());
    EXPECT_EQ(busy.kind, Kind::Busy);
    EXPECT_TRUE(busy.sentence.startsWith(QStringLiteral("Serial port %1 is in use").arg(peer.Device())))
        << busy.sentence.toStdString();
    ::close(other);

    ASSERT_EQ(link.Open(), QString());
    EXPECT_EQ(Ask(peer.Device()).kind, Kind::Busy) << "the link has it";
    link.Close();
    EXPECT_EQ(Ask(peer.Device()).kind, Kind::Drive);
}

TEST_F(DriveProbeTest, CancelLetsGoOfTheDeviceAtOnce)
{
    Answer(PropsRequest(1));
    probe.Start(peer.Device());
    probe.Cancel();
    EXPECT_FALSE(probe.IsRunning());
    EXPECT_EQ(link.Open(), QString());
    EXPECT_TRUE(WaitFor(PropsRequest(1), 2)) << "the link's own";
    EXPECT_TRUE(answers.isEmpty());
}

} // namespace quorvik::testing
