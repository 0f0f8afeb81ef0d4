#pragma once

#include <QString>

namespace quorvik
{

class Model;

/**
 * Reads and writes parameter sets on disk: every parameter's record, the notes, and the virtual operator's
 * setup. All routines give an empty text on success, or the engine's sentence on failure; none shows
 * anything.
 */
class SettingsFile
{
public:
    explicit SettingsFile(Model &model);

    /** Reads the factory table into PresetTable, Notes and FileLastParam. FileName becomes "unnamed". A table
     * too short to hold the parameters that the logic itself knows is refused. */
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

    Model &model_;
};

} // namespace quorvik
