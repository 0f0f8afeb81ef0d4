#pragma once

#include "history/JournalEntry.h"
#include "history/JournalTimings.h"

#include <QObject>
#include <QThread>
#include <memory>

namespace quorvik
{

class JournalWriter;

/**
 * The record of all changes: one SQLite file that only grows, written by a thread of its own, so that no disk
 * ever holds the program up. Several programs may write to it at once. Whatever goes wrong with it is told
 * once, and the program goes on without.
 */
class Journal : public QObject
{
    Q_OBJECT

public:
    /** @param path of the file; its folder is made when it is needed. Nothing is opened before the first
     * Add() or Begin(). */
    explicit Journal(const QString &path, const JournalTimings &timings = {});
    /** Writes what is still waiting, for JournalTimings::closeMs at most. */
    ~Journal() override;

    const QString &Path() const { return path_; }
    const JournalTimings &Timings() const { return timings_; }

    /** Opens the file and lets go of what is too old. @param user the login name, empty to keep none. */
    void Begin(const QString &user);
    /** Hands a batch to the writer; takes no time. */
    void Add(JournalBatch batch);
    /** Blocks until all that was added is written or has failed: for tests and the end. @return whether that
     * was within milliseconds. */
    bool Flush(int milliseconds);

Q_SIGNALS:
    /** A batch is in the file. */
    void Written();
    /** It cannot be written at present, which is tried again by itself: a sentence for the strip. Told once
     * for each kind of trouble until it is over. */
    void Trouble(const QString &sentence);
    /** The trouble is over. */
    void Recovered();
    /** Something has happened to it that the user should know: a damaged file was set aside, changes are
     * missing. */
    void News(const QString &sentence);

private:
    QString path_;
    JournalTimings timings_;
    QThread thread_;
    JournalWriter *writer_ = nullptr; ///< lives in the thread
};

} // namespace quorvik
