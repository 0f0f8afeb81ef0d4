#include "operations/SafeWrites.h"

#include "compare/Backups.h"
#include "operations/Guards.h"
#include "operations/OperationsFixture.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace quorvik::testing
{

/** What is asked around a verified write, and what it leaves behind. */
class SafeWritesTest : public OperationsTest
{
protected:
    SafeWritesTest()
    {
        for (int p = 0; p <= table.LastParam; ++p)
            peer.Values[p] = table.PresetTable[p].Value;
        peer.Answer = [this](const QByteArray &frame) {
            return frame == silent ? QByteArray() : frame == refused ? Nak : peer.DriveAnswer(frame);
        };
    }
    ~SafeWritesTest() override
    {
        document.DriveModified = false;
        drive.GoOffLine(OffLineReason::User);
    }

    Backups backups{Path("backups")};
    VerifiedWrite writing{table, link, backups};
    SafeWrites writes{table, document, writing, drive, snapshots, guards, asker};
    QByteArray silent;
    QByteArray refused;
};

TEST_F(SafeWritesTest, TheOpenSetArrivesAsItWasBeforeTheLinkCameUp)
{
    table.AddReadInterest(Param::Reference1);
    table.SetParamValue(Param::Reference1, 4321, true, false);
    table.SetParamValue(Param::LogicSelect, 1, true, false);
    refused = WriteRequest(Param::LogicSelect, 1);
    document.MarkFile(false);
    const QSignalSpy reported(&writes, &SafeWrites::Reported);
    const OperationResult result = writes.WriteOpenSet();
    EXPECT_EQ(result.outcome, Outcome::Partial);
    EXPECT_EQ(result.missing, std::vector({int(Param::LogicSelect)}));
    EXPECT_EQ(peer.Values[Param::Reference1], 4321);
    EXPECT_EQ(reported.size(), 1);
    EXPECT_TRUE(link.PortOpen() && document.DriveModified);
    EXPECT_EQ(table.Value(Param::LogicSelect), 0) << "the table shows what the drive keeps";
    EXPECT_TRUE(document.HasUnsavedEdits) << "and so is another set than before";
    for (int p = 0; p <= table.LastParam; ++p)
        EXPECT_EQ(table[p].WriteFlag, WriteState::None) << p;
    for (const WrittenRow &row : writes.Report().rows)
        EXPECT_TRUE(row.arrival == Arrival::Verified ||
                    WriteReport::ArrivalText(row, table) ==
                        QStringLiteral("Refused, changeable only at stop; the drive keeps 3 Wire"));
    EXPECT_TRUE(writes.Report().Summary(table).endsWith(QStringLiteral(
        " written and verified, 1 refused: (245) Logic Select, changeable only at stop, 0 differ")));
    refused.clear();
    EXPECT_TRUE(writes.RetryRefused().IsDone());
    EXPECT_EQ(peer.Values[Param::LogicSelect], 1);
}

TEST_F(SafeWritesTest, NothingLeavesWhereTheGuardsSayNo)
{
    peer.Values[Param::DriveState] = 1;
    asker.Expect("the drive is not stopped");
    EXPECT_EQ(writes.WriteOpenSet().outcome, Outcome::Refused);
    // A few values may go to a drive that runs, a command among them only with the user's word.
    asker.Expect("(239)", MsgAnswer::Cancel);
    const ParameterSet set = ParameterSet::Of(table, {});
    EXPECT_EQ(writes.Write({{Param::Reference1, 7}, {Param::Run, 1}}, set).outcome, Outcome::Cancelled);
    EXPECT_TRUE(backups.List().isEmpty());
    asker.Expect("(239)", MsgAnswer::No);
    EXPECT_TRUE(writes.Write({{Param::Reference1, 7}, {Param::Run, 1}}, set).IsDone());
    EXPECT_EQ(peer.Values[Param::Reference1], 7);
    EXPECT_EQ(peer.Values[Param::Run], 0);
}

TEST_F(SafeWritesTest, ALostLineWarnsAndIsResumedWithTheSameDriveOnly)
{
    const ParameterSet set = ParameterSet::Of(table, {});
    ASSERT_TRUE(drive.GoOnLine().IsDone());
    silent = WriteRequest(Param::Reference2, 7);
    asker.Expect("Drive not Responding!");
    asker.Expect("Drive parameters have not been saved!");
    EXPECT_EQ(writes.Write({{Param::Reference1, 7}, {Param::Reference2, 7}}, set).outcome, Outcome::LinkLost);
    silent.clear();

    peer.Values[Param::DriveModel] = 3;
    asker.Expect("SVR060-000");
    EXPECT_EQ(writes.Resume().outcome, Outcome::Refused);
    peer.Values[Param::DriveModel] = set.Value(Param::DriveModel);
    peer.Values[Param::FwdAccelA] = 99;
    asker.Expect("It may be another one", MsgAnswer::Cancel);
    EXPECT_EQ(writes.Resume().outcome, Outcome::Cancelled);
    EXPECT_EQ(peer.Values[Param::Reference2], set.Value(Param::Reference2));
    asker.Expect("It may be another one", MsgAnswer::Yes);
    EXPECT_TRUE(writes.Resume().IsDone());
    EXPECT_EQ(peer.Values[Param::Reference2], 7);
    EXPECT_EQ(backups.List().size(), 1);
}

TEST_F(SafeWritesTest, AWholeWriteSaysWhatArrived)
{
    QStringList sentences;
    QObject::connect(&drive, &DriveOperations::WholeWriteEnded,
                     [&](const QString &sentence) { sentences.append(sentence); });
    refused = WriteRequest(Param::JogDelay, table.Value(Param::JogDelay));
    asker.Expect("Could not write value");
    asker.Expect("Save Changes in Drive?", MsgAnswer::No);
    commands.WriteToDrive();
    ASSERT_EQ(sentences.size(), 1);
    EXPECT_THAT(sentences[0].toStdString(),
                ::testing::MatchesRegex("2[0-9]+ written, 1 refused: \\(246\\) Jog Delay\\..*"));
}

} // namespace quorvik::testing
