#pragma once

#include "trend/forms/TrendHost.h"

namespace quorvik
{

struct Engines;

/** Lets the trend window reach the engines of this run. */
class TrendAccess : public TrendHost
{
public:
    explicit TrendAccess(Engines &engines)
        : engines_(engines)
    {
    }

    TrendRecorder &Recorder() override;
    TrendStore &Store() override;
    TripTrend &Trips() override;
    StepTest &Steps() override;

private:
    Engines &engines_;
};

} // namespace quorvik
