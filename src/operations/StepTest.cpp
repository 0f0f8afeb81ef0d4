#include "operations/StepTest.h"

#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "operations/DriveOperations.h"
#include "platform/Asker.h"
#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendRecorder.h"

#include <QScopeGuard>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int TickMs = 20;
constexpr qint64 FreshUs = 250 * UsPerMs;
constexpr std::size_t LeastSamples = 5; // before the step: more than the figures ask for

} // namespace

StepTest::StepTest(ParameterTable &table, DriveLink &link, ValueStates &states, TrendRecorder &recorder,
                   DriveOperations &drive, Asker &asker, const StepTimings &timings)
    : table_(table)
    , link_(link)
    , states_(states)
    , recorder_(recorder)
    , asker_(asker)
    , timings_(timings)
    , polled_(table)
    , sampled_(link)
{
    On(&link, &DriveLink::Sent, this, [this] { sentUs_ = MicrosecondsUp(); });
    On(&link, &DriveLink::WriteTaken, this, [this](int p) { OnTaken(p); });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t, bool *isTold) { OnRefused(p, isTold); });
    On(&link, &DriveLink::Confirmed, this, [this](int p, std::int32_t rawValue) { OnTold(p, rawValue); });
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    On(&drive, &DriveOperations::Leaving, this, [this] { LeaveInTime(); });
    On(&table.Signals(), &TableSignals::Entered, this,
       [this](int p) { OnChangedElsewhere(p, table_.Value(p)); });
    On(&table.Signals(), &TableSignals::Changed, this, [this](const ParamChange &change) {
        // What the drive tells of it is seen when it tells.
        if (change.cause != ChangeCause::Drive)
            OnChangedElsewhere(change.param, change.after);
    });
    On(&recorder, &TrendRecorder::Marked, this, [this](const TrendMark &mark) { OnMark(mark); });
    tick_.setInterval(TickMs);
    On(&tick_, &QTimer::timeout, this, [this] { OnTick(); });
}

bool StepTest::Make(const StepWish &wish)
{
    if (state_ != StepState::Idle)
        return false;
    if (const QString refusal = Refusal(wish); !refusal.isEmpty()) {
        SetState(StepState::Idle, refusal);
        return false;
    }
    const std::int32_t rawBefore = table_.Value(wish.param);
    const std::int32_t stateBefore = table_.Value(Param::DriveState);
    SetState(StepState::Asking, {});
    const auto ending = qScopeGuard([this] {
        if (state_ == StepState::Asking)
            SetState(StepState::Idle, sentence_);
    });
    for (const Question &question : QuestionsBefore(wish))
        if (asker_.Ask(question) != MsgAnswer::Yes)
            return false;
    // What was asked about may be another while the question stands.
    sentence_ = Refusal(wish);
    if (sentence_.isEmpty() &&
        (table_.Value(wish.param) != rawBefore || table_.Value(Param::DriveState) != stateBefore))
        sentence_ = QStringLiteral("The reference or the drive's state changed while you were asked, so "
                                   "nothing was written.");
    if (sentence_.isEmpty())
        sentence_ = Watch(wish.loop);
    if (!sentence_.isEmpty())
        return false;
    wish_ = wish;
    wish_.holdMs = std::clamp(wish.holdMs, timings_.leastHoldMs, timings_.mostHoldMs);
    rawBefore_ = rawBefore;
    isWritten_ = isTaken_ = isBack_ = false;
    endUs_ = 0;
    polled_.Set({wish.param});
    SetState(StepState::Waiting, QStringLiteral("Recording what comes before the step..."));
    return true;
}

bool StepTest::RecordNext(TunedLoop loop, int holdMs)
{
    if (state_ != StepState::Idle)
        return false;
    QString refusal = link_.PortOpen() ? QString() : QStringLiteral("That needs a drive on line.");
    if (refusal.isEmpty())
        refusal = Watch(loop);
    if (!refusal.isEmpty()) {
        SetState(StepState::Idle, refusal);
        return false;
    }
    wish_ = {
        .loop = loop, .param = -1, .holdMs = std::clamp(holdMs, timings_.leastHoldMs, timings_.mostHoldMs)};
    isWritten_ = isTaken_ = isBack_ = false;
    endUs_ = 0;
    SetState(StepState::Listening, QStringLiteral("Waiting for a change that is entered elsewhere..."));
    return true;
}

