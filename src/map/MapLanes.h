#pragma once

#include <algorithm>
#include <vector>

namespace quorvik
{

/** A stretch of a wire in a gutter or a channel, with the places and directions of its two ends. */
struct Stretch {
    int wire = -1;
    double from = 0;
    double to = 0;
    int fromGoes = 0; ///< -1 to the left or up, 1 to the right or down
    int toGoes = 0;
    double lane = 0;

    double Low() const { return std::min(from, to); }
    double High() const { return std::max(from, to); }
    bool Covers(double place) const { return place > Low() && place < High(); }
};

/** Orders the stretches of a gutter or a channel so that few cross, and gives each a lane within the width
 * that begins at start; stretches that do not meet may share one. */
void LayLanes(std::vector<Stretch *> stretches, double start, double width);

} // namespace quorvik
