#pragma once

#include "platform/Asker.h"

#include <QObject>
#include <functional>

namespace quorvik
{

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

    /** Asks to save a set with edits that no file holds. cancel becomes True when the user cancelled or the
     * save failed; a save that raises, raises here too. */
    void PromptSaveChanges(bool &cancel);

    void New();
    void Open();
    /**
     * Saves to the path that the file dialog last stood for. A failure after the dialog was shown is told
     * through SaveFailed only; any other raises RuntimeFailure. Either way the old file and the marks stay.
     * @param index 0 Save, 1 Save As.
     */
    void Save(int index);
    void ReadFromDrive();
    void WriteToDrive();
    /** Loads a file, telling the user of a failure; on line, sends it to the drive. @return whether it was
     * loaded. */
    bool LoadAndAssignSettingsFromFile(const QString &path);

Q_SIGNALS:
    /** A save failed without a box; the sentence is for the strip under the menu. */
    void SaveFailed(const QString &sentence);

private:
    FileDialogRequest DialogRequest(const QString &title) const;
    bool RefusesPresets(const QString &path);
    void BecomeUnnamed(bool modified);
    void ShowFailure(const QString &sentence);

    Model &model_;
    EntryRules &rules_;
    Asker &asker_;
    SettingsFile &file_;
    QString programFolder_;
    QString dialogFileName_; ///< of the file dialog's last use, which Save writes to; empty until then
};

} // namespace quorvik
