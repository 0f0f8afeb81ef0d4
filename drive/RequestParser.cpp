#include "drive/RequestParser.h"

namespace quorvik::drive
{

namespace
{

constexpr char Stx = 2;
constexpr char Eot = 4;
constexpr char Ack = 6;
constexpr char ReadCommand = 0;
constexpr char WriteCommand = 1;
constexpr char PropertiesCommand = 4;
constexpr int ReadLength = 5;
constexpr int WriteLength = 7;
constexpr std::int64_t PacketPauseNs = 100'000'000;

std::uint16_t Word(const QByteArray &bytes, int at)
{
    return std::uint16_t((std::uint8_t(bytes[at]) << 8) | std::uint8_t(bytes[at + 1]));
}

} // namespace

void RequestParser::Add(const QByteArray &bytes, std::int64_t nowNs)
{
    if (nowNs - lastNs_ > PacketPauseNs)
        pending_.clear();
    lastNs_ = nowNs;
    pending_ += bytes;
}

std::optional<Request> RequestParser::Take()
{
    Request request;
    const auto take = [&](int length) {
        pending_.remove(0, length);
        request.size += length;
        return request;
    };
    while (!pending_.isEmpty()) {
        const char first = pending_[0];
        if (first == Ack || first == Eot) {
            request.kind = first == Ack ? RequestKind::Next : RequestKind::End;
            return take(1);
        }
        if (first != Stx) {
            take(1);
            continue;
        }
        if (pending_.size() < 2)
            break;
        const char command = pending_[1];
        if (command != ReadCommand && command != WriteCommand && command != PropertiesCommand) {
            take(1);
            continue;
        }
        const int length = command == WriteCommand ? WriteLength : ReadLength;
        if (pending_.size() < length)
            break;
        char check = 0;
        for (int i = 1; i < length; ++i)
            check = char(check ^ pending_[i]);
        if (check != 0)
            return take(length);
        request.param = Word(pending_, 2);
        request.kind = RequestKind::Read;
        if (command == PropertiesCommand)
            request.kind = RequestKind::Properties;
        if (command == WriteCommand) {
            request.kind = RequestKind::Write;
            request.bits = Word(pending_, 4);
        }
        return take(length);
    }
    return std::nullopt;
}

} // namespace quorvik::drive
