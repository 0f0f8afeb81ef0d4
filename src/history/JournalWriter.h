#pragma once

#include "history/JournalEntry.h"
#include "history/JournalTimings.h"

#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>

namespace quorvik
{

/** Writes batches into the journal's file, in the thread that it lives in. */
class JournalWriter : public QObject
{
    Q_OBJECT

public:
    JournalWriter(const QString &path, const JournalTimings &timings);
    ~JournalWriter() override;

    /** Opens the file, begins a run in it, and lets go of what is too old. */
    void Begin(const QString &user);
    void Write(const JournalBatch &batch);

Q_SIGNALS:
    void Written();
    void Trouble(const QString &sentence);
    void Recovered();

private:
    bool Open();
    void Close();
    QSqlError MakeTables();
    QSqlError BeginRun();
    QSqlError WriteBatch(const JournalBatch &batch);
    QSqlError Prune();
    /** Runs work as one transaction. */
    template<typename Work> QSqlError Whole(Work work);
    QSqlError Run(const QString &statement);

    QString path_;
    JournalTimings timings_;
    QString user_;
    QString connection_;
    qint64 run_ = 0; ///< id of this run in the file; 0 before it has one
    JournalTime began_;
    JournalBatch waiting_; ///< what could not be written yet
};

} // namespace quorvik
