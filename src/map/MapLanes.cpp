#include "map/MapLanes.h"

#include <cstddef>

namespace quorvik
{

namespace
{

constexpr double LanePitch = 9;
constexpr double LaneRoom = 8; ///< between a lane and the cards
/** Lanes that end nearer to each other than this do not follow each other in one line. */
constexpr double LaneGap = 6;

/** Crossings that come of one stretch lying before another. */
int Crossings(const Stretch &before, const Stretch &behind)
{
    return int(before.fromGoes > 0 && behind.Covers(before.from)) +
           int(before.toGoes > 0 && behind.Covers(before.to)) +
           int(behind.fromGoes < 0 && before.Covers(behind.from)) +
           int(behind.toGoes < 0 && before.Covers(behind.to));
}

/** Orders stretches and numbers their lanes. @return how many lanes there are. */
int AssignLanes(std::vector<Stretch *> &stretches)
{
    std::ranges::stable_sort(stretches, [](const Stretch *one, const Stretch *other) {
        return one->from + one->to < other->from + other->to;
    });
    for (bool better = true; better;) {
        better = false;
        for (std::size_t i = 0; i + 1 < stretches.size(); ++i)
            for (std::size_t k = i + 1; k < stretches.size(); ++k) {
                // What changes when the k-th moves before the i-th.
                int gain = 0;
                for (std::size_t between = i; between < k; ++between)
                    gain += Crossings(*stretches[between], *stretches[k]) -
                            Crossings(*stretches[k], *stretches[between]);
                if (gain <= 0)
                    continue;
                std::rotate(stretches.begin() + long(i), stretches.begin() + long(k),
                            stretches.begin() + long(k) + 1);
                better = true;
            }
    }
    int lanes = 0;
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        int lane = 0;
        for (std::size_t before = 0; before < i; ++before)
            if (stretches[before]->Low() < stretches[i]->High() + LaneGap &&
                stretches[i]->Low() < stretches[before]->High() + LaneGap)
                lane = std::max(lane, int(stretches[before]->lane) + 1);
        stretches[i]->lane = lane;
        lanes = std::max(lanes, lane + 1);
    }
    return lanes;
}

/** Turns lane numbers into places within a width that begins at start. */
void Spread(const std::vector<Stretch *> &stretches, int lanes, double start, double width)
{
    const double pitch = lanes > 1 ? std::min(LanePitch, (width - 2 * LaneRoom) / (lanes - 1)) : 0;
    const double first = start + (width - (lanes - 1) * pitch) / 2;
    for (Stretch *stretch : stretches)
        stretch->lane = first + stretch->lane * pitch;
}

} // namespace

void LayLanes(std::vector<Stretch *> stretches, double start, double width)
{
    Spread(stretches, AssignLanes(stretches), start, width);
}

} // namespace quorvik
