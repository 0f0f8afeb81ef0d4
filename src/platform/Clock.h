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

} // namespace quorvik
