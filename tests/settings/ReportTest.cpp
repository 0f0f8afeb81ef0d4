#include "settings/Report.h"
#include "model/Model.h"
#include "settings/ReportLayout.h"

#include <QLocale>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvik
{

namespace
{

QStringList Numbers(const QList<ReportRow> &rows)
{
    QStringList numbers;
    for (const ReportRow &row : rows)
        numbers.append(row.numberText);
    return numbers;
}

/** A table of plain numbers 0 to last, all at their preset of 5. */
void FillTable(Model &model, int last)
{
    model.FileLastParam = std::int16_t(last);
    model.PresetTable.Resize(last);
    for (int i = 0; i <= last; ++i)
        model.PresetTable[i] = {0, 100, 10 * 32, 5, 5, QStringLiteral("Name %1").arg(i), 0, 0};
    model.LastParam = std::int16_t(last);
    model.ParamTable = model.PresetTable;
}

TEST(Report, ListsWhatCanBeWrittenAndDiffersFromItsPreset)
{
    Model model;
    FillTable(model, 120);
    EXPECT_TRUE(CollectRows(model, ReportFilter::ChangedFromDefault).isEmpty());
    EXPECT_EQ(CollectRows(model, ReportFilter::All).size(), 121);

    model.ParamTable[7].Value = 6;
    model.ParamTable[42].Value = 6;
    model.ParamTable[42].Attributes |= Attr::ReadOnly;
    model.ParamTable[43] = {0, 3, 4 * 32, 0, 1, QStringLiteral("Enable"), 0, 0};
    model.ParamTable[110].Value = 6;
    const QList<ReportRow> changed = CollectRows(model, ReportFilter::ChangedFromDefault);
    EXPECT_EQ(Numbers(changed).join(u','), QStringLiteral("  7, 43,110"));
    EXPECT_EQ(changed.at(1).presetText, QStringLiteral("False"));
    EXPECT_EQ(changed.at(1).valueText, QStringLiteral("True"));

    model.LastParam = 100;
    EXPECT_EQ(CollectRows(model, ReportFilter::ChangedFromDefault).size(), 2);
}

TEST(Report, SortsAsTextAndKeepsTheOrderOfEqualTexts)
{
    const auto row = [](const char *number, const char *name, const char *value) {
        return ReportRow{QLatin1String(number), QLatin1String(name), QString(), QLatin1String(value)};
    };
    const QList<ReportRow> rows = {row("10", "beta", "10 %"), row(" 9", "Alpha", "9 %"),
                                   row("11", "alpha", "10 %"), row(" 2", "gamma", "-5 %")};
    const std::tuple<int, bool, const char *> cases[] = {
        {0, false, " 2  9 10 11"},
        {1, false, " 9 11 10  2"},
        {3, false, " 2 10 11  9"},
        {3, true, " 9 10 11  2"},
    };
    for (const auto &[column, descending, order] : cases) {
        QList<ReportRow> sorted = rows;
        SortRows(sorted, column, descending);
        EXPECT_EQ(Numbers(sorted).join(u' '), QLatin1String(order)) << column;
    }
    QList<ReportRow> equal;
    for (int i = 0; i < 434; ++i)
        equal.append({QString::number(i), {}, {}, {}});
    const QStringList inOrder = Numbers(equal);
    SortRows(equal, 3, true);
    EXPECT_EQ(Numbers(equal), inOrder) << "however many there are";
}

TEST(Report, CsvKeepsQuotesAndCommasInsideTheirField)
{
    EXPECT_EQ(RowsAsCsv({{QStringLiteral("  7"), QStringLiteral("Gain, \"fast\""), {}, {}}}),
              QByteArray("Tag,Name,Preset,Value\r\n7,\"Gain, \"\"fast\"\"\",\"\",\"\"\r\n"));
}

TEST(Report, TellsTheTimeInTheUsersFormatWithoutItsZone)
{
    const QLocale before;
    const std::pair<const char *, const char *> cases[] = {{"en_US", "^[0-9]+:[0-9]{2}:[0-9]{2}.[AP]M$"},
                                                           {"de_DE", "^[0-9]{2}:[0-9]{2}:[0-9]{2}$"}};
    for (const auto &[name, time] : cases) {
        QLocale::setDefault(QLocale(QLatin1String(name)));
        EXPECT_THAT(DescribeReport(Model(), {}).timeText.toStdString(), ::testing::MatchesRegex(time));
    }
    QLocale::setDefault(before);
}

struct Paper {
    const char *name;
    double width;
    double height;
    double margin;
};

class ReportLayoutOnPaper : public ::testing::TestWithParam<Paper>
{
protected:
    static double WidthOf(const QString &text) { return double(text.size()) / 12; }

    const double twoMargins = 2 * GetParam().margin;
    const ReportMetrics metrics{GetParam().width - twoMargins, GetParam().height - twoMargins, 0.157, 0.189,
                                WidthOf};
};

TEST_P(ReportLayoutOnPaper, KeepsEverythingInsideAndEveryRowOnce)
{
    Model model;
    FillTable(model, 433);
    for (const QString &notes : {QString(), QString(255, u'n'), QString(255, u'\n')}) {
        const ReportContent content{QStringLiteral("1.0.0"), QStringLiteral("d"), QStringLiteral("t"), notes,
                                    CollectRows(model, ReportFilter::All)};
        const QList<ReportPage> pages = LayOutReport(content, metrics);
        QStringList numbers;
        for (int index = 0; index < pages.size(); ++index) {
            const ReportPage &page = pages.at(index);
            EXPECT_EQ(page.texts.first().text, QStringLiteral("Page %1").arg(index + 1));
            for (const PlacedText &placed : page.texts) {
                EXPECT_GE(placed.x, 0);
                EXPECT_GE(placed.y, 0);
                EXPECT_LE(placed.x + WidthOf(placed.text), metrics.scaleWidth + 1e-9);
                EXPECT_LE(placed.y + metrics.bodyLine, metrics.scaleHeight + 1e-9);
                if (placed.font == ReportFont::Body && placed.text.size() == 3)
                    numbers.append(placed.text);
            }
            for (const PlacedRule &rule : page.rules)
                EXPECT_LE(rule.right, metrics.scaleWidth);
        }
        EXPECT_EQ(numbers, Numbers(content.rows));
    }
}

TEST_P(ReportLayoutOnPaper, BreaksThePageBehindTheRowThatPassesTheLimit)
{
    const double topOffset = std::max((11 - metrics.scaleHeight) / 2, 0.0) + 0.01;
    const double limit = std::min(11 - topOffset - 1, metrics.scaleHeight - metrics.bodyLine);
    // Page head, notes head, one empty line of notes, the rule and the column heads are body lines.
    const double firstRow = topOffset + 5 * metrics.bodyLine + 4 * metrics.titleLine;
    const int fitting = int((limit - firstRow) / metrics.bodyLine);

    ReportContent content;
    content.rows = QList<ReportRow>(fitting, ReportRow{QStringLiteral("  1"), {}, {}, {}});
    EXPECT_EQ(LayOutReport(content, metrics).size(), 1);
    content.rows.append(content.rows.first());
    const QList<ReportPage> pages = LayOutReport(content, metrics);
    ASSERT_EQ(pages.size(), 2);
    // The row that reaches the limit ends its page; the next page opens with its heads at once.
    EXPECT_EQ(pages.at(1).texts.size(), 1 + ReportColumns);
    EXPECT_EQ(pages.at(1).texts.at(1).font, ReportFont::Underlined);
}

INSTANTIATE_TEST_SUITE_P(Papers, ReportLayoutOnPaper,
                         ::testing::Values(Paper{"Letter", 8.5, 11, 0.25}, Paper{"LetterWide", 8.5, 11, 0.5},
                                           Paper{"A4", 8.27, 11.69, 0.14}, Paper{"A4Wide", 8.27, 11.69, 0.39},
                                           Paper{"LetterLandscape", 11, 8.5, 0.25}),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace

} // namespace quorvik
