#include "platform/Termination.h"

#include <QSocketNotifier>
#include <array>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quorvik
{

#ifdef Q_OS_UNIX

namespace
{

/** A signal handler may do next to nothing but write; the event loop reads the other end. */
std::array<int, 2> pipeEnds = {-1, -1};

void HandleSignal(int)
{
    const int before = errno;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], "", 1);
    errno = before;
}

} // namespace

Termination::Termination()
{
    if (::pipe(pipeEnds.data()) != 0)
        return;
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *arrived = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(arrived, &QSocketNotifier::activated, this, [this, arrived] {
        arrived->setEnabled(false);
        Q_EMIT Requested();
    });
    struct sigaction action = {};
    action.sa_handler = HandleSignal;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

#else

Termination::Termination() = default;

#endif

} // namespace quorvik
