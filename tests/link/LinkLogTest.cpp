#include "link/LinkFixture.h"
#include "link/LinkReport.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"

namespace quorvik::testing
{

class LinkLogTest : public LinkFixture
{
protected:
    /** A line for each packet. */
    std::string Meanings() const
    {
        QString meanings;
        for (qint64 number = log.First(); number < log.End(); ++number)
            meanings += MeaningOf(log.At(number), table) + u'\n';
        return meanings.toStdString();
    }
    bool Has(const char *lines) const { return Meanings().find(lines) != std::string::npos; }
    void Exchange(const QByteArray &request, const QByteArray &reply, qint64 us)
    {
        Q_EMIT link.Sent(request);
        now += us;
        Q_EMIT link.Received(reply, true);
    }

    qint64 now = 1'000'000;
    LinkStatistics statistics{link, [this] { return now; }};
    PacketLog log{link, statistics};
};

TEST_F(LinkLogTest, TellsWhatPassesAndCountsWhatFails)
{
    using Counts = LinkStatistics::Counts;
    const auto want = [this] { Want({10, 11}); };
    const auto write = [this] { Enter(12, 5); };
    const struct Case {
        QByteArray frame; ///< that is spoiled the first time
        QByteArray reply;
        std::function<void()> begin;
        const char *meanings; ///< that follow upon each other
        qint64 Counts::*counter;
        bool isRepeated = true;
    } cases[] = {
        {{},
         {},
         want,
         "read (10) Name 10\n(10) = 7\ngo on with the next (11)\n(11) = -8\nend\n",
         &Counts::answers,
         false},
        {ReadRequest(10), Spoiled(ValueReply(7)), want, "read (10) Name 10\nwrong check\n",
         &Counts::wrongChecks},
        {Ack, ValueReply(7).first(3), want, "go on with the next (11)\n3 of 5 bytes\n",
         &Counts::wrongLengths},
        {ReadRequest(10), ValueReply(7) + 'x', want, "read (10) Name 10\n6 of 5 bytes\n",
         &Counts::wrongLengths},
        {Ack, {}, want, "go on with the next (11)\nno answer: read (11) Name 11\n", &Counts::silences},
        {{}, {}, write, "write (12) Name 12 = 5\ntaken\n", &Counts::writes, false},
        {WriteRequest(12, 5), Nak, write, "write (12) Name 12 = 5\nrefused\n", &Counts::refusals},
        {{},
         {},
         [this] { link.ReadPropsIndex = 1; },
         "properties of (1)\nlast parameter 40\n",
         &Counts::answers,
         false},
    };
    peer.Values = {{10, 7}, {11, -8}};
    Connect();
    log.SetRecording(true);
    for (const Case &each : cases) {
        SCOPED_TRACE(each.meanings);
        log.Clear();
        Answer(each.frame, each.reply, peer.Count(each.frame) + 1);
        const Counts before = statistics.Totals();
        each.begin();
        EXPECT_TRUE(WaitUntil([&] { return Has(each.meanings); })) << Meanings();
        EXPECT_GE(statistics.Totals().*each.counter, before.*each.counter + 1);
        EXPECT_TRUE(WaitUntil(
            [&] { return statistics.Totals().repeats == before.repeats + (each.isRepeated ? 1 : 0); }));
        if (each.counter != &Counts::answers && each.counter != &Counts::writes) {
            EXPECT_EQ(statistics.Totals().*each.counter, before.*each.counter + 1) << "and no more";
        }
        for (const int p : {10, 11})
            P(p).ReadFlag = 0;
        EXPECT_TRUE(WaitForWrites());
        EXPECT_TRUE(WaitUntil([this] { return !link.SerialCommTimeout.isActive(); }));
    }
    EXPECT_EQ(SilenceLines(statistics, table).size(), 1);
    peer.Send(ValueReply(1));
    EXPECT_TRUE(WaitUntil([this] { return Has("not awaited"); }));
    EXPECT_EQ(statistics.Totals().unawaited, 1);
}

TEST_F(LinkLogTest, TellsAnswerTimesAndRates)
{
    statistics.Begin();
    EXPECT_FALSE(statistics.AnswerTime(50) || statistics.AnswerRate() || statistics.RecentAnswerRate());
    for (int i = 0; i < 99; ++i) {
        Exchange(ReadRequest(10), ValueReply(i), 3'200);
        now += 96'800;
    }
    Exchange(ReadRequest(10), ValueReply(0), 150'000);
    Exchange(ReadRequest(10), Spoiled(ValueReply(0)), 200'000); // no answer
    EXPECT_DOUBLE_EQ(*statistics.AnswerTime(50), 3.2);
    EXPECT_DOUBLE_EQ(*statistics.AnswerTime(99), 3.2);
    EXPECT_DOUBLE_EQ(*statistics.AnswerTime(100), 150);
    EXPECT_NEAR(*statistics.RecentAnswerRate(), 10, 0.5);
    now += 9'750'000;
    EXPECT_DOUBLE_EQ(*statistics.RecentAnswerRate(), 0);
    EXPECT_DOUBLE_EQ(*statistics.AnswerRate(), 5);
    Exchange(ReadRequest(10), ValueReply(0), 3'600'000'000);
    EXPECT_EQ(statistics.Totals().answers, 101) << "however long it took";
}

TEST_F(LinkLogTest, KeepsTheFiguresOfALinkThatWasLostUntilTheNextOne)
{
    Connect();
    Want({10});
    asker.Expect(QStringLiteral("not Responding"));
    peer.Answer = [](const QByteArray &) { return QByteArray(); };
    ASSERT_TRUE(WaitForOffLine());
    EXPECT_EQ(statistics.StateOf(), LinkStatistics::State::Lost);
    EXPECT_EQ(statistics.Totals().silences, 3);
    EXPECT_EQ(SilenceLines(statistics, table).size(), 3);
    Connect();
    EXPECT_EQ(statistics.StateOf(), LinkStatistics::State::OnLine);
    EXPECT_EQ(statistics.Totals().silences, 0);
    operations.GoOffLine(OffLineReason::User);
    EXPECT_EQ(statistics.StateOf(), LinkStatistics::State::Ended);
}

TEST_F(LinkLogTest, KeepsTheLastPacketsWhileItIsSwitchedOn)
{
    const auto send = [this](int first, int last) {
        for (int p = first; p <= last; ++p)
            Q_EMIT link.Sent(ReadRequest(p));
    };
    send(0, 9);
    EXPECT_EQ(log.End(), 0);
    log.SetRecording(true);
    log.SetRecording(true);
    send(10, 2011);
    log.SetRecording(false);
    send(0, 9);
    EXPECT_EQ(log.End() - log.First(), 2000);
    EXPECT_EQ(log.At(log.First()).request.param, 12);
    EXPECT_EQ(log.At(log.End() - 1).request.param, 2011);
    EXPECT_TRUE(Has("read (2011)\n")) << "the table has no such row";
    log.Clear();
    EXPECT_EQ(log.First(), log.End());
}

} // namespace quorvik::testing
