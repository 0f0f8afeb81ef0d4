// quorvik-jet: reads a file of the older format from its standard input and prints what it holds. The file
// may be anybody's, so this is a process of its own with limits on time and memory, which can write nothing.

#include "jet/JetDump.h"
#include "platform/ProcessLimits.h"

#ifdef QUORVIK_SANITIZED
// Takes the place of the limit on address space, which the sanitizer cannot live with.
extern "C" const char *__asan_default_options(); // NOLINT(bugprone-reserved-identifier)
extern "C" const char *__asan_default_options()  // NOLINT(bugprone-reserved-identifier)
{
    return "hard_rss_limit_mb=512:max_allocation_size_mb=256:detect_leaks=0";
}
#endif

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
        return int(JetExit::NoLimits);
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
        return int(JetExit::Damaged);
    const JetExit exit = DumpJet(file, stdout);
    return int(std::fflush(stdout) == 0 ? exit : JetExit::Damaged);
}
