#include "operations/StepTest.h"

#include "model/ParameterTable.h"
#include "model/ShownText.h"

namespace quorvik
{

StepTest::StepTest(ParameterTable &table, DriveLink &link, ValueStates &states, TrendRecorder &recorder,
                   DriveOperations &, Asker &asker, const StepTimings &timings)
    : table_(table)
    , link_(link)
    , states_(states)
    , recorder_(recorder)
    , asker_(asker)
    , timings_(timings)
    , polled_(table)
    , sampled_(link)
{
}

int StepTest::SetpointOf(TunedLoop loop)
{
    return loop == TunedLoop::Velocity ? Param::FinalVelDemand : Param::FinalIDemand;
}

int StepTest::FeedbackOf(TunedLoop loop)
{
    return loop == TunedLoop::Velocity ? Param::VelFeedback : Param::CurrentFeedback;
}

std::vector<int> StepTest::GainsOf(TunedLoop loop) const
{
    if (loop == TunedLoop::Current)
        return {Param::IProportionalGain, Param::IIntegralTime};
    if (table_.Value(Param::GainSelect) != 0)
        return {Param::PropGainB, Param::IntegralTimeB, Param::OvershootGainB};
    return {Param::PropGainA, Param::IntegralTimeA, Param::OvershootGainA};
}

StepSources StepTest::SourcesOf(TunedLoop) const
{
    return {{}, QStringLiteral("Steps are not made yet.")};
}

bool StepTest::IsRamped(int) const
{
    return false;
}

bool StepTest::Make(const StepWish &)
{
    return false;
}

bool StepTest::RecordNext(TunedLoop, int)
{
    return false;
}

void StepTest::Restore() {}

int StepTest::LeftMs() const
{
    return 0;
}

bool StepTest::CanRestoreLeftover() const
{
    return false;
}

void StepTest::RestoreLeftover() {}

} // namespace quorvik
