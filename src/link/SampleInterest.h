#pragma once

#include "link/DriveLink.h"

#include <set>
#include <utility>

namespace quorvik
{

/** The parameters that one owner wants to be read as often as the line allows. They are given back when it
 * goes. */
class SampleInterest
{
public:
    /** @param link must outlive it. */
    explicit SampleInterest(DriveLink &link)
        : link_(link)
    {
    }
    ~SampleInterest() { Set({}); }
    SampleInterest(const SampleInterest &) = delete;
    SampleInterest &operator=(const SampleInterest &) = delete;

    /** From now on these are wanted, and no others. */
    void Set(const std::set<int> &params)
    {
        for (const int p : params)
            link_.AddSampling(p);
        for (const int p : std::exchange(params_, params))
            link_.RemoveSampling(p);
    }
    const std::set<int> &Params() const { return params_; }

private:
    DriveLink &link_;
    std::set<int> params_;
};

} // namespace quorvik
