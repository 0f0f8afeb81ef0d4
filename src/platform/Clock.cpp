#include "platform/Clock.h"

#include <ctime>

namespace quorvik
{

qint64 MillisecondsUp()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

} // namespace quorvik
