#include "link/LinkFixture.h"
#include "settings/SettingsFile.h"
#include "support/SimulatedDrive.h"

namespace quorvik::testing
{

/** The engine against the simulated drive, which shares no code with it, over the same factory table. */
class RealRoadTest : public LinkFixture
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(SettingsFile(model).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
        model.ResetToDefaults();
        link.MSComm1.DeviceOf = [this](int) { return drive.LinkPath(); };
        link.GoOnLine();
        ASSERT_TRUE(link.PortOpen());
    }
    void ExpectSameTables()
    {
        const auto table = drive.Table();
        ASSERT_EQ(int(table.size()), model.LastParam + 1);
        for (const auto &[p, rawValue] : table)
            if (!IsClock(p)) {
                EXPECT_EQ(P(p).Value, rawValue) << p;
            }
    }
    static bool IsClock(int p) { return p >= Param::ClockFirst && p <= Param::ClockLast; }

    SimulatedDrive drive;
};

TEST_F(RealRoadTest, AWholeTableGoesBothWays)
{
    drive.Set(7, 33);
    drive.Set(64, 60000);
    drive.Set(100, -12345);
    link.SetAllReadFlags(1);
    link.RunWholeScan(1);
    link.SetAllReadFlags(-1);
    ExpectSameTables();
    EXPECT_EQ(drive.Stat(QStringLiteral("reads")), 1) << "one run, one request";

    for (const int selector : {7, 64, 100})
        P(selector).Value = P(selector).Preset;
    int changed = 0;
    for (int p = 1; p <= model.LastParam; ++p) {
        ParamRecord &record = P(p);
        // The drive bounds relay 3's values by its source even where the table has not followed it.
        const bool isPlain =
            (record.Attributes & (Attr::ReadOnly | Attr::RefreshAfterLoad)) == 0 && p != 77 && p != 80;
        if (isPlain && !Param::IsCommand(p) && p != Param::ClearFault && !IsClock(p) &&
            record.Max > record.Value) {
            ++record.Value;
            ++changed;
        }
    }
    EXPECT_GT(changed, 150);
    P(Param::LoadParameters).Value = 1; // the drive would take back what it was sent
    model.SetAllWriteFlags(WriteState::Queued);
    link.RunWholeScan(2);
    ASSERT_TRUE(WaitUntil([&] { return !model.WritePending; }));
    EXPECT_TRUE(asker.Shown.isEmpty());
    ExpectSameTables();
    EXPECT_EQ(drive.Stat(QStringLiteral("refusals")), 0);
}

TEST_F(RealRoadTest, AnEditReachesTheDriveAndItsMemory)
{
    constexpr int fwdAccelA = 226;
    model.AddReadInterest(fwdAccelA);
    rules.ShowEditDialog = [this] {
        model.EditValue = 123;
        model.EditConfirmed = true;
    };
    rules.EditParameter(Access::ReadWrite, fwdAccelA);
    EXPECT_TRUE(model.FileModified && model.DriveModified);
    ASSERT_TRUE(WaitUntil([&] { return P(fwdAccelA).WriteFlag == WriteState::None; }));
    EXPECT_EQ(drive.Value(fwdAccelA), 123);
    drive.Set(fwdAccelA, 124);
    ASSERT_TRUE(WaitUntil([&] { return P(fwdAccelA).Value == 124; })) << "later scans fetch it back";

    asker.Expect(QStringLiteral("Save Changes in Drive?"), MsgAnswer::Yes);
    QTimer::singleShot(5, &link, [this] { link.ToggleComStatus(); }); // ignored while leaving
    link.GoOffLine(0);
    EXPECT_FALSE(link.PortOpen() || model.DriveModified);
    EXPECT_EQ(P(Param::SaveParameters).ReadFlag, 0);
}

TEST_F(RealRoadTest, DependentLimitsFollowInBothPlaces)
{
    model.EditParamNumber = 3;
    Enter(3, 226);
    ASSERT_TRUE(WaitUntil([&] { return P(3).WriteFlag == WriteState::None; }));
    EXPECT_EQ(P(10).Max, P(226).Max);
    Enter(10, P(226).Max);
    ASSERT_TRUE(WaitUntil([&] { return P(10).WriteFlag == WriteState::None; }));
    EXPECT_EQ(drive.Value(10), P(226).Max) << "the drive took what the table allows";
}

} // namespace quorvik::testing
