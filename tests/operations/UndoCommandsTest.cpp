#include "drive/PseudoTerminal.h"
#include "operations/UndoFixture.h"
#include "platform/Waiting.h"
#include "support/SimulatedDrive.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

namespace
{

constexpr int In1 = Param::DigitalIn1Destination;
constexpr int In2 = In1 + 1;

TEST_F(UndoCommandsTest, SaysWhatGoesNext)
{
    EXPECT_EQ(undo.Explanation(Way::Undo), QStringLiteral("Nothing was done yet."));
    const std::int32_t accel = table.Value(Param::FwdAccelA);
    Edit(Param::FwdAccelA, accel + 25);
    const std::string edited = Caption(Way::Undo);
    EXPECT_THAT(edited, ::testing::MatchesRegex("Undo \\(226\\) Fwd Accel A [0-9.]+ to [0-9.]+ Sec"));
    Edit(In2, table.Value(In1));
    EXPECT_EQ(Caption(Way::Undo), "Undo (2) Digital In 2 Destination 240 to 239 and 1 more");
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(Caption(Way::Redo), "Redo (2) Digital In 2 Destination 240 to 239 and 1 more");
    EXPECT_EQ(Caption(Way::Undo), edited);
    // What operates the machine is no step, and what is done afresh is in the place of what was taken back.
    {
        const Intent slider(table, Origin::VirtualOperator);
        table.SetParamValue(Param::Reference1, 5, true, false);
    }
    EXPECT_EQ(Caption(Way::Undo), edited);
    EXPECT_TRUE(undo.IsPossible(Way::Redo));
    Edit(Param::Reference1, 6);
    EXPECT_FALSE(undo.IsPossible(Way::Redo));
    for (int i = 0; i < 300; ++i)
        Edit(Param::Reference1, i);
    int steps = 0;
    for (; undo.IsPossible(Way::Undo); ++steps)
        undo.Undo();
    EXPECT_EQ(steps, 200);
}

TEST_F(UndoCommandsTest, TheMarkTellsWhetherTheFileHoldsTheSet)
{
    asker.ExpectOpen(SavedSet());
    commands.Open();
    const auto isMarked = [this] { return document.FileModified && document.HasUnsavedEdits; };
    Edit(Param::FwdAccelA, 500);
    undo.Undo();
    EXPECT_FALSE(isMarked());
    undo.Redo();
    EXPECT_TRUE(isMarked());
    saving.Save(0);
    Edit(Param::FwdAccelA, 600);
    undo.Undo();
    EXPECT_FALSE(isMarked());
    undo.Undo();
    EXPECT_TRUE(isMarked()) << "the file holds what was taken back";
    undo.Redo();

    // Another file, and back: it is the former one's set again, which is saved to the former one.
    file.Save(Path("b.Svx"));
    Edit(Param::FwdAccelA, 700);
    asker.ExpectOpen(Path("b.Svx"));
    asker.Expect("Save changes?", MsgAnswer::No);
    commands.Open();
    EXPECT_EQ(Caption(Way::Undo), "Undo Open b.Svx");
    document.Notes = QStringLiteral("typed since");
    undo.Undo();
    EXPECT_EQ(document.FileName, Path("saved.Svx"));
    EXPECT_TRUE(isMarked()) << "what the user let go of is there again";
    const QByteArray other = Content(Path("b.Svx"));
    saving.Save(0);
    EXPECT_EQ(Content(Path("b.Svx")), other);
    undo.Redo();
    EXPECT_EQ(document.FileName, Path("b.Svx"));
    EXPECT_EQ(document.Notes, QStringLiteral("typed since"));
    EXPECT_TRUE(isMarked()) << "the notes are in no file";
    asker.Expect("b.Svx has been modified", MsgAnswer::Cancel);
    EXPECT_EQ(undo.Undo().outcome, Outcome::Cancelled);
    EXPECT_EQ(document.FileName, Path("b.Svx"));
    // What is no step is not taken back, and stays to be saved.
    document.MarkFile(false);
    saving.Save(0);
    {
        const Intent slider(table, Origin::VirtualOperator);
        table.SetParamValue(Param::Reference1, 5, true, false);
    }
    Edit(Param::FwdAccelA, 800);
    undo.Undo();
    EXPECT_TRUE(isMarked());
}

/** On line with a drive that knows its own rules. */
class UndoOnLineTest : public UndoCommandsTest
{
protected:
    UndoOnLineTest()
    {
        link.MSComm1.DeviceOf = [this](int) { return simulated.LinkPath(); };
        table.AddReadInterest(Param::DriveState);
        EXPECT_TRUE(drive.GoOnLine().IsDone());
        EXPECT_TRUE(drive.ReadAll().IsDone());
    }
    ~UndoOnLineTest() override
    {
        document.DriveModified = false;
        drive.GoOffLine(OffLineReason::User);
    }
    void EditAndSend(int p, std::int32_t rawValue)
    {
        Edit(p, rawValue);
        EXPECT_TRUE(Waits([&] { return table[p].WriteFlag == WriteState::None; }));
    }
    static bool Waits(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(10000));
    }
    void SetState(std::int32_t state)
    {
        simulated.Set(Param::DriveState, state);
        EXPECT_TRUE(Waits([&] { return table.Value(Param::DriveState) == state; }));
    }

