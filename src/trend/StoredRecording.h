#pragma once

#include "trend/TrendData.h"

#include <QStringList>
#include <cstdint>

namespace quorvik
{

/** Why a recording was kept. The numbers are kept in files. */
enum class RecordingKind : std::uint8_t {
    Running = 0, ///< written along while it ran
    Capture = 1, ///< around a trigger
    Trip = 2,    ///< of the time before a trip, kept by itself
};

/** A recording's file, without its samples. */
struct StoredRecording {
    QString path;
    RecordingKind kind = RecordingKind::Running;
    TrendHead head;
    QStringList channels;  ///< names of the parameters, "(193) Velocity Feedback"
    qint64 firstUtcMs = 0; ///< the computer's clock at the first sample
    qint64 durationMs = 0;
    bool isKept = false;    ///< the user wants it: it is never cleared away by itself
    bool isComplete = true; ///< false where it was cut off: the program ended or crashed meanwhile
    bool isRunning = false; ///< a program is writing it just now
    QString failure;        ///< why it cannot be read, in a sentence; nothing but the path is known then
};

/** What is new of a channel of a recording that is written along. */
struct TrendPart {
    TrendChannel channel;
    qint64 first = 0; ///< position of the oldest sample that there is
    qint64 from = 0;  ///< the samples take the place of all from this position on
    std::vector<TrendSample> samples;
};

/** What is written into a recording's file in one transaction. */
struct TrendBatch {
    QString path;
    RecordingKind kind = RecordingKind::Running;
    TrendHead head;
    std::optional<qint64> triggerUs;
    std::vector<TrendPart> parts; ///< of all channels
    std::vector<TrendMark> marks; ///< the new ones
    bool isWhole = false;         ///< it is all that there is, and takes the place of what the file holds
    bool isLast = false;          ///< nothing follows
    bool isEndOnly = false;       ///< there is nothing new but its end
};

} // namespace quorvik
