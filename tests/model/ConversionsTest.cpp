#include "model/Conversions.h"
#include "model/ParamTable.h"
#include "model/PathFunctions.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>
#include <vector>

namespace quorvik::testing
{

TEST(ConversionsTest, TypeCodeIsRoundedAndNotShifted)
{
    const std::vector<std::pair<std::int32_t, int>> table = {
        {14 * 32 + 15, 14}, // decimals and read only alone never reach the tie
        {14 * 32 + 16, 14}, // a tie goes to the even neighbour
        {15 * 32 + 16, 16},
        {14 * 32 + 17, 15}, // stop-only with a decimal
        {1 * 32 + 18, 2},
        {31 * 32 + 16, 0}, // only five bits are kept
        {15 * 32 + 16 + 0x8000, 16},
        {-32, 31},
    };
    for (const auto &[attributes, typeCode] : table)
        EXPECT_EQ(TypeCode(attributes), typeCode) << attributes;
    EXPECT_EQ(UnitText(15 * 32 + 16), QStringLiteral("Volts"));
}

TEST(ConversionsTest, ValueTextOfEveryType)
{
    struct Row {
        int typeCode;
        std::int32_t low; ///< attribute bits below the type code
        std::int32_t raw;
        const char *text;
    };
    const std::vector<Row> table = {
        {0, 0, 433, "433"},
        {1, 2, -15000, "-150.00 %"},
        {2, 0, 1, "Bipolar"},
        {3, 0, 0, "Current"},
        {4, 0, 1, "True"},
        {4, 0, 2, ""},
        {4, 0, 4, ""},
        {5, 0, 1, "Digital"},
        {6, 0, 2, "EFB"},
        {7, 0, 1, "Closed"},
        {8, 0, 0, "3 Wire"},
        {9, 0, 1, "Negative"},
        {10, 1, -5, "-0.5"},
        {11, 0, 60000, "60000 Hz"},
        {12, 1, 50, "5.0 Sec"},
        {13, 3, 1, "0.001"},
        {14, 0, 174, "174 Amps"},
        {15, 0, -1750, "-1750 RPM"},
        {16, 1, 2401, "240.1 Volts"},
        {17, 0, 0, "0x0000"},
        {17, 0, 0xabcd, "0xABCD"},
        {17, 0, -1, "0xFFFFFFFF"},
        {18, 0, -40, "-40 C"},
        {19, 0, 1, "On"},
        {20, 0, 27, "SVN150-000"},
        {20, 0, 32, "Undefined"},
        {21, 0, 2, "Coast"},
        {22, 0, 1, "AC"},
        {24, 0, 3, "2048"},
        {31, 1, 9, "0.9"},
        {1, 2, -4, "-0.04 %"},
        {1, 3, 2147483647, "2147483.647 %"},
    };
    for (const Row &row : table)
        EXPECT_EQ(ValueText(row.raw, row.typeCode * 32 + row.low), QString::fromLatin1(row.text))
            << row.typeCode << ' ' << row.raw;
    for (const int list : {2, 3, 4, 5, 6, 7, 8, 9, 19, 21, 22, 24}) {
        EXPECT_TRUE(IsEnumerated(list)) << list;
        EXPECT_THROW(ValueText(-1, list * 32), RuntimeFailure) << list;
    }
    EXPECT_THROW(ValueText(33, 20 * 32), RuntimeFailure);
}

TEST(ConversionsTest, EntriesBecomeRawValues)
{
    struct Row {
        const char *text;
        int decimals;
        std::int32_t raw;
    };
    const std::vector<Row> table = {
        {"12.345", 1, 123}, {"12.35", 1, 124}, {"2.675", 2, 268},   {"-0.004", 2, 0},
        {"-.5", 1, -5},     {"1e2", 1, 1000},  {" 7 ", 0, 7},       {"0.5", 0, 1},
        {"-0.5", 0, -1},    {"0.05", 2, 5},    {"-12.5", 2, -1250}, {"214748.3647", 3, 214748365},
    };
    for (const Row &row : table)
        EXPECT_EQ(EntryToRaw(QString::fromLatin1(row.text), 32 + row.decimals), row.raw) << row.text;
    for (const char *text : {"", "x", "1,5", "3000000000", "2147483.648"})
        EXPECT_THROW(EntryToRaw(QString::fromLatin1(text), 32 + 3), RuntimeFailure) << text;
    // Every raw value of 16 bits comes back from its own text.
    for (int decimals = 0; decimals <= 3; ++decimals)
        for (std::int32_t raw = -32768; raw <= 65535; raw += 7)
            ASSERT_EQ(EntryToRaw(NumberText(raw, decimals), decimals), raw) << decimals;
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
    const std::vector<std::tuple<const char *, const char *, const char *>> table = {
        {"C:\\a\\b.Svx", "C:\\a\\", "b.Svx"},
        {"/home/x/b.Svx", "/home/x/", "b.Svx"},
        {"/home/x/a\\b.Svx", "/home/x/", "a\\b.Svx"},
        {"unnamed", "", "unnamed"},
        {"/a/", "/a/", ""},
        {"", "", ""},
    };
    for (const auto &[path, folder, title] : table) {
        EXPECT_EQ(FileTitle(QString::fromLatin1(path)), QString::fromLatin1(title)) << path;
        EXPECT_EQ(FilePath(QString::fromLatin1(path)), QString::fromLatin1(folder)) << path;
    }
}

} // namespace quorvik::testing
