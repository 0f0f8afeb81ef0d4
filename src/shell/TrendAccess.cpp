#include "shell/TrendAccess.h"

#include "operations/Engines.h"

namespace quorvik
{

TrendRecorder &TrendAccess::Recorder()
{
    return engines_.trend;
}

TrendStore &TrendAccess::Store()
{
    return engines_.recordings;
}

TripTrend &TrendAccess::Trips()
{
    return engines_.tripTrend;
}

StepTest &TrendAccess::Steps()
{
    return engines_.steps;
}

} // namespace quorvik
