#include "SetFixture.h"

#include "PresetsSource.h"
#include "model/Conversions.h"
#include "settings/SettingsTables.h"

#include <QSet>

namespace quorvik::testing
{

namespace
{

bool IsWithin(int number, int first, int last)
{
    return number >= first && number <= last;
}

bool IsDestination(int i)
{
    return IsWithin(i, 1, 7) || IsWithin(i, 23, 27) || i == 63 || (IsWithin(i, 367, 405) && i % 2 == 1);
}

bool IsSource(int i)
{
    return IsWithin(i, 69, 71) || i == 81 || i == 82 || i == 89 || i == 412 ||
           (IsWithin(i, 366, 404) && i % 2 == 0);
}

bool IsLeading(int i)
{
    return IsDestination(i) || IsWithin(i, 28, 32) || IsWithin(i, 69, 70) || IsWithin(i, 72, 74) || i == 89;
}

} // namespace

using PresetsTest = SetTest;

TEST_F(PresetsTest, EveryParameterKeepsTheRules)
{
    ASSERT_EQ(model.PresetTable.UpperBound(), 433);
    QSet<QString> names;
    for (int i = 0; i <= 433; ++i) {
        SCOPED_TRACE(i);
        const ParamRecord &record = model.PresetTable[i];
        EXPECT_FALSE(names.contains(record.Name));
        names.insert(record.Name);
        EXPECT_LE(record.Name.size(), 40);
        EXPECT_LE(record.Min, record.Preset);
        EXPECT_GE(record.Max, record.Preset);
        EXPECT_EQ(record.Value, record.Preset);
        const bool isLong = (record.Attributes & Attr::Long) != 0;
        EXPECT_GE(record.Min, isLong ? 0 : -32768);
        EXPECT_LE(record.Max, isLong ? 65535 : 32767);

        const std::int32_t attributes = record.Attributes;
        const int typeCode = TypeCode(attributes);
        const bool isSelector = IsDestination(i) || IsSource(i);
        EXPECT_EQ(typeCode == 0, isSelector);
        EXPECT_EQ((attributes & Attr::Destination) != 0, IsDestination(i));
        EXPECT_EQ((attributes & Attr::Refresh) != 0, IsLeading(i));
        EXPECT_EQ(typeCode, (attributes & Attr::TypeCode) / 32) << "rounding shows another kind";
        EXPECT_EQ(typeCode, TypeCode(attributes & ~Attr::NotInherited)) << "a dependant shows another kind";
        if (isSelector) {
            EXPECT_EQ(record.Max, 433);
            EXPECT_NE(attributes & Attr::Icr, 0);
        }
        if ((attributes & Attr::Icr) != 0) {
            EXPECT_EQ(typeCode % 2, 0);
            EXPECT_EQ(DecimalsOf(attributes), 0);
        }
    }
    EXPECT_EQ(model.Notes, QString());
}

TEST_F(PresetsTest, FactorySetFitsItsWiring)
{
    for (int i = 0; i <= 433; ++i) {
        const ParamRecord &record = model.ParamTable[i];
        EXPECT_TRUE(record.Value >= record.Min && record.Value <= record.Max) << i;
        EXPECT_FALSE(ValueText(record.Value, record.Attributes).isEmpty()) << i;
    }
    const std::vector<std::pair<int, int>> wiring = {{1, 239}, {2, 240}, {3, 241}, {4, 222},
                                                     {5, 215}, {6, 216}, {7, 254}, {23, 217}};
    for (const auto &[input, target] : wiring) {
        EXPECT_EQ(model.Value(input), target);
        EXPECT_EQ(model.AccessClass(target), Access::LinkedDestination) << target;
    }
    // What hangs on the factory wiring shows itself in the units of what it drives.
    for (const auto &[p, text] : {std::pair(15, "True"), {53, "100.00 %"}, {75, "True"}, {122, "174 Amps"}})
        EXPECT_EQ(ValueText(model.Value(p), model.ParamTable[p].Attributes), QLatin1String(text)) << p;
}

TEST(PresetsSourceTest, RefusesWhatCannotBeExpressed)
{
    const QString first = QStringLiteral("headings\n0,None,number,0,write,,,signed,0,0,0\n");
    const std::pair<const char *, const char *> table[] = {
        {"1,A,percent,2,write,stop,,signed,0,1,0", "another kind"},
        {"1,12345678901234567890123456789012345678901,number,0,write,,,signed,0,1,0", "name"},
        {"1,None,number,0,write,,,signed,0,1,0", "stands twice"},
        {"1,A,boolean,1,write,,,signed,False,True,False", "decimals"},
        {"1,A,number,0,read,stop,,signed,0,1,0", "read-only"},
        {"1,A,number,0,write,,source,signed,0,1,0", "selector"},
        {"1,A,parameter,0,write,,,signed,0,1,0", "selector"},
        {"1,A,parameter,0,write,,source,signed,0,9,0", "reaches"},
        {"1,A,number,1,write,,,signed,0.00,0.25,0", "no value"},
        {"1,A,hexadecimal,0,read,,,unsigned,0x0,0x10000,0x0", "no value"},
        {"1,A,number,0,write,,,signed,0,40000,0", "width"},
        {"1,A,number,0,write,,,unsigned,-1,5,0", "width"},
        {"1,A,number,2,write,,,signed,0,1.00,1.01", "outside"},
        {"1,A,number,0,write,,,signed,5,1,3", "outside"},
        {"1,A,parameter,0,write,stop,destination,signed,0,2,2\n"
         "2,B,number,0,read,,,signed,0,1,0",
         "read-only"},
        {"1,A,parameter,0,write,stop,destination,signed,0,3,3\n"
         "2,B,parameter,0,write,stop,destination,signed,0,3,3\n"
         "3,C,number,0,write,,,signed,0,1,0",
         "belongs to parameter 1"},
    };
    RecordArray records;
    for (const auto &[lines, sentence] : table) {
        const QString failure = ParsePresets(first + QLatin1String(lines), records);
        EXPECT_TRUE(failure.contains(QLatin1String(sentence))) << lines << ": " << failure.toStdString();
    }
    EXPECT_FALSE(ParsePresets(QString(), records).isEmpty());
    EXPECT_EQ(
        ParsePresets(first + QStringLiteral("1,A,seconds,3,read,,,signed,-1.000,32.767,0.001\n"), records),
        QString());
    EXPECT_EQ(records[1].Attributes, 12 * 32 + 8 + 3);
    EXPECT_EQ(records[1].Max, 32767);
}

} // namespace quorvik::testing
