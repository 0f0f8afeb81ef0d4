#pragma once

#include <map>
#include <set>

namespace quorvik
{

/**
 * The account of one reading of the whole table, or of some rows beside it: which rows are still to be asked
 * for, and what it came to.
 *
 * It goes over the table as often as needed: again from the first row after a time-out, and where a stray
 * reply shows that values went to the wrong rows; then twice over the rows whose replies were damaged. A row
 * that breaks the reading off again and again is left out.
 *
 * A reading of some rows keeps what it has after a time-out, and goes on with the rest. What answers then may
 * be the reply that came too late, with the right one still to come; so the first row after a time-out is
 * read alone, and counts once the line has stayed quiet.
 */
class WholeRead
{
public:
    void Begin();
    void Begin(const std::set<int> &rows); ///< of these alone
    /** Nothing is to be asked for any more; what it came to stays. */
    void End() { isUnderWay_ = false; }

    bool IsUnderWay() const { return isUnderWay_; }
    /** Under way, and of some rows alone. */
    bool IsOfRows() const { return isUnderWay_ && isOfRows_; }
    /** The next row is to be read alone. */
    bool IsSettling() const { return isUnderWay_ && settling_ == Settling::RowToRead; }
    bool IsOver() const { return isOver_; } ///< came to its end, with or without rows that failed

    /** A scan is about to begin. @return False when there is nothing left to ask for. */
    bool BeginPass();
    void EndPass() { isPassDone_ = true; }
    /** Whether the scan is to ask for row p; always when no reading is under way. */
    bool Wants(int p) const;

    void RowRead(int p);
    void RowFailed(int p); ///< its reply was damaged
    void BrokeOff(int p);  ///< no reply, or one of a wrong length: the scan begins anew
    void BrokeOff();       ///< the same, at a read that is none of its rows
    void StrayReply();     ///< bytes came that nothing had asked for

    bool HasRead() const { return hasRead_; }
    bool IsInDoubt() const { return isInDoubt_; } ///< out of step to the end
    std::set<int> UnreadRows() const;
    int ReadCount() const { return int(read_.size()); } ///< of a reading of some rows

private:
    /** After a time-out, in a reading of some rows. */
    enum class Settling { None, RowToRead, RowRead };

    bool BeginPassOfRows();

    std::set<int> rows_; ///< of a reading of some rows: the ones still wanted
    std::set<int> read_; ///< and the ones that were read
    int lastRead_ = 0;
    Settling settling_ = Settling::None;
    int straysAfterBreaks_ = 0;
    bool isOfRows_ = false;
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
