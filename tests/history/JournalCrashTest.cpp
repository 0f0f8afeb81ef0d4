#include "history/JournalFixture.h"

#include <QProcess>
#include <QThread>

namespace quorvik::testing
{

/** Other programs on the same journal. */
class JournalProgramsTest : public JournalTest
{
protected:
    void StartOther(QProcess &other, int count)
    {
        other.start(QStringLiteral(QUORVIK_JOURNAL_CHILD), {path, QString::number(count)});
        ASSERT_TRUE(other.waitForStarted());
    }
};

class JournalCrashTest : public JournalProgramsTest, public ::testing::WithParamInterface<int>
{
};

TEST_P(JournalCrashTest, AKilledProgramLeavesWholeBatches)
{
    constexpr int Kills = 25;
    constexpr int MostMissingMs = 250;
    constexpr int MostLines = 300;
    std::mt19937 random{std::uint32_t(GetParam())};
    for (int i = 0; i < Kills; ++i) {
        QProcess other;
        StartOther(other, 0);
        std::vector<int> handedMs;
        qint64 written = 0;
        const auto read = [&] {
            const QList<QByteArray> words = other.readLine().trimmed().split(' ');
            if (words.front() == "handed")
                handedMs.push_back(words.back().toInt());
            else
                written = words.back().toInt();
        };
        for (int lines = int(random() % MostLines) + 1; lines > 0; --lines) {
            ASSERT_TRUE(other.canReadLine() || other.waitForReadyRead(LongMs));
            if (other.canReadLine())
                read();
        }
        QThread::usleep(random() % 5000);
        other.kill();
        ASSERT_TRUE(other.waitForFinished());
        while (other.canReadLine())
            read();
        // Before the first is written, the newest run may be the one of another program.
        const qint64 kept = written == 0 ? 0 : Count("actions WHERE run = (SELECT max(id) FROM runs)");
        EXPECT_GE(kept, written);
        if (std::size_t(kept) < handedMs.size()) {
            EXPECT_LE(handedMs.back() - handedMs[std::size_t(kept)], MostMissingMs);
        }
    }
    ExpectWhole();
    Start();
    Add(1);
    EXPECT_THAT(troubles + news, ::testing::IsEmpty());
    ExpectWhole();
}

INSTANTIATE_TEST_SUITE_P(Seeds, JournalCrashTest, ::testing::Range(1, 5));

TEST_F(JournalProgramsTest, ProgramsWriteSideBySideWhileOneOfThemPrunes)
{
    constexpr int Each = 150;
    timings.mostRows = 2000;
    Start();
    Add(400, 5);
    QProcess others[2];
    for (QProcess &other : others)
        StartOther(other, Each);
    for (int i = 0; i < Each; ++i) {
        if (i % 50 == 0)
            journal->Begin(QString());
        journal->Add(bursts.Next(1));
        QThread::usleep(1000);
    }
    for (QProcess &other : others) {
        ASSERT_TRUE(other.waitForFinished(LongMs));
        EXPECT_EQ(other.exitCode(), 0) << other.readAllStandardError().toStdString();
    }
    Settle();
    EXPECT_THAT(troubles + news, ::testing::IsEmpty());
    for (const qint64 run : {2, 3})
        EXPECT_EQ(Count(qPrintable(QStringLiteral("actions WHERE run = %1").arg(run))), Each);
    EXPECT_EQ(Count("actions WHERE run = 1 AND title = '1'"), Each);
    ExpectWhole();
}

TEST_F(JournalProgramsTest, AProgramFollowsWhenAnotherSetsTheFileAside)
{
    Start();
    Add(50);
    QProcess other;
    StartOther(other, 0);
    ASSERT_TRUE(WaitFor([&] { return Count("actions WHERE run = 2") > 20; }));
    JournalFile third(path, JournalFile::Access::Write, timings.busyMs);
    ASSERT_EQ(third.Open(), JournalFault::None);
    QString aside;
    ASSERT_TRUE(third.SetAside(aside));
    ASSERT_TRUE(WaitFor([&] { return Count("actions") > 20; }));
    Add(5);
    EXPECT_EQ(
        Count("actions WHERE title = '3' AND set_name = 'unnamed' AND run = (SELECT max(id) FROM runs)"), 5);
    // Whoever ends last must not take the other's log away.
    other.kill();
    other.waitForFinished();
    const qint64 actions = Count("actions");
    journal.reset();
    EXPECT_EQ(Count("actions"), actions);
    EXPECT_THAT(troubles, ::testing::IsEmpty());
    ExpectWhole();
}

} // namespace quorvik::testing
