#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace quorvik
{

struct JetTable;

/** Types of a column: signed 16-bit, signed 32-bit, text of a greatest length in characters. */
enum class FieldType { dbInteger = 3, dbLong = 4, dbText = 10 };

/** One column of a table. */
struct Field {
    QString name;
    FieldType type = FieldType::dbLong;
    int size = 0;         ///< greatest length of a text, 0 for numbers
    bool required = true; ///< whether Null is refused
};

/** The shape of a table, before it is appended to a database, or as a reader expects to find it. */
class TableDef
{
public:
    explicit TableDef(QString name)
        : name_(std::move(name))
    {
    }

    static Field CreateField(const QString &name, FieldType type, int size = 0)
    {
        return {name, type, size, true};
    }
    void Append(Field field) { fields_.push_back(std::move(field)); }

    const QString &Name() const { return name_; }
    const std::vector<Field> &Fields() const { return fields_; }

private:
    QString name_;
    std::vector<Field> fields_;
};

/**
 * The rows of one table. A snapshot holds all rows, already checked against the column types; a recordset for
 * appending takes rows one by one through AddNew(), SetValue() and Update().
 */
class Recordset
{
public:
    bool AtEnd() const { return position_ >= rowCount_; } ///< EOF
    void MoveNext() { ++position_; }
    int RecordCount() const { return int(rowCount_); }
    /** Value of a column in the present row, null for Null; raises RuntimeFailure past the end or for a
     * column that was not read. */
    const QVariant &Value(const QString &field) const;

    void AddNew();
    void SetValue(const QString &field, const QVariant &value);
    /** Stores the row begun by AddNew(). @return an empty text, or why a value does not fit or was not
     * stored.
     */
    QString Update();

private:
    friend class Database;

    std::size_t ColumnOf(const QString &field) const;

    std::vector<Field> fields_;
    std::vector<QVariant> values_; ///< of all rows, one row after the other
    std::size_t rowCount_ = 0;
    std::size_t position_ = 0;
    std::vector<QVariant> newRow_;
    std::unique_ptr<QSqlQuery> insert_;
};

/**
 * One open file of tables. Every routine gives an empty text, or a plain sentence on what is wrong; none
 * raises or shows anything. An object that goes out of scope closes its file and drops what was not committed
 * by Close().
 */
class Database
{
public:
    Database();
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    static TableDef CreateTableDef(const QString &name) { return TableDef(name); }
    QString AppendTableDef(const TableDef &table);

    /**
     * Reads a whole table. All columns of table must exist; those in columns are taken, rows in insertion
     * order. More than MaxRecords rows, Null in a required column or a value outside its column's type are
     * refused.
     */
    QString OpenSnapshot(const TableDef &table, const QStringList &columns, Recordset &recordset);

    /** Prepares a table of this database for appending rows. */
    QString OpenForAppend(const TableDef &table, Recordset &recordset);

    /** Makes all that was written one whole, and closes the file. Recordsets for appending end here. */
    QString Close();

    static constexpr int MaxRecords = 32768;

private:
    friend class DBEngine;

    /** Opens the connection and runs statements on it. @param name path or address of the file. */
    QString Open(const QString &name, const QString &options, const QStringList &statements);
    QString Execute(const QString &statement);
    QString Failure(const QString &reason) const;
    QString CheckSchema();
    QString CheckColumns(const TableDef &table);
    QString CheckColumnNames(const TableDef &table, const QStringList &present) const;
    /** Checks a row's values, one for each column of the recordset, and appends them. */
    QString TakeRow(const QString &tableName, const QVariantList &row, Recordset &recordset) const;
    QString OpenOlder(const QString &path);
    QString OpenOlderSnapshot(const TableDef &table, Recordset &recordset) const;
    void Release();

    QSqlDatabase connection_;
    QString connectionName_;
    QString title_; ///< the file's name for sentences on reading; empty while writing
    std::unique_ptr<std::vector<JetTable>> older_; ///< the tables of a file of the older format
};

/** Creates and opens files of tables. */
class DBEngine
{
public:
    /** Creates a database in a file that is empty or does not exist yet. */
    static QString CreateDatabase(const QString &path, Database &database);

    /**
     * Opens a database for reading only. Whatever is no plain file of this program's format and version, or
     * holds anything but plain tables, is refused: nothing that a file brings along is ever run. A file of
     * the older format (Jet version 3) opens as well; it is read whole, by a process of its own.
     */
    static QString OpenDatabase(const QString &path, Database &database);

    /** Whether a file is one of the older format, by what it holds and whatever its name. Such files are
     * read, never written. */
    static bool IsOlderFormat(const QString &path);

    /** The mark of this program's files. */
    static constexpr std::uint32_t ApplicationId = 0x51525658;
    static constexpr std::uint32_t FormatVersion = 1;
    /** Many times what the longest possible set needs; a greater file is none of ours. */
    static constexpr qint64 MaxFileSize = 16 * 1024 * 1024;
};

} // namespace quorvik
