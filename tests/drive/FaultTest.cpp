#include "DriveRig.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace quorvik::drive
{

TEST(Faults, SilenceLosesTheReplyAndADropLosesTheRequest)
{
    const std::pair<const char *, int> rows[] = {
        {"silent,count=1", 5}, {"drop,ms=50", 0}, {"drop:217,count=1,ms=50", 0}};
    for (const auto &[words, value] : rows) {
        DriveRig rig;
        rig.Fault(words);
        rig.Send(WriteRequest(217, 5));
        ASSERT_TRUE(rig.WaitFor([&] { return rig.server->Counts().bytesIn == 7; }));
        EXPECT_EQ(rig.table.Get(217), value) << words;
        EXPECT_TRUE(rig.WaitFor([&] { return !rig.faults.DropsRequest(-1, SteadyNow()); }));
        EXPECT_EQ(rig.Read(217), value) << words;
        EXPECT_EQ(rig.server->Counts().bytesOut, 5) << words;
    }
}

TEST(Faults, DropLastsUntilItIsCalledOff)
{
    DriveRig rig;
    rig.Fault("drop");
    EXPECT_TRUE(rig.faults.DropsRequest(5, std::int64_t(1) << 60));
    rig.faults.Clear();
    EXPECT_EQ(rig.Exchange(ReadRequest(0), 5).size(), 5);
}

TEST(Faults, RefusalHitsItsParameterAlone)
{
    DriveRig rig;
    rig.Fault("refuse:217,count=1");
    EXPECT_EQ(rig.Write(218, 5), 6);
    EXPECT_EQ(rig.Write(217, 5), 0x15);
    EXPECT_EQ(rig.table.Get(217), 0);
    EXPECT_EQ(rig.Write(217, 5), 6);
}

TEST(Faults, LateReplyComesAfterItsTime)
{
    DriveRig rig;
    rig.Fault("late,count=1,ms=80");
    QElapsedTimer taken;
    taken.start();
    EXPECT_EQ(rig.Exchange(ReadRequest(0), 5).size(), 5);
    EXPECT_GE(taken.elapsed(), 80);
}

TEST(Faults, RateIsKeptAndASeedRepeats)
{
    const auto losses = [](const char *words) {
        FaultInjector faults;
        EXPECT_EQ(faults.Add(QString::fromLatin1(words), 0), QString());
        std::vector<bool> lost;
        for (int i = 0; i < 2000; ++i) {
            QByteArray reply = Hex("02 00 00 00 00");
            lost.push_back(!faults.Spoil(reply, i));
        }
        return lost;
    };
    const std::vector<bool> lost = losses("silent,rate=0.2,seed=7");
    EXPECT_NEAR(double(std::count(lost.begin(), lost.end(), true)), 400, 60);
    EXPECT_EQ(lost, losses("silent,rate=0.2,seed=7"));
    EXPECT_NE(lost, losses("silent,rate=0.2,seed=8"));
    EXPECT_EQ(losses("silent,rate=0"), std::vector<bool>(2000));
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

} // namespace quorvik::drive
