#include "link/WholeRead.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int MostPassesOverFailed = 2;
constexpr int MostFullPassesAgain = 3;
constexpr int MostBreaksOfARow = 3;
constexpr int MostStraysAfterBreaks = 5;

} // namespace

void WholeRead::Begin()
{
    *this = {};
    isUnderWay_ = true;
}

void WholeRead::Begin(const std::set<int> &rows)
{
    Begin();
    isOfRows_ = true;
    rows_ = rows;
}

void WholeRead::StrayReply()
{
    if (settling_ == Settling::RowRead && ++straysAfterBreaks_ <= MostStraysAfterBreaks) {
        // The row was answered by what came too late.
        settling_ = Settling::RowToRead;
        read_.erase(lastRead_);
        rows_.insert(lastRead_);
        return;
    }
    // What comes late is thrown away, and nothing else has been asked for since.
    if (settling_ != Settling::RowToRead)
        isOutOfStep_ = true;
}

bool WholeRead::BeginPassOfRows()
{
    if (settling_ == Settling::RowRead)
        settling_ = Settling::None;
    if (std::exchange(isOutOfStep_, false)) {
        if (fullPassesAgain_ < MostFullPassesAgain) {
            ++fullPassesAgain_;
            passesOverFailed_ = 0;
            rows_.merge(read_);
        } else {
            isInDoubt_ = true;
        }
    }
    if (std::exchange(isPassDone_, false)) {
        const bool isAnyLeft = std::any_of(rows_.begin(), rows_.end(), [this](int p) { return Wants(p); });
        if (!isAnyLeft || passesOverFailed_ == MostPassesOverFailed) {
            isOver_ = true;
            isUnderWay_ = false;
            return false;
        }
        ++passesOverFailed_;
    }
    return true;
}

bool WholeRead::BeginPass()
{
    if (isOfRows_)
        return BeginPassOfRows();
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
    if (IsOfRows())
        return rows_.contains(p) && !givenUp_.contains(p);
    return !isUnderWay_ || ((passesOverFailed_ == 0 || failed_.contains(p)) && !givenUp_.contains(p));
}

void WholeRead::RowRead(int p)
{
    hasRead_ = hasRead_ || isUnderWay_;
    failed_.erase(p);
    if (!IsOfRows())
        return;
    rows_.erase(p);
    read_.insert(p);
    lastRead_ = p;
    if (settling_ == Settling::RowToRead)
        settling_ = Settling::RowRead;
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
    BrokeOff();
}

void WholeRead::BrokeOff()
{
    if (IsOfRows())
        settling_ = Settling::RowToRead;
}

std::set<int> WholeRead::UnreadRows() const
{
    if (isOfRows_)
        return rows_;
    std::set<int> rows = failed_;
    rows.insert(givenUp_.begin(), givenUp_.end());
    return rows;
}

} // namespace quorvik
