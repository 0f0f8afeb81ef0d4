#pragma once

#include <QStringList>
#include <cstdint>
#include <memory>
#include <vector>

namespace quorvik::testing
{

/** What one run of the soak came to. */
struct SoakFigures {
    std::int64_t transactions = 0; ///< requests that reached the drive
    std::int64_t faults = 0;
    std::int64_t lateReplies = 0; ///< of the faults
    std::int64_t entries = 0;     ///< values that the user entered
    std::int64_t rowChanges = 0;  ///< of the tool's table, each of them checked
    std::int64_t foreignRows = 0; ///< rows that took a value which was neither sent for them nor entered
    std::int64_t wentOffLine = 0;
    std::int64_t standStills = 0; ///< waits that only the user's own switch could end
    QStringList problems;         ///< what did not hold at the end, a sentence each
};

/**
 * The real engine against the real simulated drive over a pseudo-terminal while the line fails, a user edits,
 * and windows come and go. Both ends live in one event loop, so that their timers keep their order on a busy
 * machine, and the drive's values are changed by the soak alone, so that all of them are known.
 */
class LineSoak
{
public:
    LineSoak(const QString &presets, std::uint32_t seed);
    ~LineSoak();

    /** Before the time-out, within the pause after it, and near the end of that pause. */
    static std::vector<int> LateWithinPromise() { return {100, 200, 240, 300, 400, 500}; }

    /**
     * @param rate of spoiled transactions, 0 to 1, over all kinds of faults.
     * @param lateMs how late the late replies are, with the tool's own intervals.
     * @return the figures of this run alone; problems are those of all runs.
     */
    SoakFigures Run(double rate, std::int64_t transactions,
                    const std::vector<int> &lateMs = LateWithinPromise());

private:
    class BothEnds;
    std::unique_ptr<BothEnds> ends_;
};

} // namespace quorvik::testing
