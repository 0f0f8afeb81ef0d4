#include "link/StoreList.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int LeastRefusals = 3;

} // namespace

void StoreList::Begin(std::vector<ParamValue> values)
{
    *this = {};
    left_.assign(values.begin(), values.end());
    isUnderWay_ = true;
}

bool StoreList::BeginRound()
{
    const bool isWorthIt = std::exchange(hasTakenInRound_, false) ||
                           std::any_of(refused_.begin(), refused_.end(),
                                       [this](auto value) { return refusals_[value.param] < LeastRefusals; });
    if (refused_.empty() || !isWorthIt)
        return false;
    left_.assign(refused_.begin(), refused_.end());
    refused_.clear();
    return true;
}

void StoreList::Taken()
{
    left_.pop_front();
    ++taken_;
    hasTakenInRound_ = true;
}

void StoreList::Refused()
{
    ++refusals_[left_.front().param];
    refused_.push_back(left_.front());
    left_.pop_front();
}

} // namespace quorvik
