#pragma once

#include "link/ParamValue.h"

#include <deque>
#include <map>
#include <vector>

namespace quorvik
{

/**
 * The account of values that are sent to the drive beside the table, in their order. What the drive refuses
 * takes its turn again in the next round, since what stood in its way may be changed by then; it is given up
 * after three refusals, once a round has brought nothing at all.
 */
class StoreList
{
public:
    void Begin(std::vector<ParamValue> values);
    /** Nothing is to be sent any more. */
    void End() { *this = {}; }
    /** The same, once the answer that is awaited has come. */
    void Stop() { isStopping_ = true; }

    bool IsUnderWay() const { return isUnderWay_; }
    bool IsStopping() const { return isStopping_; }
    /** Nothing is left to be sent in this round. */
    bool IsRoundOver() const { return left_.empty(); }
    /** Begins another round with what was refused. @return False when there is none to begin. */
    bool BeginRound();

    /** The value whose turn it is; the round must not be over. */
    const ParamValue &Next() const { return left_.front(); }
    void Taken();
    void Refused();

    int TakenCount() const { return taken_; }
    /** What was refused and not taken since. */
    const std::vector<ParamValue> &RefusedOnes() const { return refused_; }

private:
    std::deque<ParamValue> left_;
    std::vector<ParamValue> refused_;
    std::map<int, int> refusals_; ///< by parameter
    int taken_ = 0;
    bool hasTakenInRound_ = false;
    bool isUnderWay_ = false;
    bool isStopping_ = false;
};

} // namespace quorvik
