#include "platform/Numbers.h"

#include "platform/RuntimeFailure.h"

#include <QLocale>
#include <cmath>
#include <gtest/gtest.h>

namespace quorvik::testing
{

TEST(NumbersTest, TypedNumbersHaveOneFormEverywhere)
{
    const std::pair<const char *, double> numbers[] = {{" 12.5\t", 12.5}, {"+3", 3}, {"-.5", -0.5}, {"5.", 5},
                                                       {"1E-2", 0.01},    {"-0", 0}, {"007", 7}};
    // A locale, the C locale too, takes some of these.
    const char *const others[] = {"",     " ",     "1,5", "1,234", "1.000,5", "0x10",   "inf",
                                  "-inf", "nan",   "1e",  ".",     "1 2",     "1.2.3",  "1f",
                                  "5%",   "1e400", "$1",  "(5)",   "--1",     "\u0663", "\u22125"};
    QLocale::setDefault(QLocale::German);
    for (const auto &[text, value] : numbers)
        EXPECT_EQ(ParseNumber(QString::fromUtf8(text)), value) << text;
    for (const char *text : others)
        EXPECT_THROW(CDbl(QString::fromUtf8(text)), RuntimeFailure) << text;
    EXPECT_EQ(FormatFixed(1234.5, 2), QStringLiteral("1234.50"));
    EXPECT_EQ(DoubleText(1234.5), QStringLiteral("1234.5"));
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(CLng(QStringLiteral("2.5")), 2);
    EXPECT_THROW(CLng(QStringLiteral("2147483648")), RuntimeFailure);
}

TEST(NumbersTest, FixedTextRoundsTheShownDigits)
{
    const std::tuple<double, int, const char *> cases[] = {
        {2.675, 2, "2.68"},
        {-0.5, 0, "-1"},
        {-0.4, 0, "0"},
        {-0.004, 2, "0.00"},
        {9.995, 2, "10.00"},
        {1e15, 1, "1000000000000000.0"},
        {0.1 + 0.2, 15, "0.300000000000000"},
        {1e-20, 3, "0.000"},
    };
    for (const auto &[value, decimals, text] : cases)
        EXPECT_EQ(FormatFixed(value, decimals), QLatin1String(text)) << value;
}

TEST(NumbersTest, DoublesHaveAtMostFifteenDigitsInTheShortestForm)
{
    const std::pair<double, const char *> cases[] = {
        {-0.0, "0"},          {200.0 / 3.0, "66.6666666666667"},
        {1e15, "1E+15"},      {-1.5e-15, "-0.0000000000000015"},
        {1.5e-16, "1.5E-16"},
    };
    for (const auto &[value, text] : cases) {
        EXPECT_EQ(DoubleText(value), QLatin1String(text)) << value;
        EXPECT_NEAR(CDbl(DoubleText(value)), value, std::abs(value) * 1e-14);
    }
}

} // namespace quorvik::testing
