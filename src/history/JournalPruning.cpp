#include "history/JournalPruning.h"

#include "history/JournalFile.h"
#include "history/JournalTimings.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QVariant>

namespace quorvik
{

namespace
{

/** Actions that go in one transaction: others wait for it. */
constexpr int StepActions = 2000;

/** The action of the newest row that is one too many; 0 where there is none. */
qint64 LastTooMany(const JournalFile &file, int mostRows)
{
    QSqlQuery query(file.Database());
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT a.id FROM actions a, (SELECT run, action FROM entries ORDER BY id DESC "
                              "LIMIT 1 OFFSET %1) e WHERE a.run = e.run AND a.number = e.action")
                   .arg(mostRows));
    return query.next() ? query.value(0).toLongLong() : 0;
}

} // namespace

QSqlError Prune(JournalFile &file, const JournalTimings &timings, qint64 run)
{
    const qint64 oldest = QDateTime::currentMSecsSinceEpoch() - timings.mostDays * MsPerDay;
    const auto runAll = [&file](const QStringList &statements) {
        for (const QString &statement : statements)
            if (QSqlError error = file.Run(statement); error.isValid())
                return error;
        return QSqlError();
    };
    QSqlError error = file.Run(
        QStringLiteral("CREATE TEMP TABLE IF NOT EXISTS doomed (run INTEGER, number INTEGER, PRIMARY KEY "
                       "(run, number)) WITHOUT ROWID"));
    qint64 lastTooMany = LastTooMany(file, timings.mostRows);
    bool isDone = false;
    while (!error.isValid() && !isDone) {
        error = file.Whole([&] {
            QSqlError failure = runAll(
                {QStringLiteral("DELETE FROM doomed"),
                 QStringLiteral("INSERT INTO doomed SELECT run, number FROM actions WHERE time < %1 OR id <= "
                                "%2 ORDER BY id LIMIT %3")
                     .arg(oldest)
                     .arg(lastTooMany)
                     .arg(StepActions),
                 QStringLiteral(
                     "DELETE FROM results WHERE rowid IN (SELECT r.rowid FROM doomed d JOIN entries "
                     "e ON e.run = d.run AND e.action = d.number JOIN results r ON r.run = e.run "
                     "AND r.sequence = e.sequence)"),
                 QStringLiteral(
                     "DELETE FROM entries WHERE (run, action) IN (SELECT run, number FROM doomed)"),
                 QStringLiteral("DELETE FROM notes WHERE (run, action) IN (SELECT run, number FROM doomed)"),
                 QStringLiteral(
                     "DELETE FROM actions WHERE (run, number) IN (SELECT run, number FROM doomed)")});
            QSqlQuery count(file.Database());
            if (!failure.isValid() && count.exec(QStringLiteral("SELECT count(*) FROM doomed")) &&
                count.next())
                isDone = count.value(0).toInt() < StepActions;
            return failure;
        });
        // Rows of a later action may stand before the last ones of an earlier.
        if (isDone && lastTooMany > 0) {
            lastTooMany = LastTooMany(file, timings.mostRows);
            isDone = lastTooMany == 0;
        }
    }
    if (error.isValid())
        return error;
    // Not by what others have done: a program may have begun a run long ago and act only now.
    return file.Whole([&] {
        return runAll(
            {QStringLiteral("DELETE FROM drives WHERE time < %1 AND NOT EXISTS (SELECT 1 FROM actions "
                            "a WHERE a.run = drives.run AND a.link = drives.link)")
                 .arg(oldest),
             QStringLiteral("DELETE FROM runs WHERE began < %1 AND id <> %2 AND NOT EXISTS (SELECT 1 "
                            "FROM actions a WHERE a.run = runs.id)")
                 .arg(oldest)
                 .arg(run)});
    });
}

} // namespace quorvik