void StepTest::Restore()
{
    switch (state_) {
    case StepState::Listening:
        End(QStringLiteral("No change was recorded."));
        break;
    case StepState::Waiting:
        // A step that is on its way may be taken before it can be called back.
        if (isWritten_)
            PutBack();
        else
            End(QStringLiteral("The step was not made."));
        break;
    case StepState::Holding:
        endUs_ = MicrosecondsUp();
        if (wish_.param < 0) {
            End(QStringLiteral("The answer is recorded."));
            break;
        }
        // Somebody at the drive may have changed it since it was last told.
        sampled_.Set({wish_.param});
        SetState(StepState::Restoring, QStringLiteral("Putting the reference back..."));
        break;
    case StepState::Restoring:
    case StepState::Idle:
    case StepState::Asking:
        break;
    }
}

int StepTest::LeftMs() const
{
    return state_ == StepState::Holding ? int(std::max<qint64>(wish_.holdMs - since_.elapsed(), 0)) : 0;
}

QString StepTest::Watch(TunedLoop loop)
{
    for (const int p : {SetpointOf(loop), FeedbackOf(loop)})
        if (QString refusal = recorder_.AddChannel(p, TrendPace::Fast); !refusal.isEmpty())
            return refusal;
    if (!recorder_.IsRunning())
        recorder_.Start();
    return {};
}

bool StepTest::IsWatched() const
{
    const TrendTrack *const track = recorder_.Data().TrackOf(FeedbackOf(wish_.loop));
    const qint64 now = MicrosecondsUp();
    if (track == nullptr || track->samples.IsEmpty() || now - track->samples.Last().timeUs > FreshUs)
        return false;
    const std::size_t first = track->samples.IndexFrom(now - 2 * timings_.beforeMs * UsPerMs);
    return since_.elapsed() >= timings_.beforeMs && track->samples.Size() - first >= LeastSamples;
}

void StepTest::Write(std::int32_t rawValue)
{
    const QScopedValueRollback own(isOwn_, true);
    if (table_.CurrentIntent() != nullptr) {
        // A dialog is open: what is entered there can be taken back, and this must be no part of it.
        ParamRecord &record = table_.Row(wish_.param);
        record.WriteFlag = WriteState::Held;
        table_.SetValue(wish_.param, rawValue, ChangeCause::Undone);
        record.WriteFlag = WriteState::Queued;
        table_.WritePending = true;
        return;
    }
    const Intent intent(table_, {.origin = Origin::Program,
                                 .title = QStringLiteral("Step of ") + table_.FullName(wish_.param),
                                 .canBeTakenBack = false});
    // No mark of something unsaved: it is on its way there and back.
    table_.QueueWrite(wish_.param, rawValue);
}

void StepTest::TakeBackInTable(std::int32_t rawValue)
{
    const QScopedValueRollback own(isOwn_, true);
    table_.Row(wish_.param).WriteFlag = WriteState::None;
    table_.SetValue(wish_.param, rawValue, ChangeCause::TakenBack);
}

void StepTest::OnTaken(int p)
{
    if (p != wish_.param)
        return;
    if (state_ == StepState::Waiting && isWritten_) {
        isTaken_ = true;
        BeginHold((sentUs_ + link_.AnsweredUs()) / 2);
    } else if (state_ == StepState::Restoring && isBack_) {
        leftover_.reset();
        End(QStringLiteral("%1 is back at %2.").arg(table_.FullName(p), Named(rawBefore_)));
    }
}

void StepTest::OnRefused(int p, bool *isTold)
{
    if (p != wish_.param)
        return;
    if (state_ == StepState::Waiting && isWritten_) {
        *isTold = true;
        TakeBackInTable(rawBefore_);
        End(QStringLiteral("The drive refused %1 for %2, which stays at %3.")
                .arg(Named(RawStepped()), table_.FullName(p), Named(rawBefore_)));
    } else if (state_ == StepState::Restoring && isBack_) {
        *isTold = true;
        LeaveBehind(true, QStringLiteral("The drive refused to take back the step."));
    }
}

void StepTest::OnTold(int p, std::int32_t rawValue)
{
    if (leftover_ && leftover_->param == p && state_ != StepState::Restoring)
        OnLeftoverTold(rawValue);
    if (p != wish_.param || isBack_ || table_[p].WriteFlag != WriteState::None)
        return;
    if (state_ != StepState::Holding && state_ != StepState::Restoring)
        return;
    if (rawValue != RawStepped()) {
        // Answers that are out of step may tell another parameter's value once.
        if (std::exchange(rawOther_, rawValue) == rawValue)
            OnChangedElsewhere(p, rawValue);
        else
            sampled_.Set({p});
    } else {
        rawOther_.reset();
        if (state_ == StepState::Restoring)
            PutBack();
    }
}

void StepTest::OnChangedElsewhere(int p, std::int32_t rawValue)
{
    if (isOwn_ || p != wish_.param || !IsUnderWay())
        return;
    if (isTaken_ && endUs_ == 0)
        endUs_ = MicrosecondsUp();
    End(isWritten_ || isBack_
            ? QStringLiteral("%1 was set to %2 meanwhile, which stays: %3 was not put back.")
                  .arg(table_.FullName(p), Named(rawValue), Named(rawBefore_))
            : QStringLiteral("%1 was changed, so the step was not made.").arg(table_.FullName(p)));
}

