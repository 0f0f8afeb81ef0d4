#pragma once

#include <QByteArray>
#include <cstdint>
#include <span>

namespace quorvik
{

/** Bytes of the drive's request and reply protocol; see docs/protocol.md. */
namespace Wire
{
inline constexpr char Stx = 0x02;
inline constexpr char Eot = 0x04;
inline constexpr char Ack = 0x06;

enum class Command : std::uint8_t { Read = 0, Write = 1, ReadProperties = 4 };

inline constexpr int ReadReplyLength = 5;
inline constexpr int WriteReplyLength = 1;
inline constexpr int PropertiesReplyLength = 13;
} // namespace Wire

/** Copies a value to the start of bytes, least significant byte first. */
void IntToBytes(std::span<char, 2> bytes, std::int16_t value);
void LongToBytes(std::span<char, 4> bytes, std::int32_t value);
/** The value at the start of bytes, least significant byte first. */
std::int16_t BytesToInt(std::span<const char, 2> bytes);
std::int32_t BytesToLong(std::span<const char, 4> bytes);

/**
 * The bytes of a request.
 * @param rawValue sent by writes only; an unsigned parameter's is cut to its low 16 bits, a signed one's must
 * lie in -32768 to 32767 or RuntimeFailure is raised.
 * @param isUnsigned whether the parameter has Attr::Long.
 */
QByteArray BuildPacket(Wire::Command command, std::int16_t paramNumber, std::int32_t rawValue,
                       bool isUnsigned);

/** One 16-bit field of a reply: 0 to 65535 or -32768 to 32767. */
std::int32_t RetrieveData(char highByte, char lowByte, bool isUnsigned);

/** Whether the bytes from the second to the last, check character included, xor to 0. The first is not
 * examined. */
bool IsBccGood(const QByteArray &packet);

} // namespace quorvik
