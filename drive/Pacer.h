#pragma once

#include <cstdint>

namespace quorvik::drive
{

/**
 * The times at which bytes would have passed a serial line, in nanoseconds of one steady clock. Nothing here
 * waits: who sends asks when the last byte of a reply is due.
 *
 * A timer always wakes late. What one reply was late is taken off the arrival of the request that follows it,
 * so that lateness does not add up over a long run of transactions and the average is the line's own.
 */
class Pacer
{
public:
    /** @param baud bits a second at ten bits a byte; 0 for a line that takes no time. */
    explicit Pacer(int baud = 0)
        : byteNs_(baud > 0 ? 10'000'000'000.0 / baud : 0.0)
    {
    }

    bool IsPaced() const { return byteNs_ > 0; }

    /** Bytes were found at now. @return when the last of them would have arrived. */
    std::int64_t Arrived(std::int64_t now, int bytes);
    /** A reply may start at from. @return when its last byte is due. */
    std::int64_t DueTime(std::int64_t from, int bytes);
    /** A reply that was due went out at now. */
    void Sent(std::int64_t now, std::int64_t due);

private:
    double byteNs_;
    double toolLineFree_ = 0; ///< when the tool's last byte so far has arrived
    double ownLineFree_ = 0;
    std::int64_t lateness_ = 0;
};

} // namespace quorvik::drive
