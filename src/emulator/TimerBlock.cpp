#include "emulator/TimerBlock.h"

#include "emulator/EmulatedBlock.h"
#include "emulator/EmulatorTimings.h"
#include "model/ParameterTable.h"

namespace quorvik
{

namespace
{
constexpr int Reset = 311;
constexpr int Threshold = 312;
constexpr int LessThanOrEqual = 313;
constexpr int GreaterThan = 314;
constexpr int Output = 315;
constexpr int ResetInvert = 365;
constexpr int Count = 428;
constexpr std::int32_t CountStep = 10;
constexpr std::int32_t CountEnd = 2400;
} // namespace

TimerBlock::TimerBlock(ParameterTable &table, QObject *owner)
    : QObject(owner)
    , TimerEmulator(this)
    , table_(table)
{
    TimerEmulator.setObjectName(QStringLiteral("TimerEmulator"));
    TimerEmulator.setInterval(EmulatorTimings::TimerBlockMs);
    connect(&TimerEmulator, &QTimer::timeout, this, &TimerBlock::TimerEmulator_Timer);
}

void TimerBlock::TimerEmulator_Timer()
{
    tickGuard_.Run([this] {
        const EmulatedBlock block(table_, "Timer");
        const std::int32_t count = block.Value(Count);
        if (count < CountEnd)
            block.Store(Count, count + CountStep);
    });
}

void TimerBlock::UpdateTimerEmulator()
{
    if (table_.PortOpen() || table_.OutputsHeld) {
        TimerEmulator.stop();
        return;
    }
    const EmulatedBlock block(table_, "Timer");
    if (block.Value(Reset) != block.Value(ResetInvert)) {
        TimerEmulator.stop();
        block.Store(Count, 0);
    } else if (!TimerEmulator.isActive()) {
        // A running second must not be begun anew at every screen update.
        TimerEmulator.start();
    }
    block.Store(Output,
                block.Value(block.Value(Count) > block.Value(Threshold) ? GreaterThan : LessThanOrEqual));
}

} // namespace quorvik
