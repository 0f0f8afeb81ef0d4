#include "operations/UndoCommands.h"

#include "compare/Backups.h"
#include "emulator/DriveEmulator.h"
#include "operations/Merge.h"
#include "operations/OperationsFixture.h"
#include "operations/SafeWrites.h"
#include "platform/Waiting.h"
#include "support/SimulatedDrive.h"

#include <gmock/gmock.h>
#include <random>

namespace quorvik::testing
{

namespace
{

constexpr int In1 = Param::DigitalIn1Destination;
constexpr int In2 = In1 + 1;

class UndoCommandsTest : public OperationsTest
{
protected:
    /** Enters a value as the edit dialog does, an input that holds the destination is taken off it. */
    void Edit(int p, std::int32_t rawValue)
    {
        asker.OnEditValue = [&](int, std::int32_t) -> std::optional<std::int32_t> {
            if (table.AttrBit(Attr::Destination, p) && rules.FindDestinationConflict(p, rawValue) != 0) {
                asker.Expect("Overwrite this input?", MsgAnswer::Yes);
                rules.ResolveDestinationConflict(p, rawValue);
            }
            return rawValue;
        };
        rules.EditParameter(table.AccessClass(p), p);
    }
    std::string Caption(Way way) const { return undo.Caption(way).toStdString(); }

    Backups backups{Path("backups")};
    VerifiedWrite writing{table, link, backups};
    SafeWrites writes{table, document, writing, drive, snapshots, guards, asker};
    UndoStack stack{table, document, link, writing};
    UndoCommands undo{table, document, link, stack, snapshots, writes, saving, asker};
};

/** All that an undo is to bring back, as text, a line for each parameter. */
class UndoOfRandomEditsTest : public UndoCommandsTest
{
protected:
    UndoOfRandomEditsTest()
    {
        emulator.TimerEmulateSvx.stop();
        EXPECT_EQ(file.Save(Path("plain.Svx")), QString());
        ParameterTable larger(table);
        larger.Resize(439);
        for (int p = 434; p <= 439; ++p)
            larger.Row(p) = {.Min = 0, .Max = 9, .Attributes = 0, .Preset = 1, .Value = 2, .Name = Path("n")};
        larger.LastParam = 439;
        larger.Row(Param::Reference1).Value = 77;
        Document ofLarger(larger);
        ofLarger.Notes = Path("notes");
        ofLarger.VirtualSettings[3].Destination = Param::Reference1;
        EXPECT_EQ(SettingsFile(larger, ofLarger).Save(Path("larger.Svx")), QString());
    }

    int Below(int bound) { return std::uniform_int_distribution(0, bound - 1)(random); }
    int Writable()
    {
        for (;;)
            if (const int p = Below(table.LastParam + 1); !table.AttrBit(Attr::ReadOnly, p))
                return p;
    }
    std::int32_t ValueFor(int p)
    {
        if (table.AttrBit(Attr::Destination, p))
            return Below(3) == 0 ? 0 : Writable();
        return std::uniform_int_distribution(table[p].Min, std::max(table[p].Min, table[p].Max))(random);
    }
    void MayAsk()
    {
        if (document.HasUnsavedEdits || document.FileModified)
            asker.Expect("Save changes?", MsgAnswer::No);
    }
    void ActAtRandom()
    {
        switch (Below(9)) {
        case 0:
            if (Below(4) == 0) {
                MayAsk();
                commands.New();
            }
            break;
        case 1:
            if (Below(2) == 0) {
                MayAsk();
                asker.ExpectOpen(Path(Below(2) == 0 ? "plain.Svx" : "larger.Svx"));
                commands.Open();
            }
            break;
        case 2: {
            const Intent intent(table, Origin::Compare, QStringLiteral("Copy"));
            std::vector<ParamValue> values;
            for (int i = 0; i < 12; ++i)
                if (const int p = Writable();
                    std::ranges::find(values, p, &ParamValue::param) == values.end())
                    values.push_back({p, ValueFor(p)});
            MergeIntoSet(table, values, {});
            break;
        }
        case 3: {
            const Intent intent(table, {Origin::VirtualOperator, QStringLiteral("Unassign all inputs")});
            for (int p = 0; p <= table.LastParam; ++p)
                if (table.AttrBit(Attr::Destination, p) && table.Value(p) != 0)
                    table.SetParamValue(p, 0, true, false);
            break;
        }
        case 4: {
            const Intent intent(table, Origin::EditDialog, QStringLiteral("Select Drive Model"));
            table.SetValue(Param::DriveModel, 1 + Below(10), ChangeCause::Entered);
            table.RefreshDependentParams(Param::DriveModel);
            break;
        }
        case 5: {
            // A dialog within, behind which the emulator goes on.
            const Intent intent(table, Origin::Mentor, QStringLiteral("Mentor"));
            for (int i = 0; i < 6; ++i) {
                const int p = Writable();
                if (const std::int32_t value = ValueFor(p); table.CanWriteParam(p))
                    table.SetParamValue(p, value, true, i % 2 == 0);
                Tick();
            }
            break;
        }
        default: {
            const int p = Writable();
            if (const std::int32_t value = ValueFor(p); value != table.Value(p))
                Edit(p, value);
        }
        }
    }
    void Tick()
    {
        for (int i = 0; ticks && i < 3; ++i)
            emulator.TimerEmulateSvx_Timer();
    }

