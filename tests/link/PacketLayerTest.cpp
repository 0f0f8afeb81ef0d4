#include "link/PacketLayer.h"

#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(PacketLayer, BuildsRequestsByteForByte)
{
    const struct {
        Wire::Command command;
        std::int16_t number;
        std::int32_t rawValue;
        bool isUnsigned;
        const char *hex;
    } cases[] = {
        {Wire::Command::Read, 422, 0, false, "020001a6a7"},
        {Wire::Command::ReadProperties, 1, 0, false, "0204000105"},
        {Wire::Command::Write, 406, 1, false, "02010196000197"},
        {Wire::Command::Write, 64, 70000, true, "02010040117020"},
        {Wire::Command::Write, 64, -1, true, "02010040ffff41"},
        {Wire::Command::Write, 7, -2, false, "02010007fffe07"},
        {Wire::Command::Write, 7, -32768, false, "02010007800086"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(BuildPacket(c.command, c.number, c.rawValue, c.isUnsigned).toHex(), QByteArray(c.hex));
    for (const std::int32_t tooFar : {32768, -32769})
        EXPECT_THROW(BuildPacket(Wire::Command::Write, 7, tooFar, false), RuntimeFailure);
}

TEST(PacketLayer, DecodesAFieldByTheParametersSign)
{
    EXPECT_EQ(RetrieveData('\xff', '\xfe', true), 65534);
    EXPECT_EQ(RetrieveData('\xff', '\xfe', false), -2);
    EXPECT_EQ(RetrieveData('\x80', '\x00', false), -32768);
    EXPECT_EQ(RetrieveData('\x7f', '\x01', false), 32513);
}

TEST(PacketLayer, ChecksAllBytesButTheFirst)
{
    const QByteArray good = QByteArray::fromHex("0200112233");
    for (const char first : {'\x00', '\x02', '\x55'})
        EXPECT_TRUE(IsBccGood(QByteArray(good).replace(0, 1, QByteArray(1, first))));
    for (int i = 1; i < good.size(); ++i) {
        QByteArray bad = good;
        bad[i] = char(bad.at(i) ^ 0x10);
        EXPECT_FALSE(IsBccGood(bad)) << i;
    }
}

} // namespace quorvik
