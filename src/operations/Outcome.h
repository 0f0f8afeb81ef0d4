#pragma once

#include <vector>

namespace quorvik
{

/** What an operation came to. */
enum class Outcome {
    Done,
    Cancelled, ///< the user would rather not
    LinkLost,  ///< the line broke on the way
    Refused,   ///< nothing was begun, or the drive said no; the user has been told
    Partial,   ///< all but what is missing
};

struct OperationResult {
    Outcome outcome = Outcome::Done;
    std::vector<int> missing = {}; ///< parameters that were not read or not taken, in rising order

    bool IsDone() const { return outcome == Outcome::Done; }
};

} // namespace quorvik
