#include "platform/Terminal.h"

#include <csignal>
#include <unistd.h>

namespace quorvik
{

bool IsTerminal(std::FILE *stream)
{
    return ::isatty(::fileno(stream)) == 1;
}

void IgnoreClosedPipes()
{
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace quorvik
