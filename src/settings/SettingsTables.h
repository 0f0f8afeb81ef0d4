#pragma once

#include "platform/DBEngine.h"

#include <QString>
#include <functional>

namespace quorvik
{

struct ParamRecord;
class RecordArray;

/** Characters that a settings file keeps of the notes. */
inline constexpr int LongestNotes = 255;

/** The tables of a settings file and of the factory table, as both are written and expected. */
const TableDef &SettingsTable();
const TableDef &PropertiesTable();
const TableDef &VirtualSettingsTable();

/** Appends the parameters' table with the records 0 to lastParam. @return an empty text or the engine's
 * sentence.
 */
QString WriteSettingsTable(Database &database, const RecordArray &records, int lastParam);

/** Appends the table of properties; a null text stores Null. @return as above. */
QString WritePropertiesTable(Database &database, const QString &notes);

/** Why a settings file is not written over what stands at path: that is one of the older format. Else empty.
 */
QString OlderFormatRefusal(const QString &path);

/**
 * Writes a whole file, never over one of the older format: the parameters 0 to lastParam, the notes, and the
 * tables that the caller adds.
 * @param addTables appends to the database and returns as above; may be empty.
 * @return an empty text or a sentence; what stood at path is then as it was.
 */
QString WriteSettingsDatabase(const QString &path, const RecordArray &records, int lastParam,
                              const QString &notes, const std::function<QString(Database &)> &addTables = {});

/** Reads all rows of the parameters' table. The column Tag must be there, but is never read. @return as
 * above. */
QString OpenSettingsTable(Database &database, Recordset &rows);

/**
 * Reads the notes, null for Null. A file without a row of properties is refused. @return as above.
 */
QString ReadNotes(Database &database, QString &notes);

/** The present row as a record, its flags 0. */
ParamRecord RecordOf(const Recordset &row);

/**
 * Text of a file as it may stand in a label: what is no visible character becomes a blank, so that a text can
 * neither break a line nor turn the direction of what stands beside it.
 * @param keepLines leaves line breaks and tabulators in place.
 */
QString ShowableText(QString text, bool keepLines);

} // namespace quorvik
