#pragma once

#include <QString>

namespace quorvik
{

/**
 * The drive's calendar as text, in the system's short date and long time forms. A drive that was never set
 * holds zeros, and a line of the log may hold anything, so that numbers which are no date or no time have a
 * text too.
 */

/** @param year a two-digit year up to 29 lies in 20xx, else in 19xx. @return "no date" where it is none. */
QString DriveDateText(int year, int month, int day);

/** @return "no time" where the numbers are none. */
QString DriveTimeText(int hours, int minutes, int seconds);

} // namespace quorvik
