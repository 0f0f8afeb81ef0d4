#pragma once

#include "platform/Guard.h"

#include <QObject>
#include <QTimer>

namespace quorvik
{

class ParameterTable;

/**
 * The emulated timer block. It belongs to the window of that block: the window calls UpdateTimerEmulator()
 * with its screen update, and the count goes on only as long as the window is open.
 */
class TimerBlock : public QObject
{
    Q_OBJECT

public:
    /** @param owner the block's window. */
    TimerBlock(ParameterTable &table, QObject *owner);

    QTimer TimerEmulator; ///< 1000 ms, off at start

    /** One step: the count rises by 10 up to 2400. Never raises. */
    void TimerEmulator_Timer();

    /** Holds, releases or stops the count, and sets the output while off line. Raises RuntimeFailure where
     * the table has no timer block. */
    void UpdateTimerEmulator();

private:
    ParameterTable &table_;
    TickGuard tickGuard_;
};

} // namespace quorvik
