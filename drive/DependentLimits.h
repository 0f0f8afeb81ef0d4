#pragma once

namespace quorvik
{
class ParameterTable;
}

namespace quorvik::drive
{

/**
 * What parameter p of the drive's table means for the limits of others: an input's end values take over those
 * of the parameter that it drives, an output's those of the one that it follows, and the motor's current is
 * bounded by the drive's rating.
 *
 * Written for the drive alone and by dependant, so that a mistake in the tool's rules meets a drive that does
 * not share it.
 */
void FollowWithLimits(ParameterTable &table, int p);

} // namespace quorvik::drive
