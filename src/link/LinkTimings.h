#pragma once

namespace quorvik
{

/** Intervals and time-outs of the drive link, in milliseconds. Tests inject shorter ones. */
struct LinkTimings {
    int scanPause = 300;       ///< SerialCommTimer: pause between scans
    int replyTimeout = 220;    ///< SerialCommTimeout: longest wait for one reply
    int latePause = 0;         ///< the pause after a reply that did not come, where it is the longer one
    int sizeErrorPause = 1000; ///< what is still arriving after a wrong length has arrived by then
    int lastCommand = 1000;    ///< how long going off line waits for a Run, Stop or Jog to leave
    int quiet = 25;            ///< after a reading beside the table: what was sent too much has come by then
    int sampleEvery = 20;      ///< within a scan, between two rounds over the sampled parameters
    int sampleQuiet = 2000;    ///< the longest that sampling goes on without a pause that shows it in step
    int quietStep = 5;         ///< how long such a pause keeps a write waiting
    int liveLimit = 2000;      ///< a value that was confirmed longer ago is old
    int stateUpdate = 100;     ///< how soon the change of a value's state is told
    int refusedMark = 60000;   ///< how long a refusal stays marked
};

} // namespace quorvik