    SimulatedDrive simulated;
};

TEST_F(UndoOnLineTest, TheDriveHoldsTheOldValueAgain)
{
    const std::int32_t before = table.Value(Param::FwdAccelA);
    EditAndSend(Param::FwdAccelA, before + 5);
    Edit(Param::FwdAccelA, before + 9);
    // That one may still wait to be sent.
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before + 5);
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before);
    EXPECT_TRUE(undo.Redo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before + 5);
    EXPECT_EQ(table.Value(Param::FwdAccelA), before + 5);
    {
        const Intent command(table, Origin::Switch);
        table.SetParamValue(Param::Run, 1, true, false);
    }
    EXPECT_THAT(Caption(Way::Undo), ::testing::HasSubstr("Fwd Accel A")) << "no undo gives a command";
}

TEST_F(UndoOnLineTest, WhatASelectorTookWithItComesBack)
{
    constexpr int open1 = Param::DigitalIn1OpenValue;
    EditAndSend(In1, Param::Reference2);
    EditAndSend(open1, -5000);
    EditAndSend(In1, Param::Run);
    EXPECT_TRUE(Waits([&] { return table.Value(open1) == 0; }));
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(In1), Param::Reference2);
    EXPECT_EQ(simulated.Value(open1), -5000);
    EXPECT_EQ(table.Value(open1), -5000);
}

TEST_F(UndoOnLineTest, WhatTheStateForbidsIsToldAndStays)
{
    EditAndSend(In1, 0);
    const std::string caption = Caption(Way::Undo);
    SetState(1);
    asker.Expect("(1) Digital In 1 Destination can be changed only while the drive is stopped.");
    EXPECT_EQ(undo.Undo().outcome, Outcome::Refused);
    EXPECT_EQ(simulated.Value(In1), 0);
    EXPECT_EQ(Caption(Way::Undo), caption);
    SetState(0);
    for (const MsgAnswer answer : {MsgAnswer::Cancel, MsgAnswer::Yes}) {
        asker.Expect("Where such an input is on, the drive starts at once.", answer);
        undo.Undo();
        EXPECT_EQ(asker.Shown.last().safe, MsgAnswer::Cancel);
        EXPECT_EQ(simulated.Value(In1) == Param::Run, answer == MsgAnswer::Yes);
    }
}

TEST_F(UndoOnLineTest, WhatTheDriveRefusesStays)
{
    const std::int32_t before = table.Value(Param::FwdAccelA);
    EditAndSend(Param::FwdAccelA, before + 5);
    simulated.Send(QStringLiteral("fault refuse"));
    asker.Expect("Could not write value");
    EXPECT_EQ(undo.Undo().outcome, Outcome::Refused);
    EXPECT_EQ(table.Value(Param::FwdAccelA), before + 5) << "and the table holds what the drive does";
    asker.Expect("Could not write value");
    EditAndSend(Param::RevAccelA, 1);
    EXPECT_THAT(Caption(Way::Undo), ::testing::HasSubstr("Fwd Accel A")) << "nothing was done by that";
    simulated.Send(QStringLiteral("faults off"));
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before);
}

