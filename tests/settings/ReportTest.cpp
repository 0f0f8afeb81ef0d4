#include "settings/Report.h"
#include "model/Document.h"
#include "settings/ReportLayout.h"

#include <QLocale>
#include <algorithm>
#include <array>
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

TEST(Report, CsvKeepsEveryTextATextInItsField)
{
    const std::pair<const char *, const char *> cases[] = {
        {"Gain, \"fast\"", "Gain, \"\"fast\"\""},
        {"=1+1", "'=1+1"},
        {"@SUM(A1)", "'@SUM(A1)"},
        {"-2+3+cmd|' /C calc'!A0", "'-2+3+cmd|' /C calc'!A0"},
        {"+1 x(A1)", "'+1 x(A1)"},
        {"-5.00 %", "-5.00 %"},
        {"-12", "-12"},
    };
    for (const auto &[name, field] : cases)
        EXPECT_EQ(RowsAsCsv({{QStringLiteral("  7"), QLatin1String(name), {}, {}}}),
                  QByteArray("Tag,Name,Preset,Value\r\n7,\"") + field + "\",\"\",\"\"\r\n");
}

TEST(Report, TellsTheTimeInTheUsersFormatWithoutItsZone)
{
    const QLocale before;
    const ParameterTable table;
    const Document document(table);
    const std::pair<const char *, const char *> cases[] = {{"en_US", "^[0-9]+:[0-9]{2}:[0-9]{2}.[AP]M$"},
                                                           {"de_DE", "^[0-9]{2}:[0-9]{2}:[0-9]{2}$"}};
    for (const auto &[name, time] : cases) {
        QLocale::setDefault(QLocale(QLatin1String(name)));
        EXPECT_THAT(DescribeReport(document, {}).timeText.toStdString(), ::testing::MatchesRegex(time));
    }
    QLocale::setDefault(before);
}

TEST(ReportLayout, BreaksThePageBehindTheRowThatPassesTheLimit)
{
    // Width, height and margin of Letter, A4 and Letter on its side, with narrow and with wide margins.
    const std::vector<std::array<double, 3>> papers = {
        {8.5, 11, 0.25}, {8.5, 11, 0.5}, {8.27, 11.69, 0.14}, {8.27, 11.69, 0.39}, {11, 8.5, 0.25}};
    for (const auto &[width, height, margin] : papers) {
        SCOPED_TRACE(::testing::Message() << width << " by " << height << ", margin " << margin);
        const ReportMetrics metrics{width - 2 * margin, height - 2 * margin, 0.157, 0.189,
                                    [](const QString &text) { return double(text.size()) / 12; }};
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
        EXPECT_LE(pages.at(0).texts.last().y + metrics.bodyLine, metrics.scaleHeight + 1e-9);
        EXPECT_LE(pages.at(0).texts.first().x + 0.5, metrics.scaleWidth + 1e-9)
            << "the page head's six characters";
        EXPECT_LE(pages.at(0).rules.first().right, metrics.scaleWidth);
        // The row that reaches the limit ends its page; the next page opens with its heads at once.
        EXPECT_EQ(pages.at(1).texts.size(), 1 + ReportColumns);
        EXPECT_EQ(pages.at(1).texts.at(1).font, ReportFont::Underlined);
    }
}

TEST(ReportLayout, WideCharactersStayInTheirColumnsAndOnThePage)
{
    const auto width = [](const QString &text) {
        return double(text.size() +
                      std::count_if(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0x1100; })) /
               12;
    };
    const ReportMetrics metrics{8, 7, 0.157, 0.189, width};
    const QString name(40, QChar(0x6F22));
    ReportContent content;
    content.notes = QString(77, QChar(0x6F22));
    content.rows = QList<ReportRow>(40, ReportRow{QStringLiteral("  1"), name, QStringLiteral("0"), {}});
    QString names;
    for (const ReportPage &page : LayOutReport(content, metrics))
        for (const PlacedText &placed : page.texts) {
            const bool isName = placed.x > 1 && placed.x < 2;
            EXPECT_LE(placed.x + width(placed.text), isName ? 5.26 : 8.0) << placed.text.toStdString();
            EXPECT_LE(placed.y + metrics.bodyLine, 7);
            names += isName ? placed.text : QString();
        }
    EXPECT_EQ(names.count(QChar(0x6F22)), 40 * 40);
}

} // namespace

} // namespace quorvik
