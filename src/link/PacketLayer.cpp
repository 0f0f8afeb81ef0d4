#include "link/PacketLayer.h"

#include "platform/Arithmetic.h"

#include <QtEndian>
#include <array>

namespace quorvik
{

namespace
{

/** Exclusive-or of all bytes but the first. */
char BlockCheck(const QByteArray &packet)
{
    char check = 0;
    for (qsizetype i = 1; i < packet.size(); ++i)
        check = char(check ^ packet.at(i));
    return check;
}

void AppendField(QByteArray &packet, std::int16_t value)
{
    std::array<char, 2> scratch{};
    IntToBytes(scratch, value);
    packet.append(scratch[1]).append(scratch[0]);
}

} // namespace

void IntToBytes(std::span<char, 2> bytes, std::int16_t value)
{
    qToLittleEndian(value, bytes.data());
}

void LongToBytes(std::span<char, 4> bytes, std::int32_t value)
{
    qToLittleEndian(value, bytes.data());
}

std::int16_t BytesToInt(std::span<const char, 2> bytes)
{
    return qFromLittleEndian<std::int16_t>(bytes.data());
}

std::int32_t BytesToLong(std::span<const char, 4> bytes)
{
    return qFromLittleEndian<std::int32_t>(bytes.data());
}

QByteArray BuildPacket(Wire::Command command, std::int16_t paramNumber, std::int32_t rawValue,
                       bool isUnsigned)
{
    QByteArray packet;
    packet.reserve(7);
    packet.append(Wire::Stx).append(char(command));
    AppendField(packet, paramNumber);
    if (command == Wire::Command::Write) {
        std::array<char, 4> scratch{};
        LongToBytes(scratch, isUnsigned ? rawValue : ToInt16(rawValue));
        packet.append(scratch[1]).append(scratch[0]);
    }
    packet.append(BlockCheck(packet));
    return packet;
}

std::int32_t RetrieveData(char highByte, char lowByte, bool isUnsigned)
{
    const std::array<char, 4> scratch{lowByte, highByte, 0, 0};
    return isUnsigned ? BytesToLong(scratch) : BytesToInt(std::span(scratch).first<2>());
}

bool IsBccGood(const QByteArray &packet)
{
    return BlockCheck(packet) == 0;
}

} // namespace quorvik
