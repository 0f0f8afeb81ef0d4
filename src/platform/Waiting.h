#pragma once

#include <QDeadlineTimer>
#include <functional>

namespace quorvik
{

/**
 * Waits in the event loop, so that timers, the port and the user's clicks go on, as long as condition is true
 * and the limit has not passed. Sleeps between events and never spins the processor. The condition is looked
 * at after every event, and at least every 20 ms.
 * @return True when the condition became false, False when the limit ended the wait.
 */
bool PumpWhile(const std::function<bool()> &condition,
               QDeadlineTimer limit = QDeadlineTimer(QDeadlineTimer::Forever));

} // namespace quorvik