TEST_F(UndoOnLineTest, AnothersChangeIsToldBeforeItIsOverwritten)
{
    const std::int32_t before = table.Value(Param::FwdAccelA);
    EditAndSend(Param::FwdAccelA, before + 5);
    simulated.Set(Param::FwdAccelA, before + 50);
    asker.Expect("(226) Fwd Accel A: left at ", MsgAnswer::Cancel);
    EXPECT_EQ(undo.Undo().outcome, Outcome::Cancelled);
    EXPECT_EQ(asker.Shown.last().safe, MsgAnswer::Cancel);
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before + 50);
    asker.Expect("Fwd Accel A", MsgAnswer::Yes);
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), before);
    // It is as it would be done again: nothing to ask, and nothing to write.
    simulated.Set(Param::FwdAccelA, before + 5);
    const std::int64_t taken = simulated.Stat(QStringLiteral("writes"));
    EXPECT_TRUE(undo.Redo().IsDone());
    EXPECT_EQ(simulated.Stat(QStringLiteral("writes")), taken);
    EXPECT_EQ(table.Value(Param::FwdAccelA), before + 5);
}

TEST_F(UndoOnLineTest, AVerifiedWriteGoesBackVerified)
{
    guards.Asking = false;
    // The table has not seen this.
    simulated.Set(Param::FwdAccelA, 123);
    const ParameterSet set = ParameterSet::Of(table, {});
    EXPECT_TRUE(writes.Write({{Param::FwdAccelA, 200}, {Param::RevAccelA, 300}}, set).IsDone());
    EXPECT_EQ(Caption(Way::Undo), "Undo Write and verify, 2 values");
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::FwdAccelA), 123);
    EXPECT_EQ(writes.Report().Count(Arrival::Verified), 2);
    EXPECT_TRUE(undo.Redo().IsDone());
    EXPECT_EQ(simulated.Value(Param::RevAccelA), 300);
}

TEST_F(UndoOnLineTest, AFileThatWasSentGoesBackAsAWhole)
{
    guards.Asking = false;
    table.Row(Param::Reference2).Value = 4321;
    ASSERT_EQ(file.Save(Path("sent.Svx")), QString());
    table.Row(Param::Reference2).Value = 0;
    simulated.Send(QStringLiteral("fault refuse:%1").arg(int(Param::RevAccelB)));
    table.Row(Param::RevAccelB).Value = 7;
    asker.Expect("Could not write value");
    commands.LoadAndAssignSettingsFromFile(Path("sent.Svx"));
    EXPECT_EQ(simulated.Value(Param::Reference2), 4321);
    EXPECT_EQ(Caption(Way::Undo), "Undo Open sent.Svx");
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(Param::Reference2), 0);
    EXPECT_EQ(writes.Report().rows.size(), 1U) << "and not what the drive had refused";
    EXPECT_EQ(document.FileName, Document::Unnamed());
    EXPECT_TRUE(document.HasUnsavedEdits);
}

TEST_F(UndoOnLineTest, AReadingAndTheLinkEndIt)
{
    EditAndSend(Param::FwdAccelA, 5);
    drive.ReadAll();
    EXPECT_EQ(undo.Explanation(Way::Undo),
              QStringLiteral("The drive was read: what was done before cannot be taken back."));
    EditAndSend(Param::FwdAccelA, 6);
    simulated.Kill();
    asker.Expect("Drive not Responding!");
    asker.Expect("have not been saved");
    EXPECT_EQ(undo.Undo().outcome, Outcome::LinkLost);
    EXPECT_THAT(undo.Explanation(Way::Undo).toStdString(),
                ::testing::StartsWith("The link to the drive was closed"));
    // Nobody answers there: what was done off line stays. The place of the killed one may be another's by
    // now.
    drive::PseudoTerminal silent;
    ASSERT_EQ(silent.Open(), QString());
    link.MSComm1.DeviceOf = [&silent](int) { return silent.DevicePath(); };
    Edit(Param::FwdAccelA, 7);
    asker.Expect("Drive not Responding!");
    asker.Expect("have not been saved");
    EXPECT_FALSE(drive.GoOnLine().IsDone());
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(table.Value(Param::FwdAccelA), 6);
}

} // namespace

} // namespace quorvik::testing
