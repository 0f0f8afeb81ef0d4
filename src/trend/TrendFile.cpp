#include "trend/TrendFile.h"

#include "history/JournalFile.h"
#include "platform/FileLock.h"
#include "trend/TrendTables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace quorvik
{

namespace
{

constexpr QFile::Permissions Private = QFile::ReadOwner | QFile::WriteOwner;
/** What a program that is older by this many versions may still meet; anything above was no version. */
constexpr qint64 NewestConceivable = 99;

} // namespace

TrendFile::TrendFile(const QString &path, int busyMs)
    : path_(path)
    , busyMs_(busyMs)
    , connection_(QUuid::createUuid().toString())
{
}

TrendFile::~TrendFile()
{
    Close();
}

bool TrendFile::IsBeingWritten(const QString &path)
{
    if (!QFile::exists(LockPath(path)))
        return false;
    FileLock lock(LockPath(path));
    return lock.Acquire(0) == FileLock::Outcome::Refused;
}

bool TrendFile::Remove(const QString &path)
{
    if (QFile::exists(path) && !QFile::remove(path))
        return false;
    for (const QString &companion : {path + QStringLiteral("-journal"), LockPath(path)})
        QFile::remove(companion);
    return true;
}

bool TrendFile::Fail(const QSqlError &error)
{
    const JournalFault fault = FaultOf(error);
    wasBusy_ = fault == JournalFault::Busy;
    wasDamaged_ = fault == JournalFault::Damaged;
    switch (fault) {
    case JournalFault::None:
        return true;
    case JournalFault::Busy:
        failure_ = QStringLiteral("another program holds it");
        break;
    case JournalFault::Full:
        failure_ = QStringLiteral("the disk is full");
        break;
    case JournalFault::ReadOnly:
        failure_ = QStringLiteral("it cannot be made or opened, or must not be written to");
        break;
    case JournalFault::Broken:
        failure_ = QStringLiteral("the disk fails");
        break;
    case JournalFault::Damaged:
        failure_ = QStringLiteral("it is damaged");
        break;
    default:
        failure_ = error.databaseText();
        break;
    }
    return false;
}

bool TrendFile::Damaged()
{
    wasBusy_ = false;
    wasDamaged_ = true;
    failure_ = QStringLiteral("it is damaged");
    return false;
}

bool TrendFile::Open(bool mayMake)
{
    Close();
    if (mayMake) {
        QDir().mkpath(QFileInfo(path_).path());
        // What SQLite puts beside it takes over who may read it.
        QFile made(path_);
        if (made.open(QIODevice::WriteOnly | QIODevice::NewOnly, Private))
            made.close();
    } else if (!QFile::exists(path_)) {
        failure_ = QStringLiteral("it is not there any more");
        wasBusy_ = wasDamaged_ = false;
        return false;
    }
    const bool isOpen = Connect(mayMake);
    if (!isOpen)
        Close();
    return isOpen;
}

bool TrendFile::Connect(bool mayMake)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection_);
    database.setDatabaseName(path_);
    // What a crash left half written is taken back by whoever opens it next, which needs to write.
    const QString readOnly =
        QFileInfo(path_).isWritable() ? QString() : QStringLiteral(";QSQLITE_OPEN_READONLY");
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyMs_) + readOnly);
    if (!database.open())
        return Fail(database.lastError());
    return CheckTables(mayMake);
}

bool TrendFile::CheckTables(bool mayMake)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next())
        return Fail(query.lastError());
    const qint64 version = query.value(0).toLongLong();
    query.finish();
    const qint64 application = Ask(QStringLiteral("PRAGMA application_id")).toLongLong();
    wasBusy_ = wasDamaged_ = false;
    if (application == TrendTables::ApplicationId && version > TrendTables::Version &&
        version <= NewestConceivable) {
        failure_ = QStringLiteral("it is of a newer version of Quorvik");
        return false;
    }
    if (!query.exec(QStringLiteral("SELECT sql FROM sqlite_master ORDER BY rowid")))
        return Fail(query.lastError());
    QStringList found;
    while (query.next())
        found += query.value(0).toString();
    query.finish();
    if (mayMake && application == 0 && version == 0 && found.isEmpty())
        return Whole(QStringLiteral("BEGIN IMMEDIATE"), [this] {
            QStringList statements = TrendTables::Statements();
            statements += QStringLiteral("PRAGMA application_id=%1").arg(TrendTables::ApplicationId);
            statements += QStringLiteral("PRAGMA user_version=%1").arg(TrendTables::Version);
            for (const QString &statement : std::as_const(statements))
                if (QSqlError error = Run(statement); error.isValid())
                    return error;
            return QSqlError();
        });
    // Nothing else may be in it, either: a view or a trigger of a stranger would be run.
    if (application == TrendTables::ApplicationId && version == TrendTables::Version &&
        found == TrendTables::Statements())
        return true;
    wasDamaged_ = true;
    failure_ = QStringLiteral("it is no recording of Quorvik");
    return false;
}

void TrendFile::Close()
{
    writtenHead_.reset();
    writtenChannels_.clear();
    if (!IsOpen())
        return;
    QSqlDatabase::database(connection_, false).close();
    QSqlDatabase::removeDatabase(connection_);
}

QVariant TrendFile::Ask(const QString &statement)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    return query.exec(statement) && query.next() ? query.value(0) : QVariant();
}

QSqlError TrendFile::Run(const QString &statement)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    return query.exec(statement) ? QSqlError() : query.lastError();
}

bool TrendFile::Whole(const QString &begin, const std::function<QSqlError()> &work)
{
    QSqlError error = Run(begin);
    if (error.isValid())
        return Fail(error);
    error = work();
    if (!error.isValid())
        error = Run(QStringLiteral("COMMIT"));
    if (error.isValid())
        Run(QStringLiteral("ROLLBACK"));
    return Fail(error);
}

} // namespace quorvik
