#include "history/JournalWriter.h"

#include "history/JournalTables.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>
#include <utility>

namespace quorvik
{

namespace
{

constexpr qint64 MsOfDay = 86400000;

QVariant Nullable(const std::optional<std::int32_t> &raw)
{
    return raw ? QVariant(*raw) : QVariant();
}

/** Binds values to a prepared statement and runs it. */
QSqlError Insert(QSqlQuery &query, const QVariantList &values)
{
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    return query.exec() ? QSqlError() : query.lastError();
}

QSqlQuery Prepared(const QSqlDatabase &database, const QString &table, const QString &columns)
{
    QStringList marks;
    for (qsizetype i = 0; i <= columns.count(u','); ++i)
        marks += QStringLiteral("?");
    QSqlQuery query(database);
    query.prepare(
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, columns, marks.join(QLatin1Char(','))));
    return query;
}

template<typename T> void Append(std::vector<T> &to, const std::vector<T> &from)
{
    to.insert(to.end(), from.begin(), from.end());
}

} // namespace

JournalWriter::JournalWriter(const QString &path, const JournalTimings &timings)
    : path_(path)
    , timings_(timings)
    , connection_(QUuid::createUuid().toString())
    , began_(JournalTime::Now())
{
}

JournalWriter::~JournalWriter()
{
    Close();
}

void JournalWriter::Begin(const QString &user)
{
    user_ = user;
    if (Open())
        Prune();
}

bool JournalWriter::Open()
{
    if (QSqlDatabase::contains(connection_))
        return true;
    QDir().mkpath(QFileInfo(path_).path());
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection_);
    database.setDatabaseName(path_);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(timings_.busyMs));
    QSqlError error;
    if (!database.open())
        error = database.lastError();
    if (!error.isValid())
        error = MakeTables();
    if (!error.isValid() && run_ == 0)
        error = BeginRun();
    if (!error.isValid())
        return true;
    Close();
    Q_EMIT Trouble(QStringLiteral("The history cannot be written: %1").arg(error.text()));
    return false;
}

void JournalWriter::Close()
{
    if (!QSqlDatabase::contains(connection_))
        return;
    QSqlDatabase::database(connection_, false).close();
    QSqlDatabase::removeDatabase(connection_);
}

QSqlError JournalWriter::Run(const QString &statement)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    return query.exec(statement) ? QSqlError() : query.lastError();
}

template<typename Work> QSqlError JournalWriter::Whole(Work work)
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

