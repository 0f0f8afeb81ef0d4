#pragma once

#include "jet/JetWriter.h"

namespace quorvik
{
class Document;
class ParameterTable;
} // namespace quorvik

namespace quorvik::jet
{

/** Places in the vector that SettingsTables() gives. */
enum { Settings, Properties, VirtualSettings };

/** The tables of a settings file: the parameters 0 to LastParam, the notes (an empty text is one blank, a
 * null one Null), the virtual operator. */
std::vector<Table> SettingsTables(const ParameterTable &table, const Document &document);

/** Puts before each so-manieth row one that was deleted, with the same values but for the first column. */
void AddDeletedRows(Table &table, int every);

/** Writes the database. @return whether it is written. */
bool WriteFile(const QString &path, const std::vector<Table> &tables);

} // namespace quorvik::jet
