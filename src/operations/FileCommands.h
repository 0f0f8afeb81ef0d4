#pragma once

#include "operations/Outcome.h"

#include <QString>

namespace quorvik
{

class Asker;
class DriveOperations;
class EntryRules;
class Document;
class ParameterTable;
class SaveCommands;
class SettingsFile;

/** The commands of the File menu that decide which set is the open one. */
class FileCommands
{
public:
    FileCommands(ParameterTable &table, Document &document, EntryRules &rules, Asker &asker,
                 SettingsFile &file, SaveCommands &saving, DriveOperations &drive);

    OperationResult New();
    OperationResult Open();
    /** The same for a file that is chosen already. */
    OperationResult Open(const QString &path);
    OperationResult ReadFromDrive(); ///< goes on line for it, and off line again
    OperationResult WriteToDrive();  ///< the same
    /** Loads a file, telling the user of a failure; on line, sends it to the drive. */
    OperationResult LoadAndAssignSettingsFromFile(const QString &path);

private:
    OperationResult LoadChosen(const QString &path);
    /** @param isLoaded gets whether the open set is the file's now, whatever became of sending it. */
    OperationResult Load(const QString &path, bool &isLoaded);
    OperationResult ResultOf(const QString &failure);

    ParameterTable &table_;
    Document &document_;
    EntryRules &rules_;
    Asker &asker_;
    SettingsFile &file_;
    SaveCommands &saving_;
    DriveOperations &drive_;
};

} // namespace quorvik
