#include "platform/DBEngine.h"

#include "platform/JetReader.h"
#include "platform/RuntimeFailure.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QUrl>
#include <QtEndian>
#include <limits>

namespace quorvik
{

namespace
{

constexpr int HeaderSize = 100;
constexpr char Magic[] = "SQLite format 3"; // with its closing zero byte
constexpr int WriteVersionOffset = 18;
constexpr int ReadVersionOffset = 19;
constexpr int FormatVersionOffset = 60;
constexpr int ApplicationIdOffset = 68;

/** Of the older format and its kin. */
constexpr int EngineNameOffset = 4;
constexpr char OlderEngineName[] = "Standard Jet DB"; // both with their closing zero byte
constexpr char LaterEngineName[] = "Standard ACE DB";
constexpr int EngineVersionOffset = 20;

enum class FileKind { Present, Older, LaterEngine, Foreign };

FileKind KindOf(const QByteArray &header)
{
    const auto holds = [&header](int offset, const char *text, qsizetype size) {
        return QByteArrayView(header)
            .sliced(std::min(offset, int(header.size())))
            .startsWith(QByteArrayView(text, size));
    };
    if (holds(0, Magic, sizeof Magic))
        return FileKind::Present;
    if (header.size() <= EngineVersionOffset)
        return FileKind::Foreign;
    if (holds(EngineNameOffset, OlderEngineName, sizeof OlderEngineName))
        return header.at(EngineVersionOffset) == 0 ? FileKind::Older : FileKind::LaterEngine;
    return holds(EngineNameOffset, LaterEngineName, sizeof LaterEngineName) ? FileKind::LaterEngine
                                                                            : FileKind::Foreign;
}

QString Quoted(const QString &name)
{
    return u'[' + name + u']';
}

QString SqlType(const Field &field)
{
    if (field.type == FieldType::dbText)
        return QStringLiteral("VARCHAR(%1)").arg(field.size);
    return field.type == FieldType::dbInteger ? QStringLiteral("SMALLINT") : QStringLiteral("INTEGER");
}

bool Fits(const QVariant &value, const Field &field)
{
    if (value.isNull())
        return !field.required;
    const int type = value.typeId();
    if (field.type == FieldType::dbText)
        return type == QMetaType::QString && value.toString().size() <= field.size;
    const qlonglong greatest = field.type == FieldType::dbInteger ? std::numeric_limits<std::int16_t>::max()
                                                                  : std::numeric_limits<std::int32_t>::max();
    const bool isWhole = type == QMetaType::LongLong || type == QMetaType::Int || type == QMetaType::Short;
    return isWhole && value.toLongLong() >= -greatest - 1 && value.toLongLong() <= greatest;
}

QString Misfit(const Field &field, std::size_t row)
{
    return QStringLiteral("row %1 holds a value that does not fit its column \"%2\"")
        .arg(row)
        .arg(field.name);
}

/** The engine's own address form, in which a file can be opened as one that never changes: no lock, no
 * journal, no second file beside it. */
QString ReadOnlyAddress(const QString &path)
{
    const QByteArray encoded = QUrl::toPercentEncoding(QFileInfo(path).absoluteFilePath(), "/:");
    return QStringLiteral("file://") + (encoded.startsWith('/') ? QString() : QStringLiteral("/")) +
           QString::fromLatin1(encoded) + QStringLiteral("?mode=ro&immutable=1");
}

/** Looks at a file before any engine does. @param kind gets what it is. */
QString CheckHeader(const QString &path, const QString &title, FileKind &kind)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("Could not find file \"%1\".").arg(path);
    // A pipe or a device would never end.
    if (!info.isFile())
        return QStringLiteral("\"%1\" is not a file.").arg(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("\"%1\" cannot be opened: %2.").arg(path, file.errorString());
    const QByteArray header = file.read(HeaderSize);
    const auto word = [&header](int offset) { return qFromBigEndian<quint32>(header.constData() + offset); };
    kind = KindOf(header);
    if (kind == FileKind::LaterEngine)
        return QStringLiteral(
                   "\"%1\" is a database of a later version than settings files have, and is not read.")
            .arg(title);
    if (kind == FileKind::Older)
        return info.size() > DBEngine::MaxFileSize ? QStringLiteral("\"%1\" is damaged.").arg(title)
                                                   : QString();
    if (header.size() < HeaderSize || kind != FileKind::Present ||
        word(ApplicationIdOffset) != DBEngine::ApplicationId)
        return QStringLiteral("\"%1\" is not a settings file of this program.").arg(title);
    if (word(FormatVersionOffset) > DBEngine::FormatVersion)
        return QStringLiteral("\"%1\" was written by a newer version of this program.").arg(title);
    // Only the plain journal format can be read without a second file.
    if (word(FormatVersionOffset) == 0 || header.at(WriteVersionOffset) != 1 ||
        header.at(ReadVersionOffset) != 1 || info.size() > DBEngine::MaxFileSize)
        return QStringLiteral("\"%1\" is damaged.").arg(title);
    return {};
}

} // namespace

std::size_t Recordset::ColumnOf(const QString &field) const
{
    for (std::size_t column = 0; column < fields_.size(); ++column)
        if (fields_[column].name == field)
            return column;
    throw RuntimeFailure(QStringLiteral("There is no column \"%1\".").arg(field));
}

const QVariant &Recordset::Value(const QString &field) const
{
    if (AtEnd())
        throw RuntimeFailure(QStringLiteral("There is no current record."));
    return values_[position_ * fields_.size() + ColumnOf(field)];
}

void Recordset::AddNew()
{
    newRow_.assign(fields_.size(), QVariant());
}

void Recordset::SetValue(const QString &field, const QVariant &value)
{
    // The driver would store a text that was never set as Null, which no reader of a required column takes.
    const bool isUnsetText = value.typeId() == QMetaType::QString && value.toString().isNull();
    newRow_[ColumnOf(field)] = isUnsetText ? QVariant(QLatin1String("")) : value;
}

QString Recordset::Update()
{
    for (std::size_t column = 0; column < fields_.size(); ++column) {
        if (!Fits(newRow_[column], fields_[column]))
            return QStringLiteral("The file was not written: %1.").arg(Misfit(fields_[column], position_));
        insert_->bindValue(int(column), newRow_[column]);
    }
    ++position_;
    if (!insert_->exec())
        return QStringLiteral("The file was not written: %1.").arg(insert_->lastError().databaseText());
    return {};
}

Database::Database() = default;

Database::~Database()
{
    Release();
}

void Database::Release()
{
    if (connectionName_.isEmpty())
        return;
    connection_.close();
    connection_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName_);
    connectionName_.clear();
}

