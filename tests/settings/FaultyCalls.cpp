// The functions here stand before those of the C library, for this program and all libraries that it loads.

#include "FaultyCalls.h"

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

namespace
{

constexpr int StruckBit = 64;

std::optional<Fault> fault;
int callsLeft = 0;
bool wasStruck = false;

bool IsRefused(Fault kind, int error)
{
    if (!fault || (*fault != Fault::Kill && *fault != kind) || --callsLeft > 0)
        return false;
    if (*fault == Fault::Kill)
        ::kill(::getpid(), SIGKILL);
    wasStruck = true;
    errno = error;
    return true;
}

template<typename Function> Function *Real(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

#define FAULTY(name, kind, error, result, parameters, arguments)                                             \
    result Faulty_##name parameters asm(#name);                                                              \
    result Faulty_##name parameters                                                                          \
    {                                                                                                        \
        static auto *const real = Real<result parameters>(#name);                                            \
        return IsRefused(Fault::kind, error) ? -1 : real arguments;                                          \
    }
#define FAULTY_OPEN(name)                                                                                    \
    int Faulty_##name(const char *, int, mode_t) asm(#name);                                                 \
    int Faulty_##name(const char *path, int flags, mode_t mode)                                              \
    {                                                                                                        \
        static auto *const real = Real<int(const char *, int, ...)>(#name);                                  \
        return (flags & O_CREAT) != 0 && IsRefused(Fault::Locked, EACCES) ? -1 : real(path, flags, mode);    \
    }

FAULTY(write, DiskFull, ENOSPC, ssize_t, (int file, const void *bytes, size_t size), (file, bytes, size))
FAULTY(pwrite, DiskFull, ENOSPC, ssize_t, (int file, const void *bytes, size_t size, off_t at),
       (file, bytes, size, at))
FAULTY(pwrite64, DiskFull, ENOSPC, ssize_t, (int file, const void *bytes, size_t size, off64_t at),
       (file, bytes, size, at))
FAULTY(ftruncate64, DiskFull, ENOSPC, int, (int file, off64_t size), (file, size))
FAULTY(fsync, DiskBad, EIO, int, (int file), (file))
FAULTY(fdatasync, DiskBad, EIO, int, (int file), (file))
FAULTY(rename, Locked, EACCES, int, (const char *from, const char *to), (from, to))
FAULTY(unlink, Locked, EACCES, int, (const char *path), (path))
FAULTY(chmod, NoModes, EPERM, int, (const char *path, mode_t mode), (path, mode))
FAULTY(chown, NoModes, EPERM, int, (const char *path, uid_t owner, gid_t group), (path, owner, group))
FAULTY_OPEN(open)
FAULTY_OPEN(open64)

ChildEnd RunUnderFault(Fault kind, int at, const std::function<int()> &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        fault = kind;
        callsLeft = at;
        const int code = work();
        ::_exit(code | (wasStruck ? StruckBit : 0));
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        return {};
    if (!WIFEXITED(status))
        return {true, std::nullopt};
    return {(WEXITSTATUS(status) & StruckBit) != 0, WEXITSTATUS(status) & ~StruckBit};
}

} // namespace quorvik::testing