void StepTest::OnMark(const TrendMark &mark)
{
    if (state_ != StepState::Listening || mark.kind != TrendMarkKind::Edit)
        return;
    // The gains are what is turned between two answers.
    const std::vector<int> gains = GainsOf(wish_.loop);
    if (std::ranges::find(gains, mark.param) == gains.end())
        BeginHold(mark.timeUs);
}

void StepTest::BeginHold(qint64 stepUs)
{
    stepUs_ = stepUs;
    recorder_.AlignAt(stepUs);
    SetState(StepState::Holding, wish_.param < 0
                                     ? QStringLiteral("Recording the answer...")
                                     : QStringLiteral("%1 stands at %2. Esc puts it back at once.")
                                           .arg(table_.FullName(wish_.param), Named(RawStepped())));
}

void StepTest::OnTick()
{
    const qint64 elapsed = since_.elapsed();
    switch (state_) {
    case StepState::Waiting:
        if (isWritten_) {
            if (elapsed > timings_.writeMs)
                PutBack();
        } else if (IsWatched() && states_.Of(wish_.param) == ValueState::Live) {
            isWritten_ = true;
            Write(RawStepped());
            SetState(StepState::Waiting, QStringLiteral("Writing the step..."));
        } else if (elapsed > timings_.samplesMs) {
            End(QStringLiteral("The loop's feedback did not come often enough, so the step was not made."));
        }
        break;
    case StepState::Holding:
        if (elapsed >= wish_.holdMs)
            Restore();
        break;
    case StepState::Restoring:
        if (!isBack_ && elapsed > timings_.checkMs)
            PutBack();
        else if (isBack_ && elapsed > timings_.writeMs)
            LeaveBehind(false, QStringLiteral("The drive did not answer when the step was to be put back."));
        break;
    case StepState::Idle:
    case StepState::Asking:
    case StepState::Listening:
        break;
    }
}

void StepTest::PutBack()
{
    sampled_.Set({});
    isBack_ = true;
    Write(rawBefore_);
    SetState(StepState::Restoring, QStringLiteral("Putting the reference back..."));
}

StepResult StepTest::AnswerIn(const TrendData &cut, TunedLoop loop, qint64 stepUs, qint64 endUs)
{
    StepQuestion question{.stepUs = stepUs, .target = {}, .endUs = endUs};
    const TrendTrack *const demand = cut.TrackOf(SetpointOf(loop));
    if (demand != nullptr && !demand->samples.IsEmpty())
        question.target = ShownNumber(demand->samples.Last().rawValue, demand->channel.attributes);
    const TrendTrack *const answer = cut.TrackOf(FeedbackOf(loop));
    return answer != nullptr ? StepResponseOf(*answer, question)
                             : StepResult{.failure = StepFailure::NoSamples, .figures = {}};
}

void StepTest::Keep()
{
    StepTry made{.time = QDateTime::currentDateTime(), .loop = wish_.loop, .param = wish_.param};
    for (const int p : GainsOf(wish_.loop))
        made.gains.emplace_back(p, table_.Value(p));
    TrendData cut = recorder_.Data().Cut(stepUs_ - 2 * timings_.beforeMs * UsPerMs, endUs_);
    cut.triggerUs = stepUs_;
    made.result = AnswerIn(cut, wish_.loop, stepUs_, endUs_);
    made.data = std::make_shared<const TrendData>(std::move(cut));
    tries_.push_front(std::move(made));
    if (tries_.size() > std::size_t(timings_.mostTries))
        tries_.pop_back();
}

void StepTest::End(const QString &sentence)
{
    const bool isNew = endUs_ > 0;
    if (isNew)
        Keep();
    endUs_ = 0;
    wish_.param = -1;
    isWritten_ = isTaken_ = isBack_ = false;
    rawOther_.reset();
    sampled_.Set({});
    if (leftover_ && link_.PortOpen())
        polled_.Set({leftover_->param});
    else
        polled_.Clear();
    SetState(StepState::Idle, sentence);
    if (isNew)
        Q_EMIT TriesChanged();
}

void StepTest::SetState(StepState state, const QString &sentence)
{
    state_ = state;
    sentence_ = sentence;
    since_.start();
    if (IsUnderWay())
        tick_.start();
    else
        tick_.stop();
    Q_EMIT StateChanged();
}

QString StepTest::Named(std::int32_t rawValue) const
{
    return ShownText(rawValue, table_[wish_.param].Attributes);
}

} // namespace quorvik
