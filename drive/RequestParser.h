#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>

namespace quorvik::drive
{

/** What the tool can send. Next and End are the single bytes that go on with a run of reads and end it. */
enum class RequestKind { Read, Write, Properties, Next, End, Bad };

struct Request {
    RequestKind kind = RequestKind::Bad;
    int param = -1;
    std::uint16_t bits = 0; ///< the value of a write
    int size = 0;           ///< bytes it took on the line, with what was skipped before it
};

/** Cuts the stream of received bytes into requests; what is none of them is skipped. */
class RequestParser
{
public:
    /** A pause on the line lets a begun packet go before new bytes are added. */
    void Add(const QByteArray &bytes, std::int64_t nowNs);
    /** The next whole request, or nothing until more bytes come. */
    std::optional<Request> Take();

private:
    QByteArray pending_;
    std::int64_t lastNs_ = 0;
};

} // namespace quorvik::drive
