#pragma once

#include <QObject>
#include <functional>

namespace quorvik
{

class Asker;
class EntryRules;
class Model;
class SettingsFile;

/** What the file commands need of the drive link; filled in by the shell. */
struct LinkSeam {
    std::function<void()> GoOnLine;
    std::function<void(int reason)> GoOffLine;
    std::function<void(int delta)> SetAllReadFlags;
    /** Runs the modal progress window of a whole-table scan: 1 reading, 2 writing. */
    std::function<void(int scanKind)> RunScan;
};

/** The commands of the File menu, but for printing. They decide which set is the open file and keep its
 * marks. */
class FileCommands : public QObject
{
    Q_OBJECT

public:
    /** @param programFolder where Presets.fil lies; it cannot be saved over. */
    FileCommands(Model &model, EntryRules &rules, Asker &asker, SettingsFile &file, QString programFolder);

    LinkSeam Link;
    /** Shows the modal drive model window. */
    std::function<void()> ShowSelectDriveModel;

    /** Asks to save a modified set. cancel becomes True when the user cancelled or the save failed. */
    void PromptSaveChanges(bool &cancel);

    void New();
    void Open();
    /** @param index 0 Save, 1 Save As. */
    void Save(int index);
    void ReadFromDrive();
    void WriteToDrive();
    /** Loads a file; on line, sends it to the drive. */
    void LoadAndAssignSettingsFromFile(const QString &path);

    /** The path of the file dialog's last use, which Save writes to; empty until a dialog was used. */
    const QString &DialogFileName() const { return dialogFileName_; }

Q_SIGNALS:
    /** A save failed without a box; the sentence is for the status bar. */
    void SaveFailed(const QString &sentence);

private:
    Model &model_;
    EntryRules &rules_;
    Asker &asker_;
    SettingsFile &file_;
    QString programFolder_;
    QString dialogFileName_;
};

} // namespace quorvik
