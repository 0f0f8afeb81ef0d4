#pragma once

#include "model/Document.h"
#include "model/ParamTable.h"

#include <QString>

namespace quorvik
{

class ParameterTable;

/** All that a settings file holds, beside any open set. */
struct StoredSet {
    RecordArray records;
    QString notes;                                    ///< null where the file has none
    std::array<VirtualSetting, 12> virtualSettings{}; ///< empty where the file has no virtual operator

    bool IsSame(const StoredSet &other) const;
};

/** Reads a whole settings file of any format. @return empty, or what is wrong with the file. */
QString ReadStoredSet(const QString &path, StoredSet &set);
/** Writes one in the present format, whole or not at all. @return empty, or why it was not written. */
QString WriteStoredSet(const QString &path, const StoredSet &set);

/**
 * Reads the factory table of a file into PresetTable and FileLastParam. A table too short to hold the
 * parameters that the logic itself knows is refused.
 * @param notes gets the file's notes, where there are any.
 * @return empty, or what is wrong with the file.
 */
QString LoadFactoryTable(const QString &path, ParameterTable &table, QString *notes = nullptr);

/**
 * Reads and writes parameter sets on disk: every parameter's record, the notes, and the virtual operator's
 * setup. All routines give an empty text on success, or the engine's sentence on failure; none shows
 * anything.
 */
class SettingsFile
{
public:
    SettingsFile(ParameterTable &table, Document &document);

    /** Reads the factory table with its notes; FileName becomes "unnamed". */
    QString LoadPresets(const QString &path);

    /**
     * Reads a settings file into the table, the notes and the virtual operator, and makes it the open file.
     * On line the drive's model, its read-only parameters and all but the value of parameter 123 are kept. A
     * file longer than the factory table makes both tables grow, a shorter one leaves the remaining records
     * as they are. A file that is refused is refused as a whole: table, notes, FileName and marks stay as
     * they were. What the virtual operator's table lacks is no failure; its slots are then empty.
     */
    QString LoadSettings(const QString &path);

    /**
     * Writes the table, the notes and the virtual operator to a sibling file, flushes it and renames it over
     * path, so that one whole file exists at every instant. Changes no mark. An empty Notes becomes one blank
     * and stays so.
     */
    QString Save(const QString &path);

private:
    void GrowPresets();

    ParameterTable &table_;
    Document &document_;
};

} // namespace quorvik
