#pragma once

#include <map>
#include <set>

namespace quorvik
{

/**
 * The account of one reading of the whole table: which rows are still to be asked for, and what it came to.
 *
 * It goes over the table as often as needed: again from the first row after a time-out, and where a stray
 * reply shows that values went to the wrong rows; then twice over the rows whose replies were damaged. A row
 * that breaks the reading off again and again is left out.
 */
class WholeRead
{
public:
    void Begin();
    /** Nothing is to be asked for any more; what it came to stays. */
    void End() { isUnderWay_ = false; }

    bool IsUnderWay() const { return isUnderWay_; }
    bool IsOver() const { return isOver_; } ///< came to its end, with or without rows that failed

    /** A scan is about to begin. @return False when there is nothing left to ask for. */
    bool BeginPass();
    void EndPass() { isPassDone_ = true; }
    /** Whether the scan is to ask for row p; always when no reading is under way. */
    bool Wants(int p) const;

    void RowRead(int p);
    void RowFailed(int p);                     ///< its reply was damaged
    void BrokeOff(int p);                      ///< no reply, or one of a wrong length: the scan begins anew
    void StrayReply() { isOutOfStep_ = true; } ///< bytes came that nothing had asked for

    bool HasRead() const { return hasRead_; }
    bool IsInDoubt() const { return isInDoubt_; } ///< out of step to the end
    std::set<int> UnreadRows() const;

private:
    std::set<int> failed_;
    std::set<int> givenUp_;
    std::map<int, int> breaks_;
    int passesOverFailed_ = 0;
    int fullPassesAgain_ = 0;
    bool isUnderWay_ = false;
    bool isOver_ = false;
    bool isPassDone_ = false;
    bool isOutOfStep_ = false;
    bool isInDoubt_ = false;
    bool hasRead_ = false;
};

} // namespace quorvik
