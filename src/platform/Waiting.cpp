#include "platform/Waiting.h"

#include <QCoreApplication>
#include <QTimer>

namespace quorvik
{

bool PumpWhile(const std::function<bool()> &condition, QDeadlineTimer limit)
{
    // Wakes the loop where nothing else does, so that a condition that time alone changes is seen.
    QTimer waker;
    waker.start(20);
    while (condition()) {
        if (limit.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace quorvik
