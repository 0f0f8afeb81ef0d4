#pragma once

#include "trend/StoredRecording.h"
#include "trend/TrendTimings.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QThread>
#include <map>
#include <memory>
#include <vector>

namespace quorvik
{

class TrendFollower;
class TrendRecorder;
class TrendWriter;

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
    /** The newest first. Reads the heads of the files, but of those that have not changed since. What is no
     * recording is left out, what is one and cannot be read says why. */
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
    /** What was read of a file, and what it was like then. */
    struct Listed {
        QDateTime changed;
        qint64 size = 0;
        StoredRecording recording;
    };

    /** A name for a recording's file that no program has given. */
    QString NewPath() const;

    QString folder_;
    TrendTimings timings_;
    QThread thread_;
    TrendWriter *writer_; ///< lives in the thread
    std::unique_ptr<TrendFollower> follower_;
    std::map<QString, Listed> listed_; ///< by path
};

} // namespace quorvik
