#pragma once

namespace quorvik
{

/** Times and sizes of the journal. */
struct JournalTimings {
    int gatherMs = 100;     ///< how long changes are gathered for one transaction
    int movementMs = 1000;  ///< a slider that rests so long has ended its movement
    int busyMs = 2000;      ///< how long another program may hold the journal
    int retryMs = 30000;    ///< between two attempts to open a journal that cannot be written
    int closeMs = 3000;     ///< how long the program's end waits for the last transaction
    int mostRows = 100000;  ///< rows that stay, the newest
    int mostDays = 730;     ///< and for so long: two years
    int mostWaiting = 5000; ///< rows that are kept for a journal that cannot be written
};

} // namespace quorvik
