#include "operations/Merge.h"
#include "operations/SaveCommands.h"
#include "settings/SetFixture.h"
#include "support/ScriptedAsker.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

namespace
{

using Values = std::vector<ParamValue>;

class MergeTest : public SetTest
{
protected:
    /** What is refused, as "number reason" each. */
    QStringList Merge(const Values &values, const ParameterSet &from)
    {
        QStringList refused;
        for (const RefusedRow &row : MergeIntoSet(table, values, from))
            refused += QString::number(row.value.param) + u' ' + row.reason;
        return refused;
    }
    /** Of a set that says nothing of its units. */
    QStringList Merge(const Values &values) { return Merge(values, ParameterSet{}); }
    /** All that another table holds otherwise and can be written. */
    Values DifferencesTo(const ParameterTable &other) const
    {
        Values values;
        for (int p = 0; p <= table.LastParam; ++p)
            if (other.Value(p) != table.Value(p) && !table.AttrBit(Attr::ReadOnly, p))
                values.push_back({p, other.Value(p)});
        return values;
    }
    void Set(const Values &values)
    {
        for (const ParamValue &value : values)
            table.SetParamValue(value.param, value.rawValue, false, true);
    }

    ScriptedAsker asker;
};

constexpr int In1 = Param::DigitalIn1Destination;
constexpr int In2 = In1 + 1;
constexpr int In3 = In1 + 2;
constexpr int Open1 = Param::DigitalIn1OpenValue;

TEST_F(MergeTest, TakesWhatAnEntryWouldAndSaysWhyNot)
{
    struct Case {
        const char *what;
        Values before;
        Values merged;
        QStringList refused; ///< texts in the reasons, with the number before
        Values after;
    };
    const auto told = [](const char *text) { return QString::fromLatin1(text); };
    const Case cases[] = {
        {"limits",
         {},
         {{218, 10000}, {219, 20001}},
         {told("219 lies outside its limits here")},
         {{218, 10000}, {219, 0}}},
        {"read only",
         {},
         {{Param::DriveModel, 6}, {433, 1}},
         {told("411 is read only. Tools"), told("433 is read only.")},
         {}},
        {"not in the table", {}, {{434, 1}, {-1, 1}}, {told("434 is not in"), told("-1 is not in")}, {}},
        {"memory command",
         {},
         {{Param::SaveParameters, 1}},
         {told("406 is a command")},
         {{Param::SaveParameters, 0}}},
        {"driven", {}, {{217, 5}}, {told("217 is set by (23) Analog In 1 Destination.")}, {}},
        {"running",
         {{Param::DriveState, 1}},
         {{In1, 0}, {218, 7}},
         {told("1 can be changed only while")},
         {{218, 7}}},
        {"a held destination", {}, {{In2, 239}}, {told("2 cannot be set to 239, which (1)")}, {{In2, 240}}},
        {"no destination is shared", {}, {{In1, 0}, {In2, 0}}, {}, {{In1, 0}, {In2, 0}}},
        {"a holder that moves away", {}, {{In1, 240}, {In2, 0}}, {}, {{In1, 240}, {In2, 0}}},
        {"two change places", {}, {{In1, 240}, {In2, 239}}, {}, {{In1, 240}, {In2, 239}}},
        {"three in a circle",
         {},
         {{In1, 240}, {In2, 241}, {In3, 239}},
         {},
         {{In1, 240}, {In2, 241}, {In3, 239}}},
        {"a circle that one of them breaks",
         {},
         {{In1, 240}, {In2, 999}},
         {told("1 cannot be set to 240"), told("2 lies outside")},
         {{In1, 239}, {In2, 240}}},
        {"a circle in which two want one place: none is left without",
         {},
         {{In1 + 3, 241}, {In3, 239}, {In1, 240}, {In2, 239}},
         {told("4 cannot"), told("3 cannot"), told("1 cannot"), told("2 cannot")},
         {{In1, 239}, {In2, 240}, {In3, 241}, {In1 + 3, 222}}},
        {"two for one destination",
         {},
         {{In1, 218}, {In2, 218}},
         {told("2 cannot be set to 218")},
         {{In1, 218}}},
        {"freed by its input", {}, {{217, 5}, {23, 0}}, {}, {{217, 5}, {23, 0}}},
        {"a value before the input that takes it over",
         {},
         {{In1, 219}, {219, 5}},
         {},
         {{In1, 219}, {219, 5}}},
        {"within the limits that its input gives it",
         {},
         {{Open1, 5000}, {In1, 219}},
         {},
         {{Open1, 5000}, {In1, 219}}},
        {"limits that come from what has limits of its own",
         {{27, 28}, {In1, 52}},
         {{Open1, 5000}, {27, 219}},
         {},
         {{Open1, 5000}}},
        {"and not beyond", {}, {{Open1, 20001}, {In1, 219}}, {told("8 lies outside")}, {{In1, 219}}},
        {"polarity before calibration", {{28, 0}}, {{38, -2000}, {28, 1}}, {}, {{28, 1}, {38, -2000}}},
        {"a relay's source, which alone triggers nothing",
         {{71, 218}, {74, 1}, {77, 5}},
         {{77, 1}, {71, 239}, {80, 2}},
         {told("80 lies outside")},
         {{71, 239}, {77, 1}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        StartAnew();
        Set(c.before);
        const QStringList refused = Merge(c.merged);
        ASSERT_EQ(refused.size(), c.refused.size()) << refused.join(u'\n').toStdString();
        for (qsizetype i = 0; i < refused.size(); ++i)
            EXPECT_TRUE(refused[i].contains(c.refused[i])) << refused[i].toStdString();
        for (const ParamValue &value : c.after)
            EXPECT_EQ(table.Value(value.param), value.rawValue) << value.param;
    }
}

TEST_F(MergeTest, AWholeSetIsTakenWhateverTheOrderOfItsRows)
{
    ParameterTable other(table);
    // Inputs moved in circles and onto each other's old targets, and what hangs on them within the new limits
    // only.
    for (const ParamValue &value :
         Values{{In1, 0},    {In2, 0},   {In3, 0},           {23, 0},   {In1, 240}, {In2, 219}, {In3, 239},
                {23, 221},   {Open1, 1}, {Open1 + 1, -9999}, {28, 0},   {38, 4},    {63, 218},  {66, -300},
                {69, 218},   {72, 1},    {75, 9000},         {71, 219}, {74, 1},    {77, 8000}, {89, 219},
                {92, -7000}, {217, 123}, {215, 0},           {240, 1}})
        other.SetParamValue(value.param, value.rawValue, true, true);
    Values values = DifferencesTo(other);
    ASSERT_GT(values.size(), 18U);
    const ParameterSet from = ParameterSet::Of(other, {});
    for (int round = 0; round < 20; ++round) {
        StartAnew();
        std::ranges::rotate(values, values.begin() + 1);
        EXPECT_EQ(Merge(values, from).join(u'\n').toStdString(), "");
        EXPECT_TRUE(DifferencesTo(other).empty());
        for (int p = 0; p <= table.LastParam; ++p)
            EXPECT_EQ(table[p].Max, other[p].Max) << p;
    }
}

TEST_F(MergeTest, AValueInAnotherUnitIsNotTakenWithoutWhatMakesTheUnit)
{
    ParameterTable other(table);
    other.SetParamValue(In1, 219, true, true);
    other.SetParamValue(Open1, 1, true, true);
    const ParameterSet from = ParameterSet::Of(other, {});
    table.SetParamValue(In1, 0, true, true);
    EXPECT_EQ(
        Merge({{Open1, 1}}, from),
        QStringList{QStringLiteral("8 has another unit here. Copy (1) Digital In 1 Destination, too.")});
    EXPECT_EQ(Merge({{Open1, 1}, {In1, 219}}, from), QStringList());
}

TEST_F(MergeTest, OnLineNoCopyStartsAMotor)
{
    const Values commands{{Param::Run, 1}, {Param::Stop, 0}, {Param::Jog, 1}, {Param::ClearFault, 1}};
    Set({{In1, 0}, {In2, 0}, {In3, 0}, {Param::Stop, 1}});
    table.SetPortOpen(true);
    EXPECT_EQ(Merge(commands).size(), 4);
    EXPECT_EQ(Merge({{In1, 218}}), QStringList());
    EXPECT_EQ(table[Open1].Max, table[218].Max) << "what hangs on it follows at once";
    table.SetPortOpen(false);
    EXPECT_EQ(Merge(commands), QStringList());
}

TEST_F(MergeTest, AFileKeepsWhatIsNotCopied)
{
    SaveCommands saving(document, asker, file, Path("program"));
    QDir().mkpath(Path("program"));
    const QString presets = Path("program/presets.FIL");
    document.Notes = QStringLiteral("pump");
    Set({{218, 11}});
    table.Row(Param::DriveState).Value = 1;
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    ASSERT_EQ(file.Save(presets), QString());
    const QByteArray before = Content(presets);
    document.Notes = QStringLiteral("of the open set");
    Set({{218, 99}});
    const ParameterSet from = ParameterSet::Of(table, {});

    const FileMerge merge =
        MergeIntoFile(Path("a.Svx"), {{219, 22}, {In1, 0}, {433, 1}}, from, table, saving);
    EXPECT_EQ(merge.failure, QString());
    ASSERT_EQ(merge.refused.size(), 1U);
    EXPECT_EQ(merge.refused[0].value.param, 433);
    EXPECT_EQ(table.Value(219), 0);
    EXPECT_FALSE(document.FileModified);
    EXPECT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_THAT(
        (std::vector{table.Value(218), table.Value(219), table.Value(In1), table.Value(Param::DriveState)}),
        ::testing::ElementsAre(11, 22, 0, 1));
    EXPECT_EQ(document.Notes, QStringLiteral("pump"));

    const QByteArray saved = Content(Path("a.Svx"));
    EXPECT_EQ(MergeIntoFile(Path("a.Svx"), {{433, 1}}, from, table, saving).refused.size(), 1U);
    EXPECT_EQ(Content(Path("a.Svx")), saved) << "nothing to save";
    EXPECT_FALSE(MergeIntoFile(presets, {{218, 1}}, from, table, saving).failure.isEmpty());
    EXPECT_EQ(Content(presets), before);
    EXPECT_FALSE(MergeIntoFile(Path("none.Svx"), {{218, 1}}, from, table, saving).failure.isEmpty());
}

} // namespace

} // namespace quorvik::testing
