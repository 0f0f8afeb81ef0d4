#include "SetFixture.h"

#include "PresetsSource.h"
#include "model/Conversions.h"
#include "model/TextTables.h"
#include "settings/SettingsTables.h"

#include <QSet>
#include <set>

namespace quorvik::testing
{

using PresetsTest = SetTest;

namespace
{

using Numbers = std::set<int>;

Numbers Range(int first, int last, int step = 1)
{
    Numbers numbers;
    for (int i = first; i <= last; i += step)
        numbers.insert(i);
    return numbers;
}

Numbers Union(std::initializer_list<Numbers> parts)
{
    Numbers all;
    for (const Numbers &part : parts)
        all.insert(part.begin(), part.end());
    return all;
}

const Numbers &Destinations()
{
    static const Numbers numbers = Union({Range(1, 7), Range(23, 27), {63}, Range(367, 405, 2)});
    return numbers;
}

const Numbers &Sources()
{
    static const Numbers numbers = Union({Range(69, 71), Range(81, 82), {89, 412}, Range(366, 404, 2)});
    return numbers;
}

const Numbers &Leading()
{
    static const Numbers numbers = Union({Destinations(), {69, 70, 89}, Range(28, 32), Range(72, 74)});
    return numbers;
}

} // namespace

TEST_F(PresetsTest, HoldsEveryParameterWithANameOfItsOwn)
{
    ASSERT_EQ(model.PresetTable.UpperBound(), 433);
    QSet<QString> names;
    for (int i = 0; i <= 433; ++i) {
        const ParamRecord &record = model.PresetTable[i];
        EXPECT_FALSE(names.contains(record.Name)) << i;
        names.insert(record.Name);
        EXPECT_LE(record.Name.size(), 40) << i;
        EXPECT_LE(record.Min, record.Preset) << i;
        EXPECT_GE(record.Max, record.Preset) << i;
        EXPECT_EQ(record.Value, record.Preset) << i;
        const bool isLong = (record.Attributes & Attr::Long) != 0;
        EXPECT_GE(record.Min, isLong ? 0 : -32768) << i;
        EXPECT_LE(record.Max, isLong ? 65535 : 32767) << i;
    }
    EXPECT_EQ(model.PresetTable[0].Name, QStringLiteral("None"));
    EXPECT_EQ(model.PresetTable[0].Max, 0);
    EXPECT_TRUE(model.CanWriteParam(226));
    EXPECT_EQ(model.Notes, QString());
}

TEST_F(PresetsTest, AttributesKeepTheRules)
{
    for (int i = 0; i <= 433; ++i) {
        SCOPED_TRACE(i);
        const std::int32_t attributes = model.PresetTable[i].Attributes;
        const int typeCode = TypeCode(attributes);
        const bool isSelector = Destinations().contains(i) || Sources().contains(i);
        EXPECT_EQ(typeCode == 0, isSelector);
        EXPECT_EQ((attributes & Attr::Destination) != 0, Destinations().contains(i));
        EXPECT_EQ((attributes & Attr::Refresh) != 0, Leading().contains(i));
        EXPECT_EQ(typeCode, (attributes & Attr::TypeCode) / 32) << "rounding shows another kind";
        EXPECT_EQ(typeCode, TypeCode(attributes & ~Attr::NotInherited)) << "a dependant shows another kind";
        if (isSelector) {
            EXPECT_EQ(model.PresetTable[i].Max, 433);
            EXPECT_NE(attributes & Attr::Icr, 0);
        }
        if ((attributes & Attr::Icr) != 0) {
            EXPECT_EQ(typeCode % 2, 0);
            EXPECT_EQ(DecimalsOf(attributes), 0);
        }
    }
}

void ExpectShown(std::int32_t rawValue, const ParamRecord &record, const char *text)
{
    if (text != nullptr) {
        EXPECT_EQ(ValueText(rawValue, record.Attributes), QString::fromLatin1(text));
    }
}

struct Expected {
    Numbers numbers;
    int typeCode;
    int decimals;
    const char *lowest; ///< as shown, or null for any
    const char *highest;
    const char *factory;
};

TEST_F(PresetsTest, WindowsFindTheTextsAndLimitsTheyRead)
{
    const std::vector<Expected> table = {
        {Range(28, 32), 2, 0, "Unipolar", "Bipolar", nullptr},
        {Range(33, 37), 3, 0, "Current", "Voltage", nullptr},
        {Range(132, 138), 7, 0, "Open", "Closed", "Open"},
        {{90}, 5, 0, "Freq", "Digital", nullptr},
        {{197}, 6, 0, "AFB", "EFB", nullptr},
        {{245}, 8, 0, "3 Wire", "2 Wire", nullptr},
        {{232}, 21, 0, "Ramp", "Coast", "Ramp"},
        {{127}, 22, 0, "DC", "AC", nullptr},
        {{124}, 24, 0, "256", "2048", nullptr},
        {{410}, 19, 0, "Auto", "On", nullptr},
        {{349}, 9, 0, "Positive", "Negative", nullptr},
        {{104, 243, 305, 306, 329, 331, 365, 423}, 4, 0, "False", "True", nullptr},
        {Union({Range(165, 167), {109, 110, 203, 215, 216}}), 10, 0, "0", "1", "0"},
        {{170}, 10, 0, nullptr, nullptr, "0"},
        {{99}, 1, 2, "0.00 %", "150.00 %", "150.00 %"},
        {{100}, 1, 2, "-150.00 %", "0.00 %", "-150.00 %"},
        {{221}, 1, 2, nullptr, nullptr, "5.00 %"},
        {{190}, 1, 2, "0.00 %", "100.00 %", "100.00 %"},
        {{191}, 1, 2, "-100.00 %", "0.00 %", "-100.00 %"},
        {Range(217, 220), 1, 2, nullptr, nullptr, "0.00 %"},
        {{339}, 1, 2, "0.00 %", "100.00 %", nullptr},
        {{83, 84, 95}, 1, 2, nullptr, "200.00 %", nullptr},
        {Range(226, 229), 12, 1, nullptr, nullptr, "5.0 Sec"},
        {Range(307, 310), 12, 1, nullptr, nullptr, "10.0 Sec"},
        {{428}, 12, 1, "0.0 Sec", "240.0 Sec", "0.0 Sec"},
        {{125, 199}, 15, 0, nullptr, "9999 RPM", nullptr},
        {{122, 123}, 14, 0, nullptr, "510 Amps", nullptr},
        {{128}, 16, 0, nullptr, nullptr, nullptr},
        {{64}, 11, 0, "0 Hz", "60000 Hz", "0 Hz"},
        {{65}, 11, 0, "0 Hz", "60000 Hz", "60000 Hz"},
        {{164}, 11, 0, "0 Hz", "60000 Hz", "0 Hz"},
        {Range(38, 42), 10, 0, nullptr, "4095", "0"},
        {Range(43, 47), 10, 0, "0", "4095", "4095"},
        {{238, 255, 304, 263, 271, 279, 287, 295}, 17, 0, "0x0000", "0xFFFF", "0x0000"},
        {{411}, 20, 0, nullptr, nullptr, "SVR100-000"},
    };
    for (const Expected &row : table) {
        for (const int number : row.numbers) {
            SCOPED_TRACE(number);
            const ParamRecord &record = model.PresetTable[number];
            EXPECT_EQ(TypeCode(record.Attributes), row.typeCode);
            EXPECT_EQ(DecimalsOf(record.Attributes), row.decimals);
            ExpectShown(record.Min, record, row.lowest);
            ExpectShown(record.Max, record, row.highest);
            ExpectShown(record.Value, record, row.factory);
        }
    }
    EXPECT_TRUE(model.IsModelDefined());
    EXPECT_TRUE(model.IsRegenerative());
}

TEST_F(PresetsTest, AccessOfEachParameter)
{
    const Numbers readOnly =
        Union({{101, 102, 103, 106, 122, 129, 409, 411, 419, 422, 428, 433},
               Range(111, 114),
               Range(132, 176),
               Range(192, 196),
               Range(263, 302),
               {200, 224, 225, 231, 238, 242, 243, 244, 252, 255, 303, 304, 324, 328, 417}});
    const Numbers stopOnly = Union({{109, 110, 123, 124, 127, 128, 197, 245}, Range(28, 32)});
    for (const int number : readOnly)
        EXPECT_EQ(model.AccessClass(number), Access::ReadOnly) << number;
    for (const int number : stopOnly)
        EXPECT_EQ(model.AccessClass(number), Access::IcrReadWrite) << number;
    for (const int number : {0, 22, 38, 99, 226, 256, 262, 406, 407, 408, 420})
        EXPECT_EQ(model.AccessClass(number), Access::ReadWrite) << number;
    const std::vector<std::pair<int, int>> wiring = {{1, 239}, {2, 240}, {3, 241}, {4, 222},
                                                     {5, 215}, {6, 216}, {7, 254}, {23, 217}};
    for (const auto &[input, target] : wiring) {
        EXPECT_EQ(model.Value(input), target);
        EXPECT_EQ(model.AccessClass(target), Access::LinkedDestination) << target;
    }
}

TEST_F(PresetsTest, EveryFactoryValueLiesWithinTheLimitsThatTheRulesGiveIt)
{
    for (int i = 0; i <= 433; ++i) {
        const ParamRecord &record = model.ParamTable[i];
        EXPECT_TRUE(record.Value >= record.Min && record.Value <= record.Max) << i;
        EXPECT_FALSE(ValueText(record.Value, record.Attributes).isEmpty()) << i;
    }
    // What hangs on the factory wiring shows itself in the units of what it drives.
    EXPECT_EQ(ValueText(model.Value(15), model.ParamTable[15].Attributes), QStringLiteral("True"));
    EXPECT_EQ(ValueText(model.Value(53), model.ParamTable[53].Attributes), QStringLiteral("100.00 %"));
    EXPECT_EQ(ValueText(model.Value(75), model.ParamTable[75].Attributes), QStringLiteral("True"));
    EXPECT_EQ(model.Value(122), 174);
    EXPECT_EQ(model.ParamTable[123].Min, 35);
}

struct Refused {
    const char *line;
    const char *sentence;
};

TEST(PresetsSourceTest, RefusesWhatCannotBeExpressed)
{
    const QString first = QStringLiteral("headings\n0,None,number,0,write,,,signed,0,0,0\n");
    const std::vector<Refused> table = {
        {"1,A,percent,2,write,stop,,signed,0,1,0", "another kind"},
        {"1,A,contact,0,write,stop,,signed,Open,Closed,Open", "another kind"},
        {"1,A,amperes,1,write,stop,,signed,0,1,0", "another kind"},
        {"1,A,rpm,0,write,stop,,signed,0,1,0", "another kind"},
        {"1,A,number,0,write,,,signed,0,1", "fields"},
        {"2,A,number,0,write,,,signed,0,1,0", "was expected"},
        {"1,,number,0,write,,,signed,0,1,0", "name"},
        {"1,12345678901234567890123456789012345678901,number,0,write,,,signed,0,1,0", "name"},
        {"1,None,number,0,write,,,signed,0,1,0", "stands twice"},
        {"1,A,colour,0,write,,,signed,0,1,0", "no kind"},
        {"1,A,number,4,write,,,signed,0,1,0", "decimals"},
        {"1,A,boolean,1,write,,,signed,False,True,False", "decimals"},
        {"1,A,number,0,often,,,signed,0,1,0", "no word"},
        {"1,A,number,0,read,stop,,signed,0,1,0", "read-only"},
        {"1,A,number,0,write,,source,signed,0,1,0", "selector"},
        {"1,A,parameter,0,write,,,signed,0,1,0", "selector"},
        {"1,A,parameter,0,write,,source,signed,0,9,0", "reaches"},
        {"1,A,number,1,write,,,signed,0.00,0.25,0", "no value"},
        {"1,A,number,0,write,,,signed,0,1e300,0", "no value"},
        {"1,A,number,0,write,,,signed,0,x,0", "no value"},
        {"1,A,boolean,0,write,,,signed,False,Yes,False", "no value"},
        {"1,A,hexadecimal,0,read,,,unsigned,0x0,0x10000,0x0", "no value"},
        {"1,A,number,0,write,,,signed,0,40000,0", "width"},
        {"1,A,number,0,write,,,unsigned,-1,5,0", "width"},
        {"1,A,number,2,write,,,signed,0,1.00,1.01", "outside"},
        {"1,A,number,0,write,,,signed,5,1,3", "outside"},
    };
    RecordArray records;
    for (const Refused &row : table) {
        const QString failure = ParsePresets(first + QString::fromUtf8(row.line), records);
        EXPECT_TRUE(failure.contains(QString::fromUtf8(row.sentence)))
            << row.line << ": " << failure.toStdString();
    }
    EXPECT_FALSE(ParsePresets(QString(), records).isEmpty());
    EXPECT_FALSE(ParsePresets(QStringLiteral("headings\n"), records).isEmpty());
    EXPECT_EQ(
        ParsePresets(first + QStringLiteral("1,A,seconds,3,read,,,signed,-1.000,32.767,0.001\n"), records),
        QString());
    EXPECT_EQ(records[1].Attributes, 12 * 32 + 8 + 3);
    EXPECT_EQ(records[1].Max, 32767);
}

TEST(PresetsSourceTest, OneTargetHasOneDriver)
{
    const QString table = QStringLiteral("headings\n0,None,number,0,write,,,signed,0,0,0\n"
                                         "1,A,number,0,%1,,,signed,0,1,0\n"
                                         "2,B,parameter,0,write,stop,destination,signed,0,3,1\n"
                                         "3,C,parameter,0,write,stop,destination,signed,0,3,%2\n");
    RecordArray records;
    EXPECT_EQ(ParsePresets(table.arg(QStringLiteral("write"), QStringLiteral("0")), records), QString());
    EXPECT_TRUE(ParsePresets(table.arg(QStringLiteral("write"), QStringLiteral("1")), records)
                    .contains(QStringLiteral("belongs to parameter 2")));
    EXPECT_TRUE(ParsePresets(table.arg(QStringLiteral("read"), QStringLiteral("0")), records)
                    .contains(QStringLiteral("read-only")));
}

} // namespace quorvik::testing
