#include "PresetsSource.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

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
