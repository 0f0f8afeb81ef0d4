#include "platform/ProcessLimits.h"

#include <csignal>
#include <sys/resource.h>

namespace quorvik
{

bool LimitThisProcess(const ProcessLimits &limits)
{
    // A terminal sends it to both.
    std::signal(SIGINT, SIG_IGN);
    const auto limit = [](auto resource, std::uint64_t most) {
        const rlimit both = {rlim_t(most), rlim_t(most)};
        return ::setrlimit(resource, &both) == 0;
    };
    const bool holds = limit(RLIMIT_CPU, limits.cpuSeconds) && limit(RLIMIT_NOFILE, limits.handles) &&
                       limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_CORE, 0);
    return holds && (limits.memoryBytes == 0 || limit(RLIMIT_AS, limits.memoryBytes));
}

} // namespace quorvik
