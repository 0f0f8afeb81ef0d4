#pragma once

#include "link/SampleInterest.h"
#include "model/ReadInterest.h"
#include "trend/StepResponse.h"
#include "trend/TrendData.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <optional>
#include <vector>

namespace quorvik
{

class Asker;
struct Question;
class DriveOperations;
class ParameterTable;
class TrendRecorder;
class ValueStates;

/** A control loop of the drive whose answer is looked at. */
enum class TunedLoop : std::uint8_t { Velocity, Current };

/** What a test is about at present. */
enum class StepState : std::uint8_t {
    Idle,
    Asking,    ///< the user is asked whether it may be made
    Listening, ///< waits for a change that is made elsewhere
    Waiting,   ///< for the samples before it, then for the drive to take it
    Holding,   ///< the drive has it, or a change from elsewhere is being answered
    Restoring, ///< what stood before is on its way back
};

/** A change of a reference for a while. */
struct StepWish {
    TunedLoop loop = TunedLoop::Velocity;
    int param = -1;           ///< one of StepTest::SourcesOf()
    std::int32_t rawSize = 0; ///< added to what stands there; below 0 for downwards
    int holdMs = 3000;        ///< 500 to 30000
};

/** What can be stepped, or the sentence that says why nothing can. */
struct StepSources {
    std::vector<int> params; ///< the active reference first
    QString whyNone;         ///< empty where there are some
};

/** A step that was made, with the loop's answer. */
struct StepTry {
    QDateTime time;
    TunedLoop loop = TunedLoop::Velocity;
    int param = -1;                                       ///< what was changed
    std::vector<std::pair<int, std::int32_t>> gains = {}; ///< raw, at the time
    StepResult result = {};
    TrendDataPtr data = {}; ///< from before the step up to its end, its trigger at the step
};

/** A value that a broken link has left in the drive. */
struct StepLeftover {
    int param = -1;
    std::int32_t rawBefore = 0;
    std::int32_t rawStepped = 0;
    bool isSure = true; ///< the drive had taken it; false where nobody knows
};

/** Times and limits of a step. */
struct StepTimings {
    int leastHoldMs = 500;
    int mostHoldMs = 30000;
    int beforeMs = 600;   ///< of samples before the step, and up to twice as much where they are rare
    int samplesMs = 4000; ///< how long they are waited for
    int writeMs = 4000;   ///< how long the drive may take for a write
    int checkMs = 250;    ///< how long it may take to tell what it holds, before that is put back
    int usualPercent = 5; ///< of full scale
    int mostPercent = 20; ///< of full scale, without a question of its own
    int mostTries = 5;
};

/**
 * Changes a reference for a while, and looks at how a loop answers. What stood before is put back by itself:
 * after the time, on Restore(), before the program goes off line. It is not where somebody else has changed
 * the reference meanwhile, and after a broken link only when it is asked for.
 */
class StepTest : public QObject
{
    Q_OBJECT

public:
    /** All must outlive it. */
    StepTest(ParameterTable &table, DriveLink &link, ValueStates &states, TrendRecorder &recorder,
             DriveOperations &drive, Asker &asker, const StepTimings &timings = {});

    const StepTimings &Timings() const { return timings_; }

    /** The demand of a loop, and what is to follow it. */
    static int SetpointOf(TunedLoop loop);
    static int FeedbackOf(TunedLoop loop);
    /**
     * How a loop answered to a step. A pure function of the samples.
     * @param cut from before the step up to where the answer ends.
     */
    static StepResult AnswerIn(const TrendData &cut, TunedLoop loop, qint64 stepUs, qint64 endUs);
    /** The gains in force: of the velocity loop those of the set that Gain Select chooses. */
    std::vector<int> GainsOf(TunedLoop loop) const;
    /** The references that act on the loop as the drive is set now, and that can be written. */
    StepSources SourcesOf(TunedLoop loop) const;
    /** Whether what is entered there comes through the ramp, which then is all that the answer shows. */
    bool IsRamped(int param) const;

    /** Asks, and makes a step; returns when it was asked. @return whether a step is under way. */
    bool Make(const StepWish &wish);
    /** Records the answer to the next change that is entered, of any parameter but the loop's gains. */
    bool RecordNext(TunedLoop loop, int holdMs);
    /** Puts back what stood before, at once; ends a listening, too. Does nothing where nothing is under way.
     */
    void Restore();

    StepState State() const { return state_; }
    bool IsUnderWay() const { return state_ != StepState::Idle && state_ != StepState::Asking; }
    /** Milliseconds until the end of a hold; 0 in other states. */
    int LeftMs() const;
    /** What there is to say of the last or the present step, in a sentence; may be empty. */
    const QString &Sentence() const { return sentence_; }

    /** The last ones, the newest first. */
    const std::deque<StepTry> &Tries() const { return tries_; }

    /** What a broken link has left in the drive, until it is put back or something else stands there. */
    const std::optional<StepLeftover> &Leftover() const { return leftover_; }
    /** The drive is there again and still holds it. */
    bool CanRestoreLeftover() const;
    void RestoreLeftover();

Q_SIGNALS:
    /** State, sentence, leftover, or whether it can be put back are others. */
    void StateChanged();
    /** Another step was made. */
    void TriesChanged();

private:
    QString Refusal(const StepWish &wish) const;
    std::vector<Question> QuestionsBefore(const StepWish &wish) const;
    QString Watch(TunedLoop loop);
    bool IsWatched() const;
    void Write(std::int32_t rawValue);
    void TakeBackInTable(std::int32_t rawValue);
    void OnTaken(int p);
    void OnRefused(int p, bool *isTold);
    void OnTold(int p, std::int32_t rawValue);
    void OnMark(const TrendMark &mark);
    void OnChangedElsewhere(int p, std::int32_t rawValue);
    void OnTick();
    void FollowLink();
    void LeaveInTime();
    void BeginHold(qint64 stepUs);
    void PutBack();
    void LeaveBehind(bool isSure, const QString &why);
    void OnLeftoverTold(std::int32_t rawValue);
    void Keep();
    void End(const QString &sentence);
    void SetState(StepState state, const QString &sentence);
    std::int32_t RawStepped() const { return rawBefore_ + wish_.rawSize; }
    QString Named(std::int32_t rawValue) const;

    ParameterTable &table_;
    DriveLink &link_;
    ValueStates &states_;
    TrendRecorder &recorder_;
    Asker &asker_;
    StepTimings timings_;
    ReadInterest polled_;
    SampleInterest sampled_;
    QTimer tick_;
    QElapsedTimer since_; ///< the state, or what it waits for, is another one
    StepState state_ = StepState::Idle;
    QString sentence_;
    StepWish wish_; ///< its parameter is -1 where a change comes from elsewhere
    std::int32_t rawBefore_ = 0;
    std::optional<std::int32_t> rawOther_; ///< what the drive told last in place of the step
    qint64 sentUs_ = 0;                    ///< when the last packet left
    qint64 stepUs_ = 0;                    ///< when the change took effect
    qint64 endUs_ = 0;                     ///< up to when the answer counts; 0 while there is none
    bool isWritten_ = false;               ///< the step has been queued for the drive
    bool isTaken_ = false;                 ///< the drive has taken the step
    bool isBack_ = false;                  ///< what stood before has been queued for the drive
    bool isOwn_ = false;                   ///< the change of the table is made here
    std::deque<StepTry> tries_;
    std::optional<StepLeftover> leftover_;
};

} // namespace quorvik
