#pragma once

#include "platform/FileLock.h"
#include "trend/TrendFile.h"
#include "trend/TrendTimings.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <memory>

namespace quorvik
{

/** Writes recordings into their files, in the thread that it lives in. */
class TrendWriter : public QObject
{
    Q_OBJECT

public:
    TrendWriter(const QString &folder, const TrendTimings &timings);
    ~TrendWriter() override;

    /** Writes a batch of the recording that runs; what becomes of it is told by Done(). */
    void WriteRunning(const TrendBatch &batch);
    /** Writes a recording of its own, and tries again by itself where that fails. */
    void Save(const TrendBatch &batch);
    /** Lets go of the recordings that nobody kept, but for the newest. */
    void PruneFolder();
    /** Tries a last time to save what could not be saved yet. */
    void Finish() { SaveWaiting(); }

Q_SIGNALS:
    /** A batch of the running recording is in its file, or cannot be: then all of it has to come again. */
    void Done(const QString &path, bool isWritten);
    /** The file of a recording was finished, or some were taken away. */
    void ListChanged();
    void Trouble(const QString &sentence);
    void Recovered();

private:
    bool Begin(const TrendBatch &batch);
    void End(const QString &path);
    void SaveWaiting();
    void Fail(TrendFile &file);
    void Recover();

    QString folder_;
    TrendTimings timings_;
    QTimer retry_;
    std::unique_ptr<TrendFile> running_;
    std::unique_ptr<FileLock> lock_; ///< says to other programs that it is being written
    QElapsedTimer sincePruned_;
    std::deque<TrendBatch> waiting_; ///< could not be saved yet
    int busy_ = 0;                   ///< so often in a row another program held a file
    bool isTold_ = false;            ///< the trouble that lasts
};

} // namespace quorvik
