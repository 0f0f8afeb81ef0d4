// What becomes of a step when the link goes down, and what it has left in the drive.

#include "link/ValueStates.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "operations/StepTest.h"
#include "platform/Asker.h"
#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"

#include <utility>

namespace quorvik
{

void StepTest::FollowLink()
{
    if (link_.PortOpen()) {
        if (leftover_ && leftover_->param <= table_.LastParam)
            polled_.Set({leftover_->param});
        Q_EMIT StateChanged();
        return;
    }
    if (!IsUnderWay()) {
        polled_.Clear();
        Q_EMIT StateChanged();
    } else if (isWritten_ || isBack_) {
        LeaveBehind(isTaken_ && !isBack_, QStringLiteral("The link is gone while a step was on."));
    } else {
        End(QStringLiteral("The link is gone; no step was made."));
    }
}

void StepTest::LeaveInTime()
{
    if (!IsUnderWay())
        return;
    Restore();
    PumpWhile([this] { return IsUnderWay() && link_.PortOpen(); },
              QDeadlineTimer(link_.Timings().lastCommand));
}

void StepTest::LeaveBehind(bool isSure, const QString &why)
{
    const int p = wish_.param;
    leftover_ = StepLeftover{p, rawBefore_, RawStepped(), isSure};
    if (isTaken_ && endUs_ == 0)
        endUs_ = MicrosecondsUp();
    // Nothing of it is to be sent by itself when the drive is there again.
    TakeBackInTable(states_.DriveValue(p).value_or(RawStepped()));
    const QString sentence = QStringLiteral("%1 %2 %3 at %4 in the drive; before the step it was at %5.")
                                 .arg(why, table_.FullName(p),
                                      isSure ? QStringLiteral("is still") : QStringLiteral("may still be"),
                                      Named(RawStepped()), Named(rawBefore_));
    End(sentence);
    // The page may be closed, and within the link nobody may wait.
    QMetaObject::invokeMethod(
        this, [this, sentence] { Guarded([&] { asker_.Tell(sentence, MsgIcon::Exclamation, AppTitle()); }); },
        Qt::QueuedConnection);
}

void StepTest::OnLeftoverTold(std::int32_t rawValue)
{
    const int p = leftover_->param;
    leftover_->isSure = true;
    const std::optional<std::int32_t> rawLast = std::exchange(rawOther_, rawValue);
    if (rawValue == leftover_->rawStepped)
        rawOther_.reset();
    // Told twice, for answers that are out of step may tell another parameter's value once.
    if (rawOther_ && rawLast == rawOther_) {
        rawOther_.reset();
        leftover_.reset();
        polled_.Clear();
        sentence_ = QStringLiteral("%1 stands at %2 in the drive: nothing is left of the step.")
                        .arg(table_.FullName(p), ShownText(rawValue, table_[p].Attributes));
    }
    Q_EMIT StateChanged();
}

bool StepTest::CanRestoreLeftover() const
{
    if (!leftover_ || state_ != StepState::Idle || !link_.PortOpen() || leftover_->param > table_.LastParam)
        return false;
    return states_.Of(leftover_->param) == ValueState::Live &&
           states_.DriveValue(leftover_->param) == leftover_->rawStepped;
}

void StepTest::RestoreLeftover()
{
    if (!CanRestoreLeftover())
        return;
    wish_ = {.param = leftover_->param, .rawSize = leftover_->rawStepped - leftover_->rawBefore};
    rawBefore_ = leftover_->rawBefore;
    isWritten_ = true;
    isTaken_ = false;
    endUs_ = 0;
    PutBack();
}

} // namespace quorvik
