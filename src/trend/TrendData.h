#pragma once

#include "compare/DriveIdentity.h"

#include <QString>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace quorvik
{

/** How often a channel is read. The numbers are kept in files. */
enum class TrendPace : std::uint8_t {
    Fast = 0, ///< as often as the line allows
    Slow = 1, ///< as often as a window would: with each scan
};

/** A parameter that is recorded. */
struct TrendChannel {
    int param = 0;
    TrendPace pace = TrendPace::Fast;
    std::int32_t attributes = 0; ///< scale, unit and texts of the raw values, as when the recording began
    QString name;                ///< the parameter's, as it was called then
};

/** A value that the drive has told. Times are microseconds of MicrosecondsUp(). */
struct TrendSample {
    qint64 timeUs = 0; ///< the middle between question and answer
    std::int32_t rawValue = 0;
    std::uint32_t spanUs : 31 = 0;    ///< between question and answer: the value is of some time within it
    std::uint32_t isAfterGap : 1 = 0; ///< nothing is known of the time between the last sample and this one
};

/** The samples of one channel in the order of time, the oldest of which fall out. */
class SampleRing
{
public:
    /** @param sample later than the last one; an earlier one raises RuntimeFailure. */
    void Append(const TrendSample &sample);
    /** Lets go of all that is older. The first one left is after a gap. */
    void DropBefore(qint64 timeUs);
    /** Takes back what is newer or as new. The next one is after a gap. */
    void DropSince(qint64 timeUs);
    /** The next sample is after a gap. */
    void Interrupt() { isInterrupted_ = true; }
    void Clear() { *this = {}; }

    std::size_t Size() const { return samples_.size(); }
    bool IsEmpty() const { return samples_.empty(); }
    const TrendSample &operator[](std::size_t index) const { return samples_[index]; }
    const TrendSample &First() const { return samples_.front(); }
    const TrendSample &Last() const { return samples_.back(); }
    /** Of the first sample at or after a time; Size() where there is none. */
    std::size_t IndexFrom(qint64 timeUs) const;
    /** The last sample at or before a time; null before the first, and within a gap. */
    const TrendSample *At(qint64 timeUs) const;
    /** Counts what was ever appended: a reader knows from it what is new. */
    qint64 Appended() const { return appended_; }
    /** Counts what was ever taken back. Samples have positions from 0 on, in which one that replaces another
     * takes over its own; the last one's is one less than Appended() less this. */
    qint64 TakenBack() const { return takenBack_; }

private:
    std::deque<TrendSample> samples_;
    qint64 appended_ = 0;
    qint64 takenBack_ = 0;
    bool isInterrupted_ = true;
};

/** What happened at a moment of a recording. The numbers are kept in files. */
enum class TrendMarkKind : std::uint8_t {
    Edit = 0,
    Fault = 1,
    Trigger = 2,
    Note = 3,
    LinkLost = 4,
    LinkBack = 5
};

struct TrendMark {
    qint64 timeUs = 0;
    TrendMarkKind kind = TrendMarkKind::Note;
    int param = -1; ///< of an edit of one parameter; else -1
    QString text;   ///< "(217) Reference 0: 10.00 % to 20.00 %"
};

/** The text of the mark of a trigger that nobody waited for. */
QString TriggerByHand();

/** What is known of a recording as a whole. */
struct TrendHead {
    QString title;
    QString setName;                    ///< path of the open set's file, or "unnamed"
    std::optional<DriveIdentity> drive; ///< none off line
    QString notes;
    qint64 beganUs = 0;    ///< MicrosecondsUp() at the beginning
    qint64 beganUtcMs = 0; ///< the computer's clock at the same moment
    int offsetMinutes = 0; ///< what its zone added to it
};

struct TrendTrack {
    TrendChannel channel;
    SampleRing samples;
};

/** A recording: under way, kept in a file, or cut out of one around a trigger. */
struct TrendData {
    TrendHead head;
    std::vector<TrendTrack> tracks;
    std::vector<TrendMark> marks;    ///< in the order of time
    std::optional<qint64> triggerUs; ///< recordings are laid over each other at this moment

    const TrendTrack *TrackOf(int param) const;
    /** Time of the first and the last sample of any channel; the beginning twice where there are none. */
    qint64 FirstUs() const;
    qint64 LastUs() const;
    /** The samples and marks between two times. */
    TrendData Cut(qint64 fromUs, qint64 toUs) const;
    /** The computer's clock at a time of the recording, milliseconds since 1970. */
    qint64 UtcMsAt(qint64 timeUs) const;
};

using TrendDataPtr = std::shared_ptr<const TrendData>;

} // namespace quorvik
