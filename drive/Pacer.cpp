#include "drive/Pacer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvik::drive
{

std::int64_t Pacer::Arrived(std::int64_t now, int bytes)
{
    if (!IsPaced())
        return now;
    const std::int64_t sent = now - std::exchange(lateness_, 0);
    toolLineFree_ = std::max(toolLineFree_, double(sent)) + bytes * byteNs_;
    return std::llround(toolLineFree_);
}

std::int64_t Pacer::DueTime(std::int64_t from, int bytes)
{
    if (!IsPaced())
        return from;
    ownLineFree_ = std::max(ownLineFree_, double(from)) + bytes * byteNs_;
    return std::llround(ownLineFree_);
}

void Pacer::Sent(std::int64_t now, std::int64_t due)
{
    if (IsPaced())
        lateness_ = std::max<std::int64_t>(now - due, 0);
}

} // namespace quorvik::drive
