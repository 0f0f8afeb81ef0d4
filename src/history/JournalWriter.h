#pragma once

#include "history/JournalEntry.h"
#include "history/JournalFile.h"
#include "history/JournalTimings.h"

#include <QObject>
#include <QTimer>
#include <deque>
#include <set>

namespace quorvik
{

/** Numbers that were given from 1 on. */
class GivenNumbers
{
public:
    void Add(int number);
    bool Has(int number) const
    {
        return number >= 0 && std::size_t(number) < has_.size() && has_[std::size_t(number)];
    }

private:
    std::vector<bool> has_ = {};
};

/** Writes batches into the journal's file, in the thread that it lives in. */
class JournalWriter : public QObject
{
    Q_OBJECT

public:
    JournalWriter(const QString &path, const JournalTimings &timings);

    /** Opens the file, looks whether it is sound, begins a run in it, and lets go of what is too old. */
    void Begin(const QString &user);
    void Write(JournalBatch batch);
    /** Tries once more to write what is waiting. */
    void WriteWaiting();
    /** The same at the end of the program. */
    void Finish();

Q_SIGNALS:
    void Written();
    void Trouble(const QString &sentence);
    void Recovered();
    void News(const QString &sentence);

private:
    /** What of this run is in the file that is open. */
    struct Contents {
        GivenNumbers actions = {};
        GivenNumbers rows = {};
    };

    /** Opens the file where it is not, and begins the run in it. */
    JournalFault Prepare();
    /** The whole of work, on another file where this one is of no use. */
    template<typename Work> bool Try(Work work);
    /** Sets a damaged file aside. @return whether another one can be begun. */
    bool BeginAnew(JournalFault fault);
    /** Whether the file is the one that this run was begun in. */
    bool HasRun();
    JournalFault WriteAll();
    QSqlError BeginRun();
    /** @param strays counts rows whose action is not in this file */
    QSqlError WriteBatch(const JournalBatch &batch, Contents &contents, int &strays);
    void LetGoOfTooMany();
    void Fail(JournalFault fault);
    void Recover();

    QString path_;
    JournalTimings timings_;
    JournalFile file_;
    QTimer retry_;
    QString user_;
    JournalTime began_;
    qint64 run_ = 0;                   ///< id of this run in the file; 0 before it has one
    Contents contents_;                ///< of the file, as far as it is of this run
    std::deque<JournalBatch> waiting_; ///< what could not be written yet
    std::set<JournalFault> told_;      ///< of the trouble that lasts
    QString news_;                     ///< told when the new file works
    int lost_ = 0;                     ///< rows that were let go of since that was told
};

} // namespace quorvik
