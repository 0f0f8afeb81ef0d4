#pragma once

#include "trend/StoredRecording.h"
#include "trend/TrendTimings.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <map>

namespace quorvik
{

class TrendRecorder;

/**
 * Gathers what is new of a recorder, batch by batch: the next one only when the last one is written, so that
 * nothing piles up before a slow disk. After one that failed all that there is comes again.
 */
class TrendFollower : public QObject
{
    Q_OBJECT

public:
    /** @param newPath names the file of each recording. */
    TrendFollower(TrendRecorder &recorder, const TrendTimings &timings, std::function<QString()> newPath);

    /** The file of the recording that runs, or was last; empty for none. */
    const QString &Path() const { return path_; }
    /** Takes up a recording that runs already. */
    void FollowState();
    /** What became of the batch that was gathered last. */
    void Take(const QString &path, bool isWritten);
    /** Gathers the rest, as the recording's end. */
    void Finish() { Gather(true); }

Q_SIGNALS:
    void Gathered(const quorvik::TrendBatch &batch);

private:
    /** Which samples of a channel are in the file, by SampleRing's counts. */
    struct Known {
        qint64 appended = 0;
        qint64 takenBack = 0;
    };

    void Begin();
    void Gather(bool isLast);
    void End();
    TrendPart PartOf(const TrendTrack &track) const;

    QPointer<TrendRecorder> recorder_;
    TrendTimings timings_;
    std::function<QString()> newPath_;
    QTimer timer_;
    QElapsedTimer sinceFailed_;
    QString path_;
    qint64 beganUs_ = -1; ///< which recording it is
    qint64 beganUtcMs_ = -1;
    std::map<int, Known> known_;   ///< in the file
    std::map<int, Known> handed_;  ///< in the file with what is under way
    std::vector<TrendMark> marks_; ///< not in the file yet
    std::size_t marksHanded_ = 0;  ///< so many of them are under way
    int underWay_ = 0;             ///< batches
    bool hasFailed_ = false;       ///< one of those
    bool isWhole_ = true;          ///< all has to come again
    bool isEnded_ = true;          ///< its end is in the file, or there is no recording
    bool endHanded_ = false;
};

} // namespace quorvik
