#include "model/Conversions.h"
#include "model/ParamTable.h"
#include "model/PathFunctions.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace quorvik::testing
{

TEST(ConversionsTest, TypeCodeIsRoundedAndNotShifted)
{
    const std::vector<std::pair<std::int32_t, int>> rows = {
        {14 * 32 + 15, 14},                              // decimals and read only alone never reach the tie
        {14 * 32 + 16, 14},                              // a tie goes to the even neighbour
        {15 * 32 + 16, 16},          {14 * 32 + 17, 15}, // stop-only with a decimal
        {31 * 32 + 16, 0},                               // only five bits are kept
        {15 * 32 + 16 + 0x8000, 16}, {-32, 31},
    };
    for (const auto &[attributes, typeCode] : rows)
        EXPECT_EQ(TypeCode(attributes), typeCode) << attributes;
    EXPECT_EQ(UnitText(15 * 32 + 16), QStringLiteral("Volts"));
}

TEST(ConversionsTest, ValueTextOfEveryKind)
{
    // Type code, attribute bits below it, raw value.
    const std::tuple<int, std::int32_t, std::int32_t, const char *> rows[] = {
        {0, 0, 433, "433"},
        {1, 2, -15000, "-150.00 %"},
        {4, 0, 1, "True"},
        {4, 0, 2, ""},
        {10, 1, -5, "-0.5"},
        {13, 3, 1, "0.001"},
        {16, 1, 2401, "240.1 Volts"},
        {17, 0, 0, "0x0000"},
        {17, 0, 0xabcd, "0xABCD"},
        {17, 0, -1, "0xFFFFFFFF"},
        {20, 0, 27, "SVN150-000"},
        {20, 0, 32, "Undefined"},
        {1, 3, 2147483647, "2147483.647 %"},
    };
    for (const auto &[typeCode, low, raw, text] : rows)
        EXPECT_EQ(ValueText(raw, typeCode * 32 + low), QLatin1String(text)) << typeCode << ' ' << raw;
    for (const int list : {2, 3, 4, 5, 6, 7, 8, 9, 19, 21, 22, 24}) {
        EXPECT_TRUE(IsEnumerated(list)) << list;
        EXPECT_THROW(ValueText(-1, list * 32), RuntimeFailure) << list;
    }
    EXPECT_THROW(ValueText(33, 20 * 32), RuntimeFailure);
}

TEST(ConversionsTest, EntriesBecomeRawValues)
{
    const std::tuple<const char *, int, std::int32_t> rows[] = {
        {"12.345", 1, 123}, {"12.35", 1, 124}, {"2.675", 2, 268},   {"-0.004", 2, 0},
        {"-.5", 1, -5},     {"1e2", 1, 1000},  {" 7 ", 0, 7},       {"0.5", 0, 1},
        {"-0.5", 0, -1},    {"0.05", 2, 5},    {"-12.5", 2, -1250}, {"214748.3647", 3, 214748365},
    };
    for (const auto &[text, decimals, raw] : rows)
        EXPECT_EQ(EntryToRaw(QLatin1String(text), 32 + decimals), raw) << text;
    for (const char *text : {"", "x", "1,5", "3000000000", "2147483.648"})
        EXPECT_THROW(EntryToRaw(QLatin1String(text), 32 + 3), RuntimeFailure) << text;
    // Every raw value of 16 bits comes back from its own text.
    for (int decimals = 0; decimals <= 3; ++decimals)
        for (std::int32_t raw = -32768; raw <= 65535; raw += 7)
            ASSERT_EQ(EntryToRaw(NumberText(raw, decimals), decimals), raw) << decimals;
}

TEST(ConversionsTest, AShownNumberComesBackAsItsRawValue)
{
    constexpr std::int32_t percent = 10 * 32 + 2;
    constexpr std::int32_t list = 2 * 32 + 2;
    const std::tuple<double, std::int32_t, std::optional<std::int32_t>> rows[] = {
        {72.88, percent, 7288},
        {-72.88, percent, -7288},
        {0.005, percent, 1},
        {-0.005, percent, -1},
        {2, list, 2},
        {21474836.47, percent, 2147483647},
        {3e7, percent, {}},
        {-3e7, percent, {}},
        {std::numeric_limits<double>::quiet_NaN(), list, {}},
    };
    for (const auto &[number, attributes, raw] : rows) {
        EXPECT_EQ(RawOfShown(number, attributes), raw) << number;
        if (raw && std::abs(number) >= 1) {
            EXPECT_DOUBLE_EQ(ShownNumber(*raw, attributes), number);
        }
    }
}

TEST(ConversionsTest, TablesHaveEnds)
{
    EXPECT_EQ(EnumCount(6), 3);
    EXPECT_EQ(EnumCount(10), 0);
    EXPECT_EQ(EnumText(0, 11), QStringLiteral("Hertz"));
    EXPECT_THROW(EnumText(0, 25), RuntimeFailure);
    EXPECT_THROW(DayText(8), RuntimeFailure);
    EXPECT_THROW(DriveStateText(-1), RuntimeFailure);
}

TEST(PathFunctionsTest, EitherSeparatorParts)
{
    const std::vector<std::tuple<const char *, const char *, const char *>> rows = {
        {"C:\\a\\b.Svx", "C:\\a\\", "b.Svx"},
        {"/home/x/a\\b.Svx", "/home/x/", "a\\b.Svx"},
        {"/a/", "/a/", ""},
    };
    for (const auto &[path, folder, title] : rows) {
        EXPECT_EQ(FileTitle(QLatin1String(path)), QLatin1String(title)) << path;
        EXPECT_EQ(FilePath(QLatin1String(path)), QLatin1String(folder)) << path;
    }
}

} // namespace quorvik::testing
