#include "TracedChild.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <elf.h>
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

namespace
{

#ifdef __x86_64__
using Registers = user_regs_struct;
void SkipCall(Registers &registers)
{
    registers.orig_rax = ~0ULL;
}
void SetResult(Registers &registers, long result)
{
    registers.rax = static_cast<unsigned long long>(result);
}
constexpr bool KnowsRegisters = true;

bool IsAmong(long number, std::initializer_list<long> calls)
{
    return std::ranges::find(calls, number) != calls.end();
}

bool IsHit(ChildFault::Kind kind, const Registers &registers)
{
    const long number = long(registers.orig_rax);
    switch (kind) {
    case ChildFault::Kind::Kill:
        return true;
    case ChildFault::Kind::DiskFull:
        return IsAmong(number,
                       {SYS_write, SYS_pwrite64, SYS_writev, SYS_pwritev, SYS_ftruncate, SYS_fallocate});
    case ChildFault::Kind::DiskBad:
        return IsAmong(number, {SYS_fsync, SYS_fdatasync, SYS_sync_file_range});
    case ChildFault::Kind::Locked:
        return (number == SYS_open && (registers.rsi & O_CREAT) != 0) ||
               (number == SYS_openat && (registers.rdx & O_CREAT) != 0) ||
               IsAmong(number, {SYS_rename, SYS_renameat, SYS_renameat2, SYS_unlink, SYS_unlinkat, SYS_link,
                                SYS_linkat, SYS_chmod, SYS_fchmod, SYS_fchmodat});
    }
    return false;
}
#else
using Registers = std::array<long, 1>;
void SkipCall(Registers &) {}
void SetResult(Registers &, long) {}
constexpr bool KnowsRegisters = false;
bool IsHit(ChildFault::Kind kind, const Registers &)
{
    return kind == ChildFault::Kind::Kill;
}
#endif

int RefusalOf(ChildFault::Kind kind)
{
    return kind == ChildFault::Kind::DiskFull ? ENOSPC : kind == ChildFault::Kind::DiskBad ? EIO : EACCES;
}

bool Exchange(__ptrace_request request, pid_t child, Registers &registers)
{
    iovec area{&registers, sizeof registers};
    return ::ptrace(request, child, NT_PRSTATUS, &area) == 0;
}

pid_t StartStopped(const std::function<int()> &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(127);
        ::raise(SIGSTOP);
        ::_exit(work());
    }
    return child;
}

/** Lets the child run to its next entry into or return from a system call. @return False when it has ended.
 */
bool Advance(pid_t child, int &status)
{
    long signal = 0;
    for (;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        if (::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
            return false;
        if (WSTOPSIG(status) == (SIGTRAP | 0x80))
            return true;
        signal = WSTOPSIG(status);
    }
}

} // namespace

bool CanTraceChildren()
{
    return KnowsRegisters && RunUnderFault({ChildFault::Kind::Kill, 1 << 20}, [] { return 3; }).exitCode == 3;
}

ChildEnd RunUnderFault(const ChildFault &fault, const std::function<int()> &work)
{
    ChildEnd end;
    int status = 0;
    const pid_t child = StartStopped(work);
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        return end;
    if (WIFSTOPPED(status)) {
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        int calls = 0;
        while (Advance(child, status)) {
            Registers registers{};
            Exchange(PTRACE_GETREGSET, child, registers);
            const bool isStruck = IsHit(fault.kind, registers) && ++calls >= fault.at;
            end.wasStruck |= isStruck;
            if (isStruck && fault.kind == ChildFault::Kind::Kill) {
                ::kill(child, SIGKILL);
            } else if (isStruck) {
                SkipCall(registers);
                Exchange(PTRACE_SETREGSET, child, registers);
            }
            if (!Advance(child, status))
                break;
            if (isStruck) {
                Exchange(PTRACE_GETREGSET, child, registers);
                SetResult(registers, -RefusalOf(fault.kind));
                Exchange(PTRACE_SETREGSET, child, registers);
            }
        }
    }
    if (WIFEXITED(status))
        end.exitCode = WEXITSTATUS(status);
    return end;
}

} // namespace quorvik::testing
