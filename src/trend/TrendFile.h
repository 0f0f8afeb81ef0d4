#pragma once

#include "trend/StoredRecording.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <functional>

namespace quorvik
{

struct TrendTimings;

/**
 * The file of one recording, as one connection of one thread has it. Every row has a checksum: SQLite tells a
 * damaged page, and this a value within it that is not what was written.
 */
class TrendFile
{
public:
    TrendFile(const QString &path, int busyMs);
    ~TrendFile();
    TrendFile(const TrendFile &) = delete;
    TrendFile &operator=(const TrendFile &) = delete;

    /** What the names of all recordings end in, with its point. */
    static QString Suffix() { return QStringLiteral(".trend"); }
    /** The file beside it that is locked while a program writes it. */
    static QString LockPath(const QString &path) { return path + QStringLiteral(".lock"); }
    /** Whether a program is writing it just now. */
    static bool IsBeingWritten(const QString &path);
    /** Takes it away with what lies beside it. @return whether it is gone. */
    static bool Remove(const QString &path);

    const QString &Path() const { return path_; }
    bool IsOpen() const { return QSqlDatabase::contains(connection_); }
    /** Opens a recording; one that is being made only where it may be made, for nobody else to read.
     * @return whether it is open; else Failure() says why not. */
    bool Open(bool mayMake);
    void Close();
    /** Why the last of these failed: "the disk is full". */
    const QString &Failure() const { return failure_; }
    /** Whether that was of no consequence: another program held it for too long. */
    bool WasBusy() const { return wasBusy_; }
    /** Whether that says that the file can never be read. */
    bool WasDamaged() const { return wasDamaged_; }

    /** Writes a batch whole or not at all, and lets go of what is too old where prunes says so. */
    bool Write(const TrendBatch &batch, const TrendTimings &timings, bool prunes);
    /** Marks it as complete. */
    bool Complete();
    /** Gives it a title and notes, and marks it as wanted. */
    bool Keep(const QString &title, const QString &notes);
    /** Reads all but samples and marks. */
    bool ReadHead(StoredRecording &recording);
    /** Reads all. */
    bool ReadAll(TrendData &data, const TrendTimings &timings);

private:
    bool Fail(const QSqlError &error);
    bool Damaged();
    bool Connect(bool mayMake);
    bool CheckTables(bool mayMake);
    /** One value that a statement gives; nothing where it gives none. */
    QVariant Ask(const QString &statement);
    QSqlError Run(const QString &statement);
    /** Runs work as one transaction. */
    bool Whole(const QString &begin, const std::function<QSqlError()> &work);

    QSqlError WriteAll(const TrendBatch &batch, const TrendTimings &timings, bool prunes);
    QSqlError WriteHead(const TrendBatch &batch);
    QSqlError WriteChannels(const TrendBatch &batch);
    QSqlError WriteSamples(const TrendPart &part);
    QSqlError WriteMarks(const TrendBatch &batch);
    QSqlError Prune(const TrendBatch &batch, const TrendTimings &timings);
    QSqlError PutHead(const QString &key, const QVariant &value, bool replaces = true);

    bool ReadHeadRows(StoredRecording &recording, std::optional<qint64> &triggerUs);
    bool ReadChannels(std::vector<TrendTrack> &tracks);
    bool ReadSamples(TrendTrack &track, std::size_t &room);
    bool ReadMarks(std::vector<TrendMark> &marks, std::size_t room);

    QString path_;
    int busyMs_;
    QString connection_;
    QString failure_;
    bool wasBusy_ = false;
    bool wasDamaged_ = false;
    std::optional<TrendHead> writtenHead_; ///< what this connection has written of it
    std::vector<TrendChannel> writtenChannels_;
};

} // namespace quorvik
