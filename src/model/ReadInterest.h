#pragma once

#include <set>

namespace quorvik
{

class ParameterTable;

/** The parameters that one owner wants to be read again and again while the link is up. They are given back
 * when it goes. */
class ReadInterest
{
public:
    /** @param table may go before this while nothing is wanted. */
    explicit ReadInterest(ParameterTable &table)
        : table_(table)
    {
    }
    ~ReadInterest();
    ReadInterest(const ReadInterest &) = delete;
    ReadInterest &operator=(const ReadInterest &) = delete;

    /** From now on these are wanted, and no others. Raises RuntimeFailure of one outside the table. */
    void Set(const std::set<int> &params);
    /** These as well. Raises RuntimeFailure of one outside the table. */
    void Add(int p);
    void Clear() { Set({}); }

    bool Contains(int p) const { return params_.contains(p); }
    const std::set<int> &Params() const { return params_; }

private:
    ParameterTable &table_;
    std::set<int> params_;
};

} // namespace quorvik
