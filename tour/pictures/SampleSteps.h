#pragma once

#include "operations/StepTest.h"

#include <deque>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** Gains that a step is made with. */
struct SampleGains {
    std::int32_t rawGain = 0;
    std::int32_t rawTime = 0;
};

/** A recording of a loop that answers to the same step with one set of gains after the other. */
class SampleSteps
{
public:
    SampleSteps(const ParameterTable &table, TunedLoop loop, const std::vector<SampleGains> &gains);

    TunedLoop Loop() const { return loop_; }
    /** What was stepped. */
    int Reference() const;
    const TrendData &Data() const { return data_; }
    double Percent() const; ///< height of the step
    double Seconds() const; ///< how long it holds
    /** The figures of the answers, as the program works them out; the newest first. */
    const std::deque<StepTry> &Tries() const { return tries_; }

private:
    TunedLoop loop_;
    TrendData data_;
    std::deque<StepTry> tries_;
};

} // namespace quorvik
