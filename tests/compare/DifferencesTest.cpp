#include "compare/CompareReport.h"
#include "settings/SetFixture.h"
#include "support/Name.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

namespace
{

/** Two or three sets of the factory table, shaped by a test. */
class DifferencesTest : public SetTest
{
protected:
    ParameterSet Factory(const Name &name) const { return ParameterSet::FactoryOf(table, name); }
    static ParamRecord &At(ParameterSet &set, int p) { return set.records[p]; }
    static void Forget(ParameterSet &set, int p) { set.known[std::size_t(p)] = false; }
    static std::vector<DifferenceRow> Compared(std::initializer_list<const ParameterSet *> sets)
    {
        return Compare({sets.begin(), sets.size()}, {QStringLiteral("Block 0")});
    }
    static QStringList Mismatched(std::initializer_list<const ParameterSet *> sets)
    {
        return Mismatches({sets.begin(), sets.size()});
    }
    /** The numbers of the rows that a filter shows. */
    static std::vector<int> Shown(const DifferenceFilter &filter, const std::vector<DifferenceRow> &rows)
    {
        std::vector<int> numbers;
        for (const DifferenceRow &row : rows)
            if (filter.Shows(row))
                numbers.push_back(row.param);
        return numbers;
    }

    ParameterSet first = Factory("first");
    ParameterSet second = Factory("second");
};

TEST_F(DifferencesTest, RawValuesDecideAndEachSideShowsItsOwnUnit)
{
    struct Case {
        int param;
        std::int32_t rawFirst;
        std::int32_t rawSecond;
        std::int32_t attributesSecond; ///< 0 as they are
        const char *texts[3];          ///< first, second, difference
    };
    const Case cases[] = {
        {Param::Reference1, 1000, 1500, 0, {"10.00 %", "15.00 %", "+5.00 %"}},
        {Param::Reference1, 1500, 1000, 0, {"15.00 %", "10.00 %", "-5.00 %"}},
        {Param::Reference1, -5, -5, 0, {"-0.05 %", "-0.05 %", ""}},
        // The same number in other units is the same; another one has no difference.
        {Param::Reference1, 7, 7, 32, {"0.07 %", "7 %", ""}},
        {Param::Reference1, 7, 8, 32, {"0.07 %", "8 %", ""}},
        {Param::Reference1, INT32_MIN, INT32_MAX, 0, {"-21474836.48 %", "21474836.47 %", ""}},
        {Param::StopMode, 0, 1, 0, {"Ramp", "Quick", ""}},
        {Param::DigitalIn1Destination, 239, 240, 0, {"239", "240", ""}},
        // What a damaged file may hold.
        {Param::StopMode, 9, -1, 0, {"9", "-1", ""}},
        {Param::DriveModel, 5, 77, 0, {"SVR100-000", "77", ""}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.texts[1]);
        At(first, c.param).Value = c.rawFirst;
        At(second, c.param).Value = c.rawSecond;
        const std::int32_t attributes =
            std::exchange(At(second, c.param).Attributes,
                          c.attributesSecond ? c.attributesSecond : At(second, c.param).Attributes);
        const DifferenceRow row = Compared({&first, &second})[std::size_t(c.param)];
        EXPECT_EQ(row.differs, c.rawFirst != c.rawSecond);
        EXPECT_FALSE(row.isIncomplete);
        EXPECT_EQ(row.sides[0].text.toStdString(), c.texts[0]);
        EXPECT_EQ(row.sides[1].text.toStdString(), c.texts[1]);
        EXPECT_EQ(row.differences[1].toStdString(), c.texts[2]);
        At(second, c.param).Attributes = attributes;
    }
}

TEST_F(DifferencesTest, WhatIsNotKnownIsNeitherShownNorTheSame)
{
    ParameterSet third = Factory("third");
    At(third, Param::Reference1).Value = 500;
    At(second, Param::Reference1).Value = 0;
    Forget(second, Param::Reference1);
    second.known.resize(Param::DriveState);
    const ParameterSet unread{.name = QStringLiteral("drive"), .records = {}, .known = {}};

    const std::vector<DifferenceRow> rows = Compared({&first, &second, &third});
    const DifferenceRow &row = rows[Param::Reference1];
    EXPECT_EQ(row.sides[1].text, QStringLiteral("not read"));
    EXPECT_FALSE(row.sides[1].raw);
    EXPECT_TRUE(row.isIncomplete && row.differs);
    EXPECT_EQ(row.differences[2], QStringLiteral("+5.00 %"));
    EXPECT_EQ(rows[Param::DriveState].sides[1].text, QStringLiteral("none")) << "its table is shorter";

    for (const DifferenceRow &other : Compared({&unread, &first})) {
        EXPECT_EQ(other.sides[0].text, QStringLiteral("not read")) << other.param;
        EXPECT_FALSE(other.name.isEmpty());
        EXPECT_FALSE(other.differs);
    }
    EXPECT_EQ(Shown({}, Compared({&unread, &first})),
              Shown({.onlyDiffering = false}, Compared({&first, &first})))
        << "nobody can say that they are the same";
    EXPECT_THAT(Mismatched({&unread, &first}), ::testing::IsEmpty());
}

TEST_F(DifferencesTest, FiltersShowWhatWasAskedFor)
{
    // Settings, and one of each other kind.
    for (const int p : {Param::Reference1, Param::ClockSeconds, Param::Run, Param::ControlFirmwareVersion})
        At(second, p).Value += 1;
    for (ParameterSet *set : {&first, &second})
        At(*set, Param::StopMode).Value = 1;
    At(second, Param::DriveModel).Value = 6;
    const std::vector<DifferenceRow> rows = Compared({&first, &second});
    const int all = table.LastParam + 1;

    constexpr std::array<bool, RowKinds> every = {true, true, true, true, true};
    EXPECT_THAT(Shown({}, rows), ::testing::ElementsAre(Param::Reference1, Param::DriveModel));
    EXPECT_EQ(int(Shown({.kinds = every, .onlyDiffering = false}, rows).size()), all);
    EXPECT_THAT(Shown({.kinds = {false, false, true}}, rows), ::testing::ElementsAre(Param::ClockSeconds));
    EXPECT_THAT(Shown({.kinds = {false, false, false, true}}, rows), ::testing::ElementsAre(Param::Run));
    EXPECT_THAT(Shown({.kinds = {false, false, false, false, true}}, rows),
                ::testing::ElementsAre(Param::ControlFirmwareVersion));
    EXPECT_THAT(Shown({.onlyDiffering = false, .onlyChanged = true}, rows),
                ::testing::ElementsAre(Param::Reference1, Param::StopMode));
    EXPECT_THAT(Shown({.text = QStringLiteral("stop MODE"), .onlyDiffering = false}, rows),
                ::testing::ElementsAre(Param::StopMode));
    EXPECT_THAT(Shown({.text = QStringLiteral("43"), .kinds = every, .onlyDiffering = false}, rows),
                ::testing::ElementsAre(43, 143, 243, 343, 430, 431, 432, 433));
    EXPECT_THAT(Shown({.text = QStringLiteral("block"), .onlyDiffering = false}, rows),
                ::testing::ElementsAre(0));
    EXPECT_EQ(rows[Param::Run].drivenBy, Param::DigitalIn1Destination);
}

TEST_F(DifferencesTest, OtherModelsFirmwareAndLengthsAreNamed)
{
    EXPECT_THAT(Mismatched({&first, &second}), ::testing::IsEmpty());
    At(second, Param::DriveModel).Value = 1;
    At(second, Param::DriveCurrent).Value = 36;
    At(second, Param::TriggerFirmwareVersion).Value = 103;
    second.known.resize(430);
    const QStringList told = Mismatched({&first, &second});
    ASSERT_EQ(told.size(), 3);
    EXPECT_EQ(told[0], QStringLiteral("The models differ (first: %1; second: %2).")
                           .arg(ModelLine(first), ModelLine(second)));
    EXPECT_TRUE(ModelLine(second).endsWith(QStringLiteral("(36 Amps)")));
    EXPECT_EQ(told[1], QStringLiteral(
                           "The firmware differs (first: 1.00, trigger 1.00; second: 1.00, trigger 1.03)."));
    EXPECT_EQ(told[2],
              QStringLiteral("The tables are of different lengths (first: 0 to 433; second: 0 to 429)."));
}

TEST_F(DifferencesTest, AFileIsReadApartFromTheOpenSet)
{
    table.Row(Param::Reference1).Value = 4321;
    table.Row(Param::DriveModel).Value = 6;
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    table.Row(Param::Reference1).Value = 1;
    table.LastParam = 200;
    ASSERT_EQ(file.Save(Path("short.Svx")), QString());
    table.LastParam = 433;
    table.SetPortOpen(true);
    const QString name = document.FileName;

    QString failure;
    const ParameterSet whole = ParameterSet::FromFile(Path("a.Svx"), table, failure);
    EXPECT_EQ(failure, QString());
    EXPECT_EQ(whole.LastParam(), 433);
    EXPECT_EQ(whole.Value(Param::Reference1), 4321);
    EXPECT_EQ(whole.Value(Param::DriveModel), 6) << "on line, too";
    EXPECT_EQ(table.Value(Param::Reference1), 1);
    EXPECT_EQ(document.FileName, name);
    EXPECT_EQ(ParameterSet::FromFile(Path("short.Svx"), table, failure).LastParam(), 200)
        << "and not the rest of the open set";
    EXPECT_TRUE(ParameterSet::FromFile(Path("none.Svx"), table, failure).known.empty());
    EXPECT_FALSE(failure.isEmpty());
    EXPECT_EQ(ParameterSet::FactoryOf(table, {}).Value(Param::Reference1),
              table.PresetTable[Param::Reference1].Value);
}

TEST_F(DifferencesTest, AnExportNamesItsSetsAndHoldsNoFormula)
{
    At(second, Param::Reference1).Value = 500;
    At(second, Param::Reference1).Name = QStringLiteral("other name");
    At(first, Param::Reference1).Name = QStringLiteral("=1+1");
    CompareReport report{
        {{QStringLiteral("open set"), ModelLine(first)}, {QStringLiteral("@a.Svx"), ModelLine(second)}},
        QDateTime({2026, 3, 9}, {14, 3}),
        {QStringLiteral("The models differ.")},
        {Compared({&first, &second})[Param::Reference1]}};
    const QString date = QLocale().toString(report.made, QLocale::ShortFormat);
    const QString model = ModelLine(first);
    EXPECT_EQ(
        QString::fromUtf8(ReportAsCsv(report)).split(QStringLiteral("\r\n")),
        (QStringList{
            QStringLiteral("\"Compared\",\"open set\",\"'@a.Svx\""),
            QStringLiteral("\"Model\",\"%1\",\"%1\"").arg(model), QStringLiteral("\"Date\",\"%1\"").arg(date),
            QStringLiteral("\"Note\",\"The models differ.\""),
            QStringLiteral("\"Number\",\"Name\",\"Block\",\"open set\",\"'@a.Svx\",\"Difference\",\"Kind\""),
            QStringLiteral("\"218\",\"'=1+1\",\"\",\"0.00 %\",\"5.00 %\",\"+5.00 %\",\"setting\""),
            QString()}));
}

} // namespace

} // namespace quorvik::testing
