#include "settings/Report.h"
#include "model/Document.h"
#include "settings/ReportLayout.h"

#include <QLocale>
#include <algorithm>
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
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_THAT(DescribeReport(document, {}).timeText.toStdString(),
                ::testing::MatchesRegex("^[0-9]+:[0-9]{2}:[0-9]{2}.[AP]M$"));
    QLocale::setDefault(before);
}

TEST(ReportLayout, ShortAndWideTextsStayInTheirColumnsAndOnThePage)
{
    const auto width = [](const QString &text) {
        return double(text.size() +
                      std::count_if(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0x1100; })) /
               12;
    };
    const ReportMetrics metrics{7, 7, 0.157, 0.189, width};
    const QString name(40, QChar(0x6F22));
    ReportContent content;
    content.notes = QString(77, QChar(0x6F22));
    for (const QString &text : {QStringLiteral("short"), name})
        content.rows += QList<ReportRow>(40, ReportRow{QStringLiteral("  1"), text, QStringLiteral("0"), {}});
    QString names;
    for (const ReportPage &page : LayOutReport(content, metrics))
        for (const PlacedText &placed : page.texts) {
            const bool isName = placed.x > 1 && placed.x < 2;
            EXPECT_LE(placed.x + width(placed.text), isName ? 5.71 : 7.0) << placed.text.toStdString();
            EXPECT_LE(placed.y + metrics.bodyLine, 7);
            names += isName ? placed.text : QString();
        }
    EXPECT_EQ(names.count(QChar(0x6F22)), 40 * 40);
}

} // namespace

} // namespace quorvik
