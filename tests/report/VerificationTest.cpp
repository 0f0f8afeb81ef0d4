#include "ReportFixture.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(ReportTest, WhatWasNotReadIsNotShownAsKnown)
{
    // What a file or the emulator has put there is no drive's.
    engines.table.SetValue(Param::OperatingHours, 1234, ChangeCause::File);
    engines.table.SetValue(Param::FaultLog1Faults, 4, ChangeCause::File);
    const CommissioningReport offLine = Report();
    EXPECT_EQ(offLine.verification, Verification::NotCompared);
    EXPECT_EQ(RowOf(offLine.identity, QStringLiteral("Operating hours")), "Operating hours|not read");
    EXPECT_TRUE(offLine.faults.rows.isEmpty());
    EXPECT_FALSE(offLine.rawValues.contains(Param::OperatingHours));
    EXPECT_TRUE(offLine.rawValues.contains(Param::FwdAccelA));

    // On line, but nothing read: neither a setting of the drive's nor who it is.
    drive = std::make_unique<SimulatedDrive>();
    ASSERT_TRUE(engines.drive.GoOnLine().IsDone());
    const CommissioningReport unread = Report(NotVerified({}));
    EXPECT_EQ(RowOf(unread.motor, QStringLiteral("123")), "123|Nameplate Motor I|not read");
    EXPECT_THAT(unread.settings.remark.toStdString(), HasSubstr("Not read, so not listed"));
    EXPECT_FALSE(unread.rawValues.contains(Param::FwdAccelA));
    EXPECT_EQ(RowOf(unread.faults, QStringLiteral("Log 1")), "Log 1|not read|");

    drive->Set(Param::OperatingHours, 77);
    ASSERT_TRUE(engines.drive.ReadAll().IsDone());
    const CommissioningReport read = Report(NotVerified({}));
    EXPECT_THAT(RowOf(read.identity, QStringLiteral("Operating hours")), HasSubstr("|77"));
    EXPECT_TRUE(read.rawValues.contains(Param::FwdAccelA));

    // What the drive told before the line broke is not of now.
    asker.Expect("not Responding");
    drive->Kill();
    engines.snapshots.ReadFresh({Param::OperatingHours});
    PumpWhile([this] { return engines.table.PortOpen(); }, QDeadlineTimer(20000));
    const CommissioningReport lost = Report();
    EXPECT_EQ(lost.verification, Verification::NotCompared);
    EXPECT_THAT(RowOf(lost.identity, QStringLiteral("Operating hours")), HasSubstr("77 (last seen"));
}

TEST_F(ReportTest, VerificationTellsWhatTheDriveHoldsNow)
{
    ReadDrive();
    CommissioningReport report = Report();
    EXPECT_EQ(report.verification, Verification::Same) << report.verificationText.toStdString();

    // A file whose set is another one counts, too, and so does a change behind the program's back.
    ASSERT_EQ(engines.file.Save(Path("press.Svx")), QString());
    engines.document.BecomeSaved(Path("press.Svx"));
    EXPECT_EQ(Report().verification, Verification::Same);
    drive->Set(Param::FwdAccelA, 75);
    report = Report();
    EXPECT_EQ(report.verification, Verification::Differs);
    EXPECT_EQ(
        report.differences.rows,
        (QList<QStringList>{{QStringLiteral("226"), QStringLiteral("Fwd Accel A"), QStringLiteral("5.0 Sec"),
                             QStringLiteral("7.5 Sec"), QStringLiteral("5.0 Sec")}}));
    EXPECT_EQ(engines.table.Value(Param::FwdAccelA), 50) << "the open set stays as it is";
    EXPECT_THAT(report.settings.remark.toStdString(), HasSubstr("another value of: (226)"));
    ASSERT_TRUE(engines.drive.ReadAll().IsDone());
    report = Report();
    EXPECT_EQ(report.verification, Verification::Differs);
    EXPECT_THAT(report.verificationText.toStdString(), HasSubstr("file press.Svx was compared"));
    EXPECT_EQ(RowOf(report.settings, QStringLiteral("226")), "226|Fwd Accel A|5.0 Sec|7.5 Sec");

    // A file that cannot be read leaves it open.
    drive->Set(Param::FwdAccelA, 50);
    ASSERT_TRUE(engines.drive.ReadAll().IsDone());
    ASSERT_TRUE(QFile::remove(Path("press.Svx")));
    report = Report();
    EXPECT_EQ(report.verification, Verification::NotCompared);
    EXPECT_THAT(report.verificationText.toStdString(), HasSubstr("The open file was not compared"));
}

TEST_F(ReportTest, AValueThatAnInputSetsIsNoDifference)
{
    ReadDrive();
    ParameterSet set = ParameterSet::Of(engines.table, QStringLiteral("open set"));
    ParameterSet other = set;
    set.records[Param::AnalogIn1Destination].Value = Param::Reference1;
    other.records[Param::AnalogIn1Destination].Value = Param::Reference1;
    other.records[Param::Reference1].Value += 12;
    const QDateTime now = QDateTime::currentDateTime();
    const DriveVerification driven = VerifySet(set, other, now);
    EXPECT_EQ(driven.verification, Verification::Same) << driven.text.toStdString();
    EXPECT_THAT(driven.text.toStdString(), HasSubstr("inputs set"));
    // What could not be read is neither the same nor another one.
    other.known[Param::FwdAccelA] = false;
    const DriveVerification partial = VerifySet(set, other, now);
    EXPECT_EQ(partial.verification, Verification::NotCompared);
    EXPECT_THAT(partial.text.toStdString(), Not(HasSubstr("all ")));
    ASSERT_EQ(partial.differences.rows.size(), 1);
    EXPECT_EQ(partial.differences.rows[0].last(), QStringLiteral("not read"));
}

TEST_F(ReportTest, ALostLinkComparesNothing)
{
    ReadDrive();
    drive->Send(QStringLiteral("fault drop"));
    asker.Expect("not Responding");
    const CommissioningReport report = Report();
    EXPECT_EQ(report.verification, Verification::NotCompared);
    EXPECT_THAT(report.verificationText.toStdString(), HasSubstr("lost while it was read"));
}

} // namespace quorvik::testing
