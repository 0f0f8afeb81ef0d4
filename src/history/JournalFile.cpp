#include "history/JournalFile.h"

#include "history/JournalTables.h"
#include "platform/FileLock.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace quorvik
{

namespace
{

constexpr QFile::Permissions Private = QFile::ReadOwner | QFile::WriteOwner;
/** What a program that is older by this many versions may still meet; anything above was no version. */
constexpr int NewestConceivable = 99;
/** So many names are tried for a file that is set aside within a second. */
constexpr int MostNames = 100;
constexpr const char *Companions[] = {"-wal", "-shm"};

/** SQLite's own numbers, in the lowest byte of what it reports. */
enum SQLiteCode {
    Perm = 3,
    IsBusy = 5,
    IsLocked = 6,
    IsReadOnly = 8,
    IoError = 10,
    Corrupt = 11,
    IsFull = 13,
    CannotOpen = 14,
    FormatError = 24,
    NotADatabase = 26,
};
constexpr int LowestByte = 0xff;

QString LockPath(const QString &path)
{
    return path + QStringLiteral(".lock");
}

} // namespace

JournalFault FaultOf(const QSqlError &error)
{
    if (!error.isValid())
        return JournalFault::None;
    switch (error.nativeErrorCode().toInt() & LowestByte) {
    case IsBusy:
    case IsLocked:
        return JournalFault::Busy;
    case IsFull:
        return JournalFault::Full;
    case Perm:
    case IsReadOnly:
    case CannotOpen:
        return JournalFault::ReadOnly;
    case IoError:
        return JournalFault::Broken;
    case Corrupt:
    case FormatError:
    case NotADatabase:
        return JournalFault::Damaged;
    default:
        return JournalFault::Odd;
    }
}

JournalFile::JournalFile(const QString &path, Access access, int busyMs)
    : path_(path)
    , access_(access)
    , busyMs_(busyMs)
    , connection_(QUuid::createUuid().toString())
{
}

JournalFile::~JournalFile()
{
    Close();
}

bool JournalFile::WasReplaced() const
{
    return IsOpen() && MarkOf(path_) != mark_;
}

JournalFault JournalFile::Fault(const QSqlError &error)
{
    failureText_ = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    return FaultOf(error);
}

JournalFault JournalFile::Open()
{
    if (access_ == Access::Write)
        QDir().mkpath(QFileInfo(path_).path());
    // A folder that takes no lock file has nobody who renames in it.
    FileLock lock(LockPath(path_));
    if (lock.Acquire(busyMs_) == FileLock::Outcome::Refused) {
        failureText_ = QStringLiteral("locked");
        return JournalFault::Busy;
    }
    if (access_ == Access::Write) {
        // The log takes over who may read it from the file.
        QFile made(path_);
        if (made.open(QIODevice::WriteOnly | QIODevice::NewOnly, Private))
            made.close();
        else
            KeepPrivate();
    }
    mark_ = MarkOf(path_);
    const JournalFault fault = Connect();
    if (fault != JournalFault::None)
        Close();
    return fault;
}

void JournalFile::KeepPrivate()
{
    for (const QString &path :
         {path_, path_ + QLatin1String(Companions[0]), path_ + QLatin1String(Companions[1])})
        if ((QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)) != 0)
            QFile::setPermissions(path, Private);
}

JournalFault JournalFile::Connect()
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection_);
    database.setDatabaseName(path_);
    const QString readOnly = access_ == Access::Read ? QStringLiteral(";QSQLITE_OPEN_READONLY") : QString();
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyMs_) + readOnly);
    if (!database.open())
        return Fault(database.lastError());
    return CheckTables();
}

JournalFault JournalFile::CheckTables()
{
    QSqlError error;
    const qint64 version = Ask(QStringLiteral("PRAGMA user_version"), &error);
    if (error.isValid())
        return Fault(error);
    const qint64 application = Ask(QStringLiteral("PRAGMA application_id"));
    const bool isOurs = application == JournalTables::ApplicationId;
    if (isOurs && version > JournalTables::Version && version <= NewestConceivable) {
        failureText_ = QStringLiteral("it is of a newer version of Quorvik");
        return JournalFault::Newer;
    }
    const bool isNew =
        application == 0 && version == 0 && Ask(QStringLiteral("SELECT count(*) FROM sqlite_master")) == 0;
    if (!isNew && (!isOurs || version != JournalTables::Version)) {
        failureText_ = QStringLiteral("it is no history of Quorvik");
        return JournalFault::Damaged;
    }
    if (access_ == Access::Read)
        return isNew ? JournalFault::Empty : JournalFault::None;
    // The log does not grow for good with one great transaction.
    for (const char *pragma :
         {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL", "PRAGMA journal_size_limit=4194304"})
        if (error = Run(QLatin1String(pragma)); error.isValid())
            return Fault(error);
    return isNew ? Fault(Whole([this] { return MakeTables(); })) : JournalFault::None;
}

QSqlError JournalFile::MakeTables()
{
    QStringList statements = JournalTables::Statements();
    statements += QStringLiteral("PRAGMA application_id=%1").arg(JournalTables::ApplicationId);
    statements += QStringLiteral("PRAGMA user_version=%1").arg(JournalTables::Version);
    for (const QString &statement : std::as_const(statements))
        if (QSqlError error = Run(statement); error.isValid())
            return error;
    return {};
}

void JournalFile::Close()
{
    if (!IsOpen())
        return;
    Database().close();
    QSqlDatabase::removeDatabase(connection_);
}

bool JournalFile::SetAside(QString &newPath)
{
    Close();
    FileLock lock(LockPath(path_));
    if (lock.Acquire(busyMs_) == FileLock::Outcome::Refused)
        return false;
    if (!mark_ || MarkOf(path_) != mark_)
        return true;
    const QFileInfo file(path_);
    const QString stem = file.path() + u'/' + file.completeBaseName() + QStringLiteral("-damaged-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (int i = 1; i <= MostNames; ++i) {
        const QString number = i == 1 ? QString() : u'-' + QString::number(i);
        const QString aside = stem + number + u'.' + file.suffix();
        if (QFile::exists(aside))
            continue;
        if (!QFile::rename(path_, aside))
            return false;
        for (const char *companion : Companions)
            QFile::rename(path_ + QLatin1String(companion), aside + QLatin1String(companion));
        newPath = aside;
        return true;
    }
    return false;
}

QSqlError JournalFile::Run(const QString &statement)
{
    QSqlQuery query(Database());
    if (query.exec(statement))
        return {};
    failureText_ = query.lastError().databaseText();
    return query.lastError();
}

qint64 JournalFile::Ask(const QString &statement, QSqlError *error)
{
    QSqlQuery query(Database());
    if (query.exec(statement) && query.next())
        return query.value(0).toLongLong();
    if (error != nullptr)
        *error = query.lastError();
    return -1;
}

bool JournalFile::IsSound()
{
    QSqlQuery query(Database());
    failureText_ = QStringLiteral("it is damaged");
    if (!query.exec(QStringLiteral("PRAGMA integrity_check(1)")) || !query.next())
        // Whoever holds it, or a disk that fails, says nothing about what it holds.
        return FaultOf(query.lastError()) != JournalFault::Damaged;
    if (query.value(0).toString() != QLatin1String("ok"))
        return false;
    query.finish();
    const qint64 tables =
        Ask(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name NOT LIKE 'sqlite_%'"));
    return tables == JournalTables::Statements().size();
}

} // namespace quorvik
