#include "DriveRig.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace quorvik::drive
{

namespace
{

int Check(const QByteArray &reply)
{
    char check = 0;
    for (qsizetype i = 1; i < reply.size(); ++i)
        check = char(check ^ reply[i]);
    return check;
}

TEST(Faults, SpoilAsManyRepliesAsAskedFor)
{
    const struct {
        const char *words;
        int length;
        bool isCheckGood;
    } rows[] = {{"bad-bcc,count=2", 5, false}, {"short,count=2", 4, true}, {"long,count=2", 6, false}};
    for (const auto &row : rows) {
        DriveRig rig;
        rig.table.Put(217, 0);
        ASSERT_TRUE(rig.faults.Add(QString::fromLatin1(row.words), SteadyNow()).isEmpty());
        for (int i = 0; i < 2; ++i) {
            const QByteArray reply = rig.Exchange(ReadPacket(217), row.length);
            EXPECT_EQ(reply.size(), row.length) << row.words;
            EXPECT_EQ(Check(reply) == 0, row.isCheckGood) << row.words;
        }
        EXPECT_EQ(rig.Exchange(ReadPacket(217), 5), Hex("02 00 00 00 00")) << row.words;
    }
}

TEST(Faults, SilenceLosesTheReplyAndADropLosesTheRequest)
{
    const struct {
        const char *words;
        int value;
    } rows[] = {{"silent,count=1", 5}, {"drop,ms=50", 0}, {"drop:217,count=1,ms=50", 0}};
    for (const auto &row : rows) {
        DriveRig rig;
        ASSERT_TRUE(rig.faults.Add(QString::fromLatin1(row.words), SteadyNow()).isEmpty());
        rig.Send(WritePacket(217, 5));
        ASSERT_TRUE(rig.WaitFor([&] { return rig.server->Counts().bytesIn == 7; }));
        EXPECT_EQ(rig.table.Get(217), row.value) << row.words;
        EXPECT_TRUE(rig.WaitFor([&] { return !rig.faults.DropsRequest(-1, SteadyNow()); }));
        EXPECT_EQ(rig.Read(217), row.value) << row.words;
        EXPECT_EQ(rig.server->Counts().bytesOut, 5) << row.words;
    }
}

TEST(Faults, DropLastsUntilItIsCalledOff)
{
    DriveRig rig;
    ASSERT_TRUE(rig.faults.Add(QStringLiteral("drop"), 0).isEmpty());
    EXPECT_TRUE(rig.faults.DropsRequest(5, std::int64_t(1) << 60));
    rig.faults.Clear();
    EXPECT_EQ(rig.Exchange(ReadPacket(0), 5).size(), 5);
}

TEST(Faults, RefusalHitsItsParameterAlone)
{
    DriveRig rig;
    ASSERT_TRUE(rig.faults.Add(QStringLiteral("refuse:217,count=1"), SteadyNow()).isEmpty());
    EXPECT_EQ(rig.Write(218, 5), 6);
    EXPECT_EQ(rig.Write(217, 5), 0x15);
    EXPECT_EQ(rig.table.Get(217), 0);
    EXPECT_EQ(rig.Write(217, 5), 6);
}

TEST(Faults, LateReplyComesAfterItsTime)
{
    DriveRig rig;
    ASSERT_TRUE(rig.faults.Add(QStringLiteral("late,count=1,ms=80"), SteadyNow()).isEmpty());
    QElapsedTimer taken;
    taken.start();
    EXPECT_EQ(rig.Exchange(ReadPacket(0), 5).size(), 5);
    EXPECT_GE(taken.elapsed(), 80);
    EXPECT_EQ(rig.faults.Injected(FaultKind::Late), 1);
}

std::vector<bool> Drops(const QString &words)
{
    FaultInjector faults;
    EXPECT_TRUE(faults.Add(words, 0).isEmpty());
    std::vector<bool> lost;
    for (int i = 0; i < 2000; ++i) {
        QByteArray reply = Hex("02 00 00 00 00");
        lost.push_back(!faults.Spoil(reply, i));
    }
    return lost;
}

TEST(Faults, RateIsKeptAndASeedRepeats)
{
    const std::vector<bool> lost = Drops(QStringLiteral("silent,rate=0.2,seed=7"));
    const auto count = std::count(lost.begin(), lost.end(), true);
    EXPECT_NEAR(double(count), 400, 60);
    EXPECT_EQ(lost, Drops(QStringLiteral("silent,rate=0.2,seed=7")));
    EXPECT_NE(lost, Drops(QStringLiteral("silent,rate=0.2,seed=8")));
    const std::vector<bool> none = Drops(QStringLiteral("silent,rate=0"));
    EXPECT_EQ(std::count(none.begin(), none.end(), true), 0);
}

TEST(Faults, WordsThatMeanNothingAreTurnedDown)
{
    for (const char *words : {"", "noise", "short:", "short:x", "refuse:-1", "short,count=0", "late,ms=0",
                              "silent,rate=1.5", "silent,rate=nan", "drop,often=1", "drop,count"}) {
        FaultInjector faults;
        EXPECT_FALSE(faults.Add(QString::fromLatin1(words), 0).isEmpty()) << words;
        EXPECT_FALSE(faults.DropsRequest(0, 0)) << words;
    }
}

} // namespace

} // namespace quorvik::drive
