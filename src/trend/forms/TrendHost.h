#pragma once

namespace quorvik
{

class StepTest;
class TrendRecorder;
class TrendStore;
class TripTrend;

/** What the trend window needs beside the desk. The shell answers with the engines of this run, a picture of
 * the window with some of its own. */
class TrendHost
{
public:
    virtual ~TrendHost() = default;

    virtual TrendRecorder &Recorder() = 0;
    virtual TrendStore &Store() = 0;
    virtual TripTrend &Trips() = 0;
    virtual StepTest &Steps() = 0;
};

} // namespace quorvik
