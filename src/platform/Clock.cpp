#include "platform/Clock.h"

#include <chrono>
#include <ctime>

namespace quorvik
{

qint64 MillisecondsUp()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

qint64 MicrosecondsUp()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace quorvik
