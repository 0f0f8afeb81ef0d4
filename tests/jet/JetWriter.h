#pragma once

#include <QByteArray>
#include <QVariant>
#include <vector>

/**
 * Writes databases of Jet version 3.0, for tests of what reads them: a header, a catalogue, and tables of
 * numbers and texts without indexes. The layout follows the public descriptions of the format.
 */
namespace quorvik::jet
{

/** The numbers of the format itself. */
enum class Type { Byte = 2, Integer = 3, Long = 4, Double = 7, Text = 10, LongBinary = 11 };

struct Column {
    QByteArray name;
    Type type = Type::Long;
    int size = 0;         ///< of a text, in characters
    bool isFixed = false; ///< a text that is filled up with blanks; numbers are always fixed
};

/** Where a row lies: on its page; on another one, with a pointer in its place; or it was deleted. */
enum class Place { Own, Overflow, Deleted };

struct Row {
    std::vector<QVariant> values; ///< by column; a null one is Null, texts are QByteArray in code page 1252
    Place place = Place::Own;
};

struct Table {
    QByteArray name;
    std::vector<Column> columns;
    std::vector<Row> rows;
};

/** A text in code page 1252; what that has no letter for becomes a question mark. */
QByteArray Code1252(const QString &text);

/**
 * The bytes of a database file. At most six tables and 1024 pages of 2048 bytes, each row within a page; more
 * raises std::length_error.
 */
QByteArray WriteDatabase(const std::vector<Table> &tables);

} // namespace quorvik::jet
