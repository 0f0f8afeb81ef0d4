#pragma once

#include <span>

namespace quorvik
{

/** Channels that are recorded together for one purpose. */
struct TrendTemplate {
    const char *title;
    std::span<const int> params; ///< in the order in which they are shown
};

/** What a user can begin with instead of choosing each channel. */
std::span<const TrendTemplate> TrendTemplates();

} // namespace quorvik
