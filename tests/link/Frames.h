#pragma once

#include <QByteArray>
#include <initializer_list>

namespace quorvik::testing
{

/** The two bytes of a frame's head with fields of two bytes and the check character behind them. */
inline QByteArray Frame(char first, char second, std::initializer_list<int> fields)
{
    QByteArray bytes;
    bytes.append(first).append(second);
    for (const int field : fields)
        bytes.append(char(field >> 8)).append(char(field));
    char check = 0;
    for (const char byte : bytes.mid(1))
        check = char(check ^ byte);
    return bytes.append(check);
}
inline QByteArray ReadRequest(int p)
{
    return Frame(2, 0, {p});
}
inline QByteArray WriteRequest(int p, int rawValue)
{
    return Frame(2, 1, {p, rawValue});
}
inline QByteArray PropsRequest(int p)
{
    return Frame(2, 4, {p});
}
inline QByteArray ValueReply(int rawValue)
{
    return Frame(0x55, 7, {rawValue});
}
inline QByteArray PropsReply(int min, int max, int attrib, int preset, int value)
{
    return Frame(0x55, 7, {min, max, attrib, preset, value});
}
/** One bit of a value the other way. */
inline QByteArray Spoiled(QByteArray reply)
{
    reply[2] = char(reply.at(2) ^ 1);
    return reply;
}
inline const QByteArray Ack(1, 6);
inline const QByteArray Nak(1, 21);
inline const QByteArray Eot(1, 4);

} // namespace quorvik::testing
