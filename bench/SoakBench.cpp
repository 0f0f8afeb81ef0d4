// The soak of the drive link under faults of the line.

#include "Figures.h"
#include "LineSoak.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace quorvik::testing;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::int64_t wanted = argc > 1 ? std::atoll(argv[1]) : 200'000;
    const std::uint32_t seed = argc > 2 ? std::uint32_t(std::atoi(argv[2])) : 1;
    constexpr double rates[] = {0.001, 0.003, 0.01, 0.03, 0.1};

    QElapsedTimer clock;
    clock.start();
    LineSoak soak(QStringLiteral(QUORVIK_PRESETS_FILE), seed);
    soak.Run(0.1, wanted / 100);
    const double memoryBefore = ResidentMiB();
    std::int64_t transactions = 0;
    std::int64_t foreignRows = 0;
    int problems = 0;
    for (const double rate : rates) {
        const SoakFigures figures = soak.Run(rate, wanted / std::int64_t(std::size(rates)));
        std::printf(
            "# rate %.1f %%: %lld transactions, %lld faults, %lld entries, %lld row changes, %lld times off "
            "line, %lld stand-stills\n",
            rate * 100, static_cast<long long>(figures.transactions), static_cast<long long>(figures.faults),
            static_cast<long long>(figures.entries), static_cast<long long>(figures.rowChanges),
            static_cast<long long>(figures.wentOffLine), static_cast<long long>(figures.standStills));
        for (const QString &problem : figures.problems)
            std::printf("# %s\n", qPrintable(problem));
        std::fflush(stdout);
        transactions += figures.transactions;
        foreignRows += figures.foreignRows;
        problems = int(figures.problems.size());
    }
    const double grown = ResidentMiB() - memoryBefore;
    // Past the time-out and the pause together a reply meets the next request, and nothing in it tells the
    // two apart.
    const SoakFigures beyond = soak.Run(0.1, wanted / 20, {540, 600, 700, 900});
    // Closer to the tool's own intervals: how old a value may be is a matter of milliseconds here.
    constexpr int claimHaste = 4;
    constexpr std::int64_t leastClaims = 20'000;
    LineSoak honest(QStringLiteral(QUORVIK_PRESETS_FILE), seed + 1, claimHaste);
    const SoakFigures claims = honest.Run(0.03, std::max(wanted / 10, leastClaims));
    std::printf("soak-live-claims: %lld over %lld transactions with %lld faults\n",
                static_cast<long long>(claims.liveClaims), static_cast<long long>(claims.transactions),
                static_cast<long long>(claims.faults));
    std::printf("soak-false-live-claims: %lld (limit 0)\n", static_cast<long long>(claims.falseClaims));
    std::printf("soak-transactions: %lld (at least %lld)\n", static_cast<long long>(transactions),
                static_cast<long long>(wanted));
    std::printf("soak-foreign-rows: %lld (limit 0)\n", static_cast<long long>(foreignRows));
    std::printf("soak-problems-after-faults: %d (limit 0)\n", problems);
    std::printf("soak-memory-growth: %.2f MiB (limit 1)\n", grown);
    std::printf(
        "soak-foreign-rows-beyond-promise: %lld of %lld replies that were 540 to 900 ms late (limit none)\n",
        static_cast<long long>(beyond.foreignRows), static_cast<long long>(beyond.lateReplies));
    std::printf("soak-time: %.0f s\n", double(clock.elapsed()) / 1000);
    return foreignRows == 0 && claims.falseClaims == 0 && problems == 0 && grown <= 1 &&
                   transactions >= wanted
               ? 0
               : 1;
}
