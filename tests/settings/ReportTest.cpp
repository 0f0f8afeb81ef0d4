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

using ::testing::ElementsAre;

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
    EXPECT_THAT(Numbers(changed),
                ElementsAre(QStringLiteral("  7"), QStringLiteral(" 43"), QStringLiteral("110")));
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
    QList<ReportRow> rows = {row(" 10", "beta", "10 %"), row("  9", "Alpha", "9 %"),
                             row("110", "alpha", "10 %"), row("  2", "gamma", "-5 %")};
    SortRows(rows, 0, false);
    EXPECT_THAT(Numbers(rows), ElementsAre(QStringLiteral("  2"), QStringLiteral("  9"),
                                           QStringLiteral(" 10"), QStringLiteral("110")));
    SortRows(rows, 3, false);
    EXPECT_THAT(Numbers(rows), ElementsAre(QStringLiteral("  2"), QStringLiteral(" 10"),
                                           QStringLiteral("110"), QStringLiteral("  9")));
    SortRows(rows, 3, true);
    EXPECT_THAT(Numbers(rows), ElementsAre(QStringLiteral("  9"), QStringLiteral(" 10"),
                                           QStringLiteral("110"), QStringLiteral("  2")));
    SortRows(rows, 1, false);
    EXPECT_THAT(Numbers(rows), ElementsAre(QStringLiteral("  9"), QStringLiteral("110"),
                                           QStringLiteral(" 10"), QStringLiteral("  2")));
}

TEST(Report, KeepsTheOrderOfManyEqualTexts)
{
    QList<ReportRow> rows;
    QStringList inOrder;
    for (int i = 0; i < 434; ++i) {
        inOrder.append(QString::number(i));
        rows.append({inOrder.last(), QString(), QString(), QStringLiteral("0")});
    }
    for (const bool descending : {false, true}) {
        SortRows(rows, 3, descending);
        EXPECT_EQ(Numbers(rows), inOrder);
    }
}

TEST(Report, CsvKeepsQuotesAndCommasInsideTheirField)
{
    const QList<ReportRow> rows = {{QStringLiteral("  7"), QStringLiteral("Gain, \"fast\""),
                                    QStringLiteral("1.0 %"), QStringLiteral("2.0 %")}};
    EXPECT_EQ(RowsAsCsv(rows),
              QByteArray("Tag,Name,Preset,Value\r\n7,\"Gain, \"\"fast\"\"\",\"1.0 %\",\"2.0 %\"\r\n"));
}

TEST(Report, TellsTheTimeInTheUsersFormatWithoutItsZone)
{
    const QLocale before;
    const struct {
        QLocale locale;
        const char *time;
    } cases[] = {
        {QLocale(QLocale::English, QLocale::UnitedStates), "^[0-9]+:[0-9]{2}:[0-9]{2}.[AP]M$"},
        {QLocale(QLocale::German, QLocale::Germany), "^[0-9]{2}:[0-9]{2}:[0-9]{2}$"},
    };
    for (const auto &each : cases) {
        QLocale::setDefault(each.locale);
        EXPECT_THAT(DescribeReport(Model(), {}).timeText.toStdString(), ::testing::MatchesRegex(each.time));
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
    static constexpr double Character = 1.0 / 12;

    static ReportMetrics MetricsOf(const Paper &paper)
    {
        return {paper.width - 2 * paper.margin, paper.height - 2 * paper.margin, 0.157, 0.189,
                [](const QString &text) { return double(text.size()) * Character; }};
    }
};

TEST_P(ReportLayoutOnPaper, KeepsEverythingInsideAndEveryRowOnce)
{
    Model model;
    FillTable(model, 433);
    const ReportMetrics metrics = MetricsOf(GetParam());
    for (const QString &notes : {QString(), QString(77, u'n'), QString(255, u'n'), QString(255, u'\n')}) {
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
                EXPECT_LE(placed.x + double(placed.text.size()) * Character, metrics.scaleWidth + 1e-9);
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
    const ReportMetrics metrics = MetricsOf(GetParam());
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

TEST(ReportLayout, PlacesTheHeadsOfALetterPageWhereTheyBelong)
{
    ReportMetrics metrics{8.0, 10.5, 0.157, 0.189,
                          [](const QString &text) { return double(text.size()) / 12; }};
    const QList<ReportPage> pages = LayOutReport({}, metrics);
    ASSERT_EQ(pages.size(), 1);
    const ReportPage &page = pages.first();
    EXPECT_NEAR(page.texts.at(0).x, 8.5 - 0.26 - 0.5 - 0.5, 1e-9); // "Page 1" is half an inch wide
    EXPECT_NEAR(page.texts.at(1).x, 0.26, 1e-9);
    EXPECT_EQ(page.texts.at(1).font, ReportFont::Title);
    EXPECT_NEAR(page.rules.first().right, 8.5 - 0.5 - 0.26, 1e-9);
    const qsizetype heads = page.texts.size() - ReportColumns;
    const double offsets[] = {0, 1, 5, 6};
    for (int column = 0; column < ReportColumns; ++column)
        EXPECT_NEAR(page.texts.at(heads + column).x, 0.26 + offsets[column], 1e-9);
}

} // namespace

} // namespace quorvik
