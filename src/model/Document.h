#pragma once

#include "model/ParameterTable.h"

#include <array>
#include <optional>

namespace quorvik
{

/** One slot of the virtual operator: 0 to 5 Signal A to F, 6 to 11 Digital A to F. */
struct VirtualSetting {
    std::int16_t Destination = 0; ///< the parameter written, 0 for an empty slot
    std::int32_t BiasOpen = 0;
    std::int32_t GainClosed = 0;
    std::int32_t Status = 0;

    bool operator==(const VirtualSetting &) const = default;
};

/** What the open set is beside its parameters: its file, its notes, the virtual operator's setup, and the
 * marks that say what would be lost. */
class Document : public QObject
{
    Q_OBJECT

public:
    /** Marks what is entered into the table. */
    explicit Document(const ParameterTable &table);

    /** The name of a set that is in no file. */
    static const QString &Unnamed();

    QString FileName = Unnamed(); ///< full path of the open settings file, or "unnamed"
    QString Notes;
    /** What stands in the window of the notes while it is open and has been typed in. */
    std::optional<QString> TypedNotes;
    std::array<VirtualSetting, 12> VirtualSettings;

    bool FileModified = false; ///< the title's asterisk; a write that is no edit takes it away
    /** Edits that no file holds yet, whether or not the asterisk still shows them. */
    bool HasUnsavedEdits = false;
    bool DriveModified = false; ///< the drive was given what its memory does not hold
    /** A reading of the drive's table did not come to its end: rows of it are the drive's, the others not. */
    bool HalfRead = false;

    /** The set as a whole holds edits that no file has, or none; announced. */
    void MarkFile(bool modified);
    /** The set is in this file, as it stands; announced with the mark. */
    void BecomeSaved(const QString &path);
    /** The set is in no file from now on; announced with the mark. */
    void BecomeUnnamed(bool modified);
    /** Back to the factory set, in no file and without notes; the table is the caller's. */
    void BeginAnew();

    void ClearVirtualSettings() { VirtualSettings.fill(VirtualSetting{}); }
    void AnnounceVirtualSettings() { Q_EMIT VirtualSettingsLoaded(); }

    /** Announces the title that the name and the marks now make. */
    void UpdateTitle();
    QString Title() const; ///< "Quorvik - [name]" or "Quorvik - [name*]", and whether it is read by half

Q_SIGNALS:
    void TitleChanged(const QString &title);
    /** The marks were set anew, whether or not they are other ones: something was entered, saved or opened.
     */
    void Marked();
    /** The set was saved; FileName tells where. */
    void Saved();
    /** A settings file has been read into VirtualSettings. */
    void VirtualSettingsLoaded();
};

} // namespace quorvik
