#pragma once

namespace quorvik
{

/** Times and sizes of the trend recorder. */
struct TrendTimings {
    int keepMs = 60000; ///< how long a sample is kept in memory, unless told otherwise
    int leastKeepMs = 1000;
    int mostKeepMs = 3600000; ///< an hour
    int fastGapMs = 250;      ///< a fast channel silent for longer has a gap: longer than a time-out
    int slowGapMs = 2000;     ///< the same of a slow channel: as long as a value is live
    int rateMs = 2000;        ///< the true rate of a channel is told of this time
    int storeMs = 500;        ///< between two transactions of a recording's file
    int storeRetryMs = 3000;  ///< after one that failed
    int storePruneMs = 10000; ///< between two times that what is too old is taken out of the file
    int storeBusyMs = 1000;   ///< how long another program may hold a recording's file
    int storeCloseMs = 5000;  ///< how long the end of the program waits for what is not written yet
    int mostRunning = 30;     ///< recordings that were written along and that nobody kept
    int mostTrips = 50;       ///< recordings of trips that nobody kept
    int tripMs = 30000;       ///< what is kept of the time before a trip
    int afterTripMs = 5000;   ///< and after it
    int mostFast = 8;         ///< channels
    int mostSlow = 24;
    int mostCaptures = 10;
    int mostMarks = 2000;
};

} // namespace quorvik