QSqlError JournalWriter::MakeTables()
{
    for (const char *pragma : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL"})
        if (const QSqlError error = Run(QLatin1String(pragma)); error.isValid())
            return error;
    return Whole([this] {
        QSqlQuery query(QSqlDatabase::database(connection_, false));
        query.exec(QStringLiteral("PRAGMA user_version"));
        if (query.next() && query.value(0).toInt() == JournalTables::Version)
            return QSqlError();
        query.finish();
        QStringList statements = JournalTables::Statements();
        statements += QStringLiteral("PRAGMA application_id=%1").arg(JournalTables::ApplicationId);
        statements += QStringLiteral("PRAGMA user_version=%1").arg(JournalTables::Version);
        for (const QString &statement : std::as_const(statements))
            if (QSqlError error = Run(statement); error.isValid())
                return error;
        return QSqlError();
    });
}

QSqlError JournalWriter::BeginRun()
{
    return Whole([this] {
        QSqlQuery query = Prepared(QSqlDatabase::database(connection_, false), QStringLiteral("runs"),
                                   QStringLiteral("began, offset, user, version"));
        QSqlError error =
            Insert(query, {began_.utcMs, began_.offsetMinutes, user_.isEmpty() ? QVariant() : QVariant(user_),
                           QCoreApplication::applicationVersion()});
        if (!error.isValid())
            run_ = query.lastInsertId().toLongLong();
        return error;
    });
}

void JournalWriter::Write(const JournalBatch &batch)
{
    Append(waiting_.actions, batch.actions);
    Append(waiting_.rows, batch.rows);
    Append(waiting_.results, batch.results);
    Append(waiting_.notes, batch.notes);
    Append(waiting_.drives, batch.drives);
    if (!Open())
        return;
    if (const QSqlError error = Whole([this] { return WriteBatch(waiting_); }); error.isValid()) {
        Q_EMIT Trouble(QStringLiteral("The history cannot be written: %1").arg(error.text()));
        return;
    }
    waiting_ = {};
    Q_EMIT Written();
}

QSqlError JournalWriter::WriteBatch(const JournalBatch &batch)
{
    const QSqlDatabase database = QSqlDatabase::database(connection_, false);
    QSqlError error;
    const auto writeAll = [&](const auto &list, const QString &table, const QString &columns,
                              const auto &valuesOf) {
        if (list.empty() || error.isValid())
            return;
        QSqlQuery query = Prepared(database, table, QStringLiteral("run, ") + columns);
        for (const auto &item : list)
            if (error = Insert(query, QVariantList{run_} + valuesOf(item)); error.isValid())
                return;
    };
    writeAll(batch.drives, QStringLiteral("drives"),
             QStringLiteral("link, time, offset, model, amps, firmware, trigger_firmware, hours, last_param"),
             [](const JournalDrive &drive) -> QVariantList {
                 const DriveIdentity &identity = drive.identity;
                 return {
                     drive.link,         drive.time.utcMs,  drive.time.offsetMinutes, identity.model,
                     identity.driveAmps, identity.firmware, identity.triggerFirmware, identity.operatingHours,
                     identity.lastParam};
             });
    writeAll(batch.actions, QStringLiteral("actions"),
             QStringLiteral("number, time, offset, origin, title, set_name, link"),
             [](const JournalAction &action) -> QVariantList {
                 return {action.number,
                         action.time.utcMs,
                         action.time.offsetMinutes,
                         int(action.origin),
                         action.title.isNull() ? QStringLiteral("") : action.title,
                         action.setName,
                         action.link};
             });
    writeAll(batch.rows, QStringLiteral("entries"),
             QStringLiteral("action, sequence, time, offset, param, name, raw_before, raw_after, "
                            "text_before, text_after, result"),
             [](const JournalRow &row) -> QVariantList {
                 return {row.action,
                         row.sequence,
                         row.time.utcMs,
                         row.time.offsetMinutes,
                         row.param,
                         row.name.isNull() ? QStringLiteral("") : row.name,
                         Nullable(row.rawBefore),
                         row.rawAfter,
                         row.textBefore.isNull() ? QStringLiteral("") : row.textBefore,
                         row.textAfter.isNull() ? QStringLiteral("") : row.textAfter,
                         int(row.result)};
             });
    writeAll(batch.results, QStringLiteral("results"),
             QStringLiteral("sequence, time, offset, result, raw, text"),
             [](const JournalResult &result) -> QVariantList {
                 return {result.sequence,           result.time.utcMs,
                         result.time.offsetMinutes, int(result.result),
                         Nullable(result.raw),      result.text.isNull() ? QStringLiteral("") : result.text};
             });
    writeAll(batch.notes, QStringLiteral("notes"), QStringLiteral("action, text"),
             [](const JournalNote &note) -> QVariantList {
                 return {note.action, note.text};
             });
    return error;
}

QSqlError JournalWriter::Prune()
{
    const qint64 oldest = QDateTime::currentMSecsSinceEpoch() - timings_.mostDays * MsOfDay;
    return Whole([&] {
        for (const QString &statement :
             {QStringLiteral("DELETE FROM entries WHERE time < %1").arg(oldest),
              QStringLiteral("DELETE FROM entries WHERE id <= (SELECT id FROM entries ORDER BY id DESC "
                             "LIMIT 1 OFFSET %1)")
                  .arg(timings_.mostRows),
              QStringLiteral("DELETE FROM actions WHERE time < (SELECT coalesce(min(time), %1) FROM entries) "
                             "AND NOT EXISTS (SELECT 1 FROM entries WHERE entries.run = actions.run AND "
                             "entries.action = actions.number)")
                  .arg(oldest),
              QStringLiteral("DELETE FROM notes WHERE NOT EXISTS (SELECT 1 FROM actions WHERE actions.run = "
                             "notes.run AND actions.number = notes.action)"),
              QStringLiteral("DELETE FROM results WHERE time < (SELECT coalesce(min(time), %1) FROM entries)")
                  .arg(oldest),
              QStringLiteral("DELETE FROM drives WHERE run < (SELECT coalesce(min(run), 0) FROM actions)"),
              QStringLiteral("DELETE FROM runs WHERE id < (SELECT coalesce(min(run), 0) FROM actions)")})
            if (QSqlError error = Run(statement); error.isValid())
                return error;
        return QSqlError();
    });
}

} // namespace quorvik
