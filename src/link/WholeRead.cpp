#include "link/WholeRead.h"

namespace quorvik
{

namespace
{

constexpr int MostPassesOverFailed = 2;
constexpr int MostFullPassesAgain = 3;
constexpr int MostBreaksOfARow = 3;

} // namespace

void WholeRead::Begin()
{
    *this = {};
    isUnderWay_ = true;
}

bool WholeRead::BeginPass()
{
    // A first pass that was broken off begins anew in any case, and so in step.
    const bool isOutOfStep = isOutOfStep_ && (isPassDone_ || passesOverFailed_ > 0);
    isOutOfStep_ = false;
    if (isOutOfStep && fullPassesAgain_ < MostFullPassesAgain) {
        ++fullPassesAgain_;
        passesOverFailed_ = 0;
        isPassDone_ = false;
    } else if (isOutOfStep) {
        isInDoubt_ = true;
    }
    if (!isPassDone_) {
        if (passesOverFailed_ == 0)
            failed_.clear();
        return true;
    }
    if (failed_.empty() || passesOverFailed_ == MostPassesOverFailed) {
        isOver_ = true;
        isUnderWay_ = false;
        return false;
    }
    ++passesOverFailed_;
    isPassDone_ = false;
    return true;
}

bool WholeRead::Wants(int p) const
{
    return !isUnderWay_ || ((passesOverFailed_ == 0 || failed_.contains(p)) && !givenUp_.contains(p));
}

void WholeRead::RowRead(int p)
{
    hasRead_ = hasRead_ || isUnderWay_;
    failed_.erase(p);
}

void WholeRead::RowFailed(int p)
{
    if (isUnderWay_)
        failed_.insert(p);
}

void WholeRead::BrokeOff(int p)
{
    if (isUnderWay_ && ++breaks_[p] >= MostBreaksOfARow)
        givenUp_.insert(p);
}

std::set<int> WholeRead::UnreadRows() const
{
    std::set<int> rows = failed_;
    rows.insert(givenUp_.begin(), givenUp_.end());
    return rows;
}

} // namespace quorvik
