#include "emulator/DriveEmulator.h"
#include "operations/Merge.h"
#include "operations/UndoFixture.h"

#include <random>

namespace quorvik::testing
{

/** Any order of edits and the ways of a set through files, taken back and done again. */
class UndoRandomTest : public UndoCommandsTest
{
protected:
    UndoRandomTest()
    {
        emulator.TimerEmulateSvx.stop();
        EXPECT_EQ(file.Save(Path("plain.Svx")), QString());
        // Of a larger table, with notes and a slider.
        ParameterTable larger(table);
        larger.Resize(larger.LastParam = 439);
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
        const int p = Writable();
        const std::int32_t rawValue = ValueFor(p);
        const int kind = Below(12);
        if (kind == 0) {
            MayAsk();
            commands.New();
        } else if (kind == 1) {
            MayAsk();
            asker.ExpectOpen(Path(Below(2) == 0 ? "plain.Svx" : "larger.Svx"));
            commands.Open();
        } else if (kind == 2) {
            const Intent intent(table, Origin::Compare, QStringLiteral("Copy"));
            std::map<int, std::int32_t> values;
            for (int i = 0; i < 12; ++i)
                values[p + i] = p + i <= table.LastParam ? ValueFor(p + i) : 0;
            std::vector<ParamValue> list;
            for (const auto &[number, raw] : values)
                list.push_back({number, raw});
            MergeIntoSet(table, list, {});
        } else if (kind == 3) {
            const Intent intent(table, {Origin::VirtualOperator, QStringLiteral("Unassign all inputs")});
            for (int i = 0; i <= table.LastParam; ++i)
                if (table.AttrBit(Attr::Destination, i) && table.Value(i) != 0)
                    table.SetParamValue(i, 0, true, false);
        } else if (kind == 4) {
            const Intent intent(table, Origin::EditDialog, QStringLiteral("Select Drive Model"));
            table.SetValue(Param::DriveModel, 1 + Below(10), ChangeCause::Entered);
            table.RefreshDependentParams(Param::DriveModel);
        } else if (kind == 5) {
            // A dialog within, behind which the emulator goes on.
            const Intent intent(table, Origin::Mentor, QStringLiteral("Mentor"));
            for (int i = 0; i < 6; ++i, Tick())
                if (const int other = Writable(); table.CanWriteParam(other))
                    table.SetParamValue(other, ValueFor(other), true, i % 2 == 0);
        } else if (rawValue != table.Value(p)) {
            Edit(p, rawValue);
        }
    }
    void Tick()
    {
        for (int i = 0; ticks && i < 3; ++i)
            emulator.TimerEmulateSvx_Timer();
    }

    /** All that comes back, as lines. */
    QStringList State() const
    {
        QStringList lines{document.FileName, document.Notes,
                          QString::number(document.VirtualSettings[3].Destination)};
        for (const int number : {table.UpperBound(), int(table.LastParam), int(table.FileLastParam),
                                 table.PresetTable.UpperBound(), int(table.WritePending)})
            lines += QString::number(number);
        for (int p = 0; p <= table.UpperBound(); ++p) {
            const ParamRecord &record = table[p];
            // With the emulator at work its outputs are its own.
            const bool isOutput = ticks && table.AttrBit(Attr::ReadOnly, p) && p != Param::DriveModel;
            QString line = record.Name;
            for (const std::int64_t field : std::initializer_list<std::int64_t>{
                     p, isOutput ? 0 : record.Value, record.Min, record.Max, record.Attributes, record.Preset,
                     record.WriteFlag, record.WriteFirst})
                line += u' ' + QString::number(field);
            lines += line;
        }
        return lines;
    }
    void Step(Way way, const QStringList &wanted)
    {
        if (stack.Next(way)->IsOtherSet())
            MayAsk();
        EXPECT_TRUE((way == Way::Undo ? undo.Undo() : undo.Redo()).IsDone());
        const QStringList state = State();
        for (qsizetype i = 0; i < std::max(state.size(), wanted.size()); ++i)
            ASSERT_EQ(state.value(i), wanted.value(i)) << (way == Way::Undo ? "undone" : "done again");
    }
    void UndoAndRedo(unsigned seed)
    {
        SCOPED_TRACE(seed);
        random.seed(seed);
        // So that the set begun is another one.
        table.Row(Param::Reference1).Value = 1;
        StartAnew();
        document.BeginAnew();
        document.ClearVirtualSettings();
        Tick();
        std::vector<QStringList> states;
        while (states.size() < 30) {
            QStringList before = State();
            const auto top = [this] { return stack.Next(Way::Undo) ? stack.Next(Way::Undo)->stateAfter : 0; };
            const int topBefore = top();
            ActAtRandom();
            if (top() != topBefore)
                states.push_back(std::move(before));
            if (!states.empty())
                Tick();
        }
        states.push_back(State());
        for (std::size_t at = states.size() - 1; at-- > 0 && !HasFatalFailure();) {
            Step(Way::Undo, states[at]);
            if (at % 7 == 3) {
                Step(Way::Redo, states[at + 1]);
                Step(Way::Undo, states[at]);
            }
        }
        EXPECT_FALSE(undo.IsPossible(Way::Undo));
        for (std::size_t at = 1; at < states.size() && !HasFatalFailure(); ++at)
            Step(Way::Redo, states[at]);
        EXPECT_FALSE(undo.IsPossible(Way::Redo));
    }

    DriveEmulator emulator{table};
    std::mt19937 random;
    bool ticks = false;
};

TEST_F(UndoRandomTest, BringsEveryByteBack)
{
    for (unsigned seed = 1; seed <= 4 && !HasFatalFailure(); ++seed)
        UndoAndRedo(seed);
}

TEST_F(UndoRandomTest, BringsBackWhatTheEmulatorHasOverwritten)
{
    ticks = true;
    for (unsigned seed = 100; seed <= 103 && !HasFatalFailure(); ++seed)
        UndoAndRedo(seed);
}

} // namespace quorvik::testing
