#pragma once

#include "platform/Asker.h"

#include <QObject>

namespace quorvik
{

class Document;
class SettingsFile;

/** Keeps the open set from being lost: asks where it was changed, and saves it. */
class SaveCommands : public QObject
{
    Q_OBJECT

public:
    /** @param programFolder where Presets.fil lies; it cannot be saved over. */
    SaveCommands(Document &document, Asker &asker, SettingsFile &file, QString programFolder);

    /**
     * Asks to save a set with edits that no file holds; a save that raises, raises here too.
     * @return False when the user cancelled or the save failed: what was about to happen must not.
     */
    bool PromptSaveChanges();

    /**
     * Saves to the path that the file dialog last stood for; a set from a file of the older format asks for a
     * new name beside it. A failure after the dialog was shown is told
     * through SaveFailed only; any other raises RuntimeFailure. Either way the old file and the marks stay.
     * @param index 0 Save, 1 Save As.
     */
    void Save(int index);

    /** The file chosen to open, or nothing. */
    std::optional<QString> ChooseFile();
    /** Save goes to this file from now on. */
    void SaveTo(const QString &path) { dialogFileName_ = path; }

    /** Why nothing is saved over a file: it is the factory table, by its name or through a link, or a
     * settings file of the older format. Empty for all others. */
    QString RefusalOf(const QString &path) const;

Q_SIGNALS:
    /** A save failed without a box; the sentence is for the strip under the menu. */
    void SaveFailed(const QString &sentence);

private:
    FileDialogRequest OpenRequest() const;
    FileDialogRequest SaveRequest() const;
    bool IsPresets(const QString &path) const;
    /** Tells why a path is not saved to, where that is so. */
    bool Refuses(const QString &path);

    Document &document_;
    Asker &asker_;
    SettingsFile &file_;
    QString programFolder_;
    QString dialogFileName_; ///< of the file dialog's last use, which Save writes to; empty until then
};

} // namespace quorvik