QString Database::Open(const QString &name, const QString &options, const QStringList &statements)
{
    static quint64 count = 0;
    connectionName_ = QStringLiteral("quorvik-%1").arg(++count);
    connection_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName_);
    connection_.setConnectOptions(options);
    connection_.setDatabaseName(name);
    if (!connection_.open())
        return Failure(connection_.lastError().databaseText());
    for (const QString &statement : statements)
        if (QString failure = Execute(statement); !failure.isEmpty())
            return failure;
    return {};
}

QString Database::Failure(const QString &reason) const
{
    return title_.isEmpty() ? QStringLiteral("The file was not written: %1.").arg(reason)
                            : QStringLiteral("\"%1\": %2.").arg(title_, reason);
}

QString Database::Execute(const QString &statement)
{
    QSqlQuery query(connection_);
    if (!query.exec(statement))
        return Failure(query.lastError().databaseText());
    return {};
}

QString Database::AppendTableDef(const TableDef &table)
{
    QStringList columns;
    for (const Field &field : table.Fields())
        columns.append(Quoted(field.name) + u' ' + SqlType(field));
    return Execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(Quoted(table.Name()), columns.join(u',')));
}

QString Database::OpenForAppend(const TableDef &table, Recordset &recordset)
{
    recordset.fields_ = table.Fields();
    recordset.insert_ = std::make_unique<QSqlQuery>(connection_);
    const QStringList marks(qsizetype(table.Fields().size()), QStringLiteral("?"));
    if (!recordset.insert_->prepare(
            QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(Quoted(table.Name()), marks.join(u','))))
        return Failure(recordset.insert_->lastError().databaseText());
    return {};
}

QString Database::CheckSchema()
{
    // A view, trigger or virtual table has no pages of its own; nothing but tables of pages is read.
    constexpr int maxObjects = 32;
    QSqlQuery query(connection_);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT type, rootpage FROM sqlite_master LIMIT %1").arg(maxObjects + 1)))
        return Failure(query.lastError().databaseText());
    int objects = 0;
    while (query.next()) {
        const bool isPlainTable =
            query.value(0).toString() == QStringLiteral("table") && query.value(1).toLongLong() > 0;
        if (!isPlainTable || ++objects > maxObjects)
            return Failure(QStringLiteral("the file holds more than tables and is not read"));
    }
    if (query.lastError().isValid())
        return Failure(query.lastError().databaseText());
    return {};
}

