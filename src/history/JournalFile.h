#pragma once

#include "platform/FileMark.h"

#include <QSqlDatabase>
#include <QSqlError>

namespace quorvik
{

/** Why the journal cannot be used. */
enum class JournalFault : std::uint8_t {
    None,
    Busy,     ///< another program has held it for too long
    Full,     ///< no space for it
    ReadOnly, ///< file or folder must not be written to, or cannot be made
    Broken,   ///< the disk fails
    Damaged,  ///< it is no journal, or what it holds contradicts itself
    Empty,    ///< for a reader: nobody has written to it yet
    Newer,    ///< its tables are of a newer program, which may come back to it
    Odd,      ///< this statement failed, and the file may be sound
};

JournalFault FaultOf(const QSqlError &error);

/**
 * The journal's file, as one connection of one thread has it. Files under its path may be taken away, put
 * back or set aside by others at any time; each opening is done under a lock file beside it, since a
 * connection that opens while the file changes its name would join one file with the other's write-ahead log.
 */
class JournalFile
{
public:
    enum class Access { Write, Read };

    JournalFile(const QString &path, Access access, int busyMs);
    ~JournalFile();
    JournalFile(const JournalFile &) = delete;
    JournalFile &operator=(const JournalFile &) = delete;

    bool IsOpen() const { return QSqlDatabase::contains(connection_); }
    /** Whether the path leads to another file than the open one by now, or to none. */
    bool WasReplaced() const;
    /** Makes folder, file and tables where it may write and they are missing, for nobody else to read. A
     * reader must not call it where there is no file. */
    JournalFault Open();
    void Close();
    /** Closes, and renames the file with its log, unless somebody else has done so meanwhile.
     * @param newPath of the file; stays empty where somebody else has. @return whether its path is free, or
     * another file's. */
    bool SetAside(QString &newPath);

    QSqlDatabase Database() const { return QSqlDatabase::database(connection_, false); }
    QSqlError Run(const QString &statement);
    /** Whether pages, rows and indexes agree with each other. Reads all of it. */
    bool IsSound();
    /** Runs work, which gives a QSqlError, as one transaction. */
    template<typename Work> QSqlError Whole(Work work)
    {
        QSqlError error = Run(QStringLiteral("BEGIN IMMEDIATE"));
        if (error.isValid())
            return error;
        error = work();
        if (!error.isValid())
            error = Run(QStringLiteral("COMMIT"));
        if (error.isValid())
            Run(QStringLiteral("ROLLBACK"));
        return error;
    }
    /** What the last failure said. */
    const QString &FailureText() const { return failureText_; }

private:
    JournalFault Fault(const QSqlError &error);
    JournalFault Connect();
    JournalFault CheckTables();
    QSqlError MakeTables();
    /** The number that a pragma or a query gives; -1 where it gives none. */
    qint64 Ask(const QString &statement, QSqlError *error = nullptr);
    void KeepPrivate();

    QString path_;
    Access access_;
    int busyMs_;
    QString connection_;
    QString failureText_;
    std::optional<FileMark> mark_; ///< of the file that was opened last, or was to be
};

} // namespace quorvik
