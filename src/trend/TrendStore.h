#pragma once

#include "trend/TrendData.h"
#include "trend/TrendTimings.h"

#include <QObject>
#include <QStringList>
#include <QThread>
#include <map>
#include <vector>

namespace quorvik
{

class TrendRecorder;
class TrendWriter;

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
    QStringList channels; ///< names of the parameters, "(193) Velocity Feedback"
    qint64 durationMs = 0;
    bool isKept = false;    ///< the user wants it: it is never cleared away by itself
    bool isComplete = true; ///< false where it was cut off: the program ended or crashed meanwhile
    bool isRunning = false; ///< a program is writing it just now
};

/**
 * The recordings of this user: one SQLite file each, in one folder, written by a thread of its own. What is
 * recorded reaches its file within TrendTimings::storeMs, so a crash loses less than two seconds.
 */
class TrendStore : public QObject
{
    Q_OBJECT

public:
    /** @param folder is made when it is needed. */
    explicit TrendStore(const QString &folder, const TrendTimings &timings = {});
    /** Writes what is still waiting. */
    ~TrendStore() override;

    const QString &Folder() const { return folder_; }

    /** From now on each recording of this recorder is written along; it must outlive this, or be let go of.
     */
    void Follow(TrendRecorder &recorder);
    /** The file of the recording that is written along, or was last; empty for none. */
    QString RunningPath() const;

    /** Writes a recording into a file of its own; takes no time. @return its path. */
    QString Save(TrendDataPtr data, RecordingKind kind);
    /** The newest first. Reads the head of each file. */
    std::vector<StoredRecording> List();
    /** @param failure gets a sentence where it cannot be read. @return null then. */
    TrendDataPtr Load(const QString &path, QString *failure);
    /** Gives it a title and notes; it is never cleared away from now on.
     * @return empty, or the sentence that says why not. */
    QString Keep(const QString &path, const QString &title, const QString &notes);
    /** @return empty, or the sentence that says why not. */
    QString Remove(const QString &path);
    /** Blocks until all is written: for tests and the end. */
    bool Flush(int milliseconds);

Q_SIGNALS:
    void ListChanged();
    /** What cannot be written, in a sentence for the strip; once until it is over. */
    void Trouble(const QString &sentence);
    void Recovered();

private:
    QString folder_;
    TrendTimings timings_;
    QThread thread_;
    TrendWriter *writer_ = nullptr; ///< lives in the thread
};

} // namespace quorvik