QString Database::CheckColumns(const TableDef &table)
{
    QSqlQuery query(connection_);
    if (!query.exec(QStringLiteral("PRAGMA table_xinfo(%1)").arg(Quoted(table.Name()))))
        return Failure(query.lastError().databaseText());
    QStringList present;
    while (query.next()) {
        // A computed column would run what the file brings along.
        if (query.value(QStringLiteral("hidden")).toInt() == 0)
            present.append(query.value(QStringLiteral("name")).toString());
    }
    return CheckColumnNames(table, present);
}

QString Database::CheckColumnNames(const TableDef &table, const QStringList &present) const
{
    if (present.isEmpty())
        return Failure(QStringLiteral("the table \"%1\" is missing").arg(table.Name()));
    for (const Field &field : table.Fields())
        if (!present.contains(field.name, Qt::CaseInsensitive))
            return Failure(QStringLiteral("the column \"%1\" of the table \"%2\" is missing")
                               .arg(field.name, table.Name()));
    return {};
}

QString Database::TakeRow(const QString &tableName, const QVariantList &row, Recordset &recordset) const
{
    if (recordset.rowCount_ == std::size_t(MaxRecords))
        return Failure(
            QStringLiteral("the table \"%1\" holds more than %2 rows").arg(tableName).arg(MaxRecords));
    for (qsizetype column = 0; column < row.size(); ++column) {
        const Field &field = recordset.fields_[std::size_t(column)];
        if (!Fits(row[column], field))
            return Failure(Misfit(field, recordset.rowCount_));
        recordset.values_.push_back(row[column]);
    }
    ++recordset.rowCount_;
    return {};
}

QString Database::OpenSnapshot(const TableDef &table, const QStringList &columns, Recordset &recordset)
{
    QStringList quoted;
    for (const Field &field : table.Fields()) {
        if (!columns.contains(field.name))
            continue;
        recordset.fields_.push_back(field);
        quoted.append(Quoted(field.name));
    }
    if (older_)
        return OpenOlderSnapshot(table, recordset);
    if (QString failure = CheckColumns(table); !failure.isEmpty())
        return failure;
    QSqlQuery query(connection_);
    query.setForwardOnly(true);
    if (!query.exec(
            QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid").arg(quoted.join(u','), Quoted(table.Name()))))
        return Failure(query.lastError().databaseText());
    while (query.next()) {
        QVariantList row;
        for (qsizetype column = 0; column < quoted.size(); ++column)
            row.append(query.value(int(column)));
        if (QString failure = TakeRow(table.Name(), row, recordset); !failure.isEmpty())
            return failure;
    }
    if (query.lastError().isValid())
        return Failure(query.lastError().databaseText());
    return {};
}

QString Database::Close()
{
    QString failure = Execute(QStringLiteral("COMMIT"));
    Release();
    return failure;
}

QString DBEngine::CreateDatabase(const QString &path, Database &database)
{
    // The file counts for nothing until its owner has flushed and renamed it, so the engine's own files
    // and flushes would only cost time.
    return database.Open(
        path, QString(),
        {QStringLiteral("PRAGMA journal_mode = MEMORY"), QStringLiteral("PRAGMA synchronous = OFF"),
         QStringLiteral("PRAGMA application_id = %1").arg(ApplicationId),
         QStringLiteral("PRAGMA user_version = %1").arg(FormatVersion), QStringLiteral("BEGIN")});
}

QString DBEngine::OpenDatabase(const QString &path, Database &database)
{
    database.title_ = QFileInfo(path).fileName();
    FileKind kind = FileKind::Foreign;
    QString failure = CheckHeader(path, database.title_, kind);
    if (failure.isEmpty() && kind == FileKind::Older)
        return database.OpenOlder(path);
    if (failure.isEmpty())
        failure = database.Open(
            ReadOnlyAddress(path), QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"),
            {QStringLiteral("PRAGMA trusted_schema = OFF"), QStringLiteral("PRAGMA cell_size_check = ON"),
             QStringLiteral("PRAGMA query_only = ON")});
    return failure.isEmpty() ? database.CheckSchema() : failure;
}

bool DBEngine::IsOlderFormat(const QString &path)
{
    // A pipe or a device would never end.
    QFile file(path);
    return !path.isEmpty() && QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           KindOf(file.read(HeaderSize)) == FileKind::Older;
}

} // namespace quorvik