    QStringList State() const
    {
        QStringList state{QStringLiteral("%1 %2 %3 %4 %5")
                              .arg(table.UpperBound())
                              .arg(table.LastParam)
                              .arg(table.FileLastParam)
                              .arg(table.PresetTable.UpperBound())
                              .arg(table.WritePending),
                          document.FileName, document.Notes};
        for (const VirtualSetting &setting : document.VirtualSettings)
            state += QString::number(setting.Destination);
        for (int p = 0; p <= table.UpperBound(); ++p) {
            const ParamRecord &record = table[p];
            // With the emulator at work its outputs are its own.
            const bool isOutput = ticks && table.AttrBit(Attr::ReadOnly, p) && p != Param::DriveModel;
            state += QStringLiteral("%1: %2 %3 %4 %5 %6 %7 %8 %9")
                         .arg(p)
                         .arg(isOutput ? 0 : record.Value)
                         .arg(record.Min)
                         .arg(record.Max)
                         .arg(record.Attributes)
                         .arg(record.Preset)
                         .arg(record.WriteFlag)
                         .arg(record.WriteFirst)
                         .arg(record.Name);
        }
        return state;
    }
    /** The first line in which the open set is another one. */
    std::string Difference(const QStringList &wanted) const
    {
        const QStringList state = State();
        for (qsizetype i = 0; i < std::max(state.size(), wanted.size()); ++i)
            if (state.value(i) != wanted.value(i))
                return (state.value(i) + QStringLiteral(" and not ") + wanted.value(i)).toStdString();
        return {};
    }
    int Top() const { return stack.Next(Way::Undo) ? stack.Next(Way::Undo)->stateAfter : 0; }
    void Step(Way way)
    {
        if (stack.Next(way)->IsOtherSet())
            MayAsk();
        EXPECT_TRUE((way == Way::Undo ? undo.Undo() : undo.Redo()).IsDone());
    }

    void UndoAndRedoRandomEdits(unsigned seed)
    {
        random.seed(seed);
        // So that the set begun is another one.
        table.Row(Param::Reference1).Value = 1;
        StartAnew();
        document.BeginAnew();
        document.ClearVirtualSettings();
        Tick();
        std::vector<QStringList> states;
        const int steps = 20 + Below(25);
        while (int(states.size()) < steps) {
            const QStringList before = State();
            const int top = Top();
            ActAtRandom();
            if (Top() != top)
                states.push_back(before);
            if (!states.empty())
                Tick();
        }
        states.push_back(State());
        const auto check = [&](std::size_t at, const char *what) {
            ASSERT_EQ(Difference(states[at]), "")
                << what << " to " << at << " of " << steps << ", seed " << seed;
        };
        for (std::size_t at = states.size() - 1; at-- > 0;) {
            Step(Way::Undo);
            check(at, "undone");
            if (at % 7 == 3) {
                Step(Way::Redo);
                check(at + 1, "done again");
                Step(Way::Undo);
            }
        }
        EXPECT_FALSE(undo.IsPossible(Way::Undo));
        for (std::size_t at = 1; at < states.size(); ++at) {
            Step(Way::Redo);
            check(at, "done again");
        }
        EXPECT_FALSE(undo.IsPossible(Way::Redo));
    }

    DriveEmulator emulator{table};
    std::mt19937 random;
    bool ticks = false;
};

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

TEST_F(UndoOfRandomEditsTest, BringsEveryByteBack)
{
    for (unsigned seed = 1; seed <= 8 && !HasFatalFailure(); ++seed)
        UndoAndRedoRandomEdits(seed);
}

TEST_F(UndoOfRandomEditsTest, BringsBackWhatTheEmulatorHasOverwritten)
{
    ticks = true;
    for (unsigned seed = 100; seed <= 108 && !HasFatalFailure(); ++seed)
        UndoAndRedoRandomEdits(seed);
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
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(simulated.Value(In1), Param::Run);
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
    // Nobody answers there: what was done off line stays.
    Edit(Param::FwdAccelA, 7);
    asker.Expect("");
    EXPECT_FALSE(drive.GoOnLine().IsDone());
    EXPECT_TRUE(undo.Undo().IsDone());
    EXPECT_EQ(table.Value(Param::FwdAccelA), 6);
}

} // namespace

} // namespace quorvik::testing
