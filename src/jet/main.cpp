// quorvik-jet: reads a file of the older format from its standard input and prints what it holds. The file
// may be anybody's, so this is a process of its own with limits on time and memory, which can write nothing.

#include "jet/JetDump.h"
#include "platform/ProcessLimits.h"

#include <cstdlib>

#ifdef QUORVIK_SANITIZED
// Takes the place of the limit on address space, which the sanitizer cannot live with.
extern "C" const char *__asan_default_options(); // NOLINT(bugprone-reserved-identifier)
extern "C" const char *__asan_default_options()  // NOLINT(bugprone-reserved-identifier)
{
    return "hard_rss_limit_mb=512:max_allocation_size_mb=256:detect_leaks=0";
}
#endif

namespace
{

/** Without what a program usually does at its end, such as keeping what a coverage run has counted: this one
 * may write no file. */
[[noreturn]] void End(quorvik::JetExit exit)
{
    std::_Exit(int(exit));
}

} // namespace

int main()
{
    using namespace quorvik;
#ifdef QUORVIK_SANITIZED
    constexpr std::uint64_t memory = 0;
#else
    constexpr std::uint64_t memory = 256 * 1024 * 1024;
#endif
    const ProcessLimits limits = {memory, 2, 16};
    if (!LimitThisProcess(limits))
        End(JetExit::NoLimits);
    // Piece by piece: room for the longest file of all would take longer to come by than most files to read.
    constexpr std::size_t piece = 65536;
    std::vector<char> file;
    std::size_t taken = 0;
    do {
        const std::size_t before = file.size();
        file.resize(before + piece);
        taken = std::fread(file.data() + before, 1, piece, stdin);
        file.resize(before + taken);
    } while (taken == piece && file.size() <= JetMostFileSize);
    if (file.empty() || file.size() > JetMostFileSize)
        End(JetExit::Damaged);
    const JetExit exit = DumpJet(file, stdout);
    End(std::fflush(stdout) == 0 ? exit : JetExit::Damaged);
}
