#pragma once

namespace quorvik
{

/** One row of a page order table: from a page to another, under a condition on the answers. */
template<typename Answers> struct PageRow {
    int from;
    bool (Answers::*when)() const; ///< null: always
    int to;
};

/** The page that the first fitting row leads to, or otherwise. */
template<typename Answers, std::size_t Count>
int FollowRows(const PageRow<Answers> (&rows)[Count], const Answers &answers, int step, int otherwise)
{
    for (const PageRow<Answers> &row : rows)
        if (row.from == step && (row.when == nullptr || (answers.*row.when)()))
            return row.to;
    return otherwise;
}

} // namespace quorvik
