#include "model/ReadInterest.h"

#include "model/ParameterTable.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

ReadInterest::~ReadInterest()
{
    while (!params_.empty()) {
        try {
            Clear();
        } catch (const RuntimeFailure &) {
            // The table has become shorter since, and has no such parameter any more.
        }
    }
}

void ReadInterest::Set(const std::set<int> &params)
{
    for (const int p : params)
        Add(p);
    for (auto at = params_.begin(); at != params_.end();) {
        if (params.contains(*at)) {
            ++at;
            continue;
        }
        // Taken off first: one that the table refuses must not be given back again at each tick.
        const int p = *at;
        at = params_.erase(at);
        table_.RemoveReadInterest(p);
    }
}

void ReadInterest::Add(int p)
{
    if (params_.contains(p))
        return;
    table_.AddReadInterest(p);
    params_.insert(p);
}

} // namespace quorvik
