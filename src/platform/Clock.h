#pragma once

#include <QtGlobal>
#include <functional>

namespace quorvik
{

/** Tells a time in milliseconds that only goes on, from any beginning. */
using MsClock = std::function<qint64()>;

/** The time since the computer started, the time that it slept included: a value that was read before the
 * laptop was shut is old when it is opened. */
qint64 MillisecondsUp();

/** Tells a time in microseconds that only goes on, from any beginning. */
using FineClock = std::function<qint64()>;

/** The time of the steady clock that the system never sets. */
qint64 MicrosecondsUp();

} // namespace quorvik
