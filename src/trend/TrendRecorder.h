#pragma once

#include "link/SampleInterest.h"
#include "model/ParameterTable.h"
#include "model/ReadInterest.h"
#include "platform/Clock.h"
#include "trend/TrendData.h"
#include "trend/TrendTimings.h"
#include "trend/Trigger.h"

#include <QObject>
#include <QTimer>
#include <map>
#include <optional>
#include <vector>

namespace quorvik
{

class Document;
class DriveEmulator;
class DriveLink;

/**
 * Records channels: on line each value that the drive tells, off line the emulator's at each of its ticks. It
 * only listens. Fast channels it has sampled by the link, slow ones polled. What the line cannot vouch for is
 * taken back, and where it was silent there is a gap.
 */
class TrendRecorder : public QObject
{
    Q_OBJECT

public:
    /** All must outlive it. */
    TrendRecorder(ParameterTable &table, const Document &document, DriveLink &link, DriveEmulator &emulator,
                  const TrendTimings &timings = {}, FineClock clock = MicrosecondsUp);
    ~TrendRecorder() override;

    const TrendTimings &Timings() const { return timings_; }

    /**
     * Adds a channel, also to a recording under way.
     * @return empty, or the sentence that says why not: no such parameter, or as many as there may be. One
     * that is there already takes the pace.
     */
    QString AddChannel(int p, TrendPace pace);
    void RemoveChannel(int p);
    /** These and no others; what cannot be added is left out. */
    void SetChannels(const std::vector<std::pair<int, TrendPace>> &channels);

    /** Begins anew: what was recorded before is gone, so keep it first where it is worth it. */
    void Start();
    void Stop();
    bool IsRunning() const { return isRunning_; }

    /** How long samples are kept, 1 s to an hour. */
    void SetKeepMs(int milliseconds);
    int KeepMs() const { return keepMs_; }

    /** What is recorded, or was recorded last. */
    const TrendData &Data() const { return data_; }
    void SetTitle(const QString &title) { data_.head.title = title; }
    void SetNotes(const QString &notes) { data_.head.notes = notes; }
    void AddNote(const QString &text);
    /** A copy of all that there is. */
    TrendDataPtr Snapshot() const { return std::make_shared<const TrendData>(data_); }
    /** Samples a second of a channel over the last seconds; nothing while nothing comes. */
    std::optional<double> RateOf(int p) const;

    /** Waits for it from now on; what was captured before is let go of. Kind None ends the waiting. */
    void Arm(const TriggerSetting &setting);
    /** A trigger by hand, whatever is waited for. */
    void Pull();
    const TriggerSetting &Setting() const { return trigger_.Setting(); }
    /** Waits for a trigger, or for the rest of a capture. */
    bool IsWaiting() const;
    const std::vector<TrendDataPtr> &Captures() const { return captures_; }

    /** Earlier recordings are laid over this one at this moment from now on; a trigger does the same. */
    void AlignAt(qint64 timeUs);
    /** The drive has tripped; told by whoever knows. */
    void NoteFault(const QString &text);

Q_SIGNALS:
    void StateChanged();    ///< started, stopped, armed
    void ChannelsChanged(); ///< the tracks of Data() are others
    void Marked(const quorvik::TrendMark &mark);
    void Triggered(qint64 timeUs);
    /** Data().triggerUs is another moment. */
    void Aligned();
    void Captured(quorvik::TrendDataPtr capture);

private:
    void OnConfirmed(int p, std::int32_t rawValue);
    void OnEmulated();
    void OnChanged(const ParamChange &change);
    void OnWriteTaken(int p);
    void FollowLink();
    void Take(TrendTrack &track, TrendSample sample, int gapMs);
    void TakeBack(qint64 sinceUs);
    void Mark(qint64 timeUs, TrendMarkKind kind, int param, const QString &text);
    void MarkEdit(qint64 timeUs, int p, std::int32_t rawBefore, std::int32_t rawAfter);
    void Fire(qint64 timeUs, const QString &why = QStringLiteral("Trigger"));
    void Capture();
    void FollowInterest();
    void Tidy();
    void LearnDrive(int p, std::int32_t rawValue);
    TrendTrack *TrackOf(int p);
    qint64 PreUs() const;

    ParameterTable &table_;
    const Document &document_;
    DriveLink &link_;
    TrendTimings timings_;
    FineClock clock_;
    SampleInterest sampled_;
    ReadInterest polled_;
    QTimer tidy_;
    TrendData data_;
    Trigger trigger_;
    std::vector<qint64> fired_; ///< triggers whose capture is not complete yet
    std::vector<TrendDataPtr> captures_;
    std::map<int, std::int32_t> unsent_;   ///< raw values before an edit that the drive has not taken yet
    std::map<int, std::int32_t> identity_; ///< what the drive has told of itself
    qint64 passUs_ = 0;                    ///< since when nothing proved the line to be in step
    qint64 nextTriggerUs_ = 0;
    int taken_ = 0; ///< triggers since it was armed
    int keepMs_;
    int restBytes_ = 0; ///< of an answer that was given up
    bool isRunning_ = false;
    bool wasOpen_ = false;
};

} // namespace quorvik
