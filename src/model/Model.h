#pragma once

#include "model/ParamTable.h"

#include <QObject>
#include <array>
#include <functional>
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

/** What the I/O Mentor opens on. */
struct WizardIOStartRecord {
    std::uint8_t outputs = 0;     ///< 0 inputs, 1 outputs
    std::uint8_t kind = 0;        ///< index of the kind
    std::uint8_t member = 0;      ///< zero-based input or output
    std::uint8_t freqDigMode = 0; ///< 0 frequency, 1 digital
};

/** Access classes; they index AccessText() and Model::Colors. */
namespace Access
{
inline constexpr int ReadWrite = 0;
inline constexpr int IcrReadWrite = 1;
inline constexpr int IcrReadOnly = 2;
inline constexpr int ReadOnly = 3;
inline constexpr int LinkedDestination = 4;
inline constexpr int Empty = 5;
} // namespace Access

/**
 * The program's state: the one parameter table, its factory state, the open file's marks, and the rules that
 * tie parameters to each other. Owned by main, shared by all, no window and no second copy of a value
 * anywhere.
 *
 * Every routine with a parameter number raises RuntimeFailure when the number lies outside the table.
 */
class Model : public QObject
{
    Q_OBJECT

public:
    Model();

    RecordArray ParamTable;
    RecordArray PresetTable; ///< as read from Presets.fil; never changed by editing
    std::int16_t FileLastParam = -1;
    std::int16_t LastParam = -1; ///< the highest parameter that exists for the program; all loops run 0 to it

    /** The name of a set that is in no file. */
    static const QString &Unnamed();

    QString FileName = Unnamed(); ///< full path of the open settings file, or "unnamed"
    QString Notes;
    bool FileModified = false; ///< the title's asterisk; a write that is no edit takes it away
    /** Edits that no file holds yet, whether or not the asterisk still shows them. */
    bool HasUnsavedEdits = false;
    /** What stands in the window of the notes while it is open and has been typed in. */
    std::optional<QString> TypedNotes;
    bool DriveModified = false;
    bool WritePending = false;
    /** A reading of the drive's table did not come to its end: rows of it are the drive's, the others not. */
    bool HalfRead = false;
    /** On line, and the drive has not told its state yet: what the table holds is older than the link. */
    bool DriveStateUnread = false;

    std::array<std::int32_t, 6> Colors{};        ///< 0xBBGGRR by access class
    std::array<std::int32_t, 6> DefaultColors{}; ///< 0xBBGGRR by access class

    std::array<VirtualSetting, 12> VirtualSettings;
    WizardIOStartRecord WizardIOStart;

    /** Whether the port is open: the only on-line state of the program. Filled in by whoever owns the link.
     */
    std::function<bool()> PortOpen = [] { return false; };

    /** Fills DefaultColors and empties Colors; the first step of start-up, before a table is read. */
    void InitColors();

    QString FullName(int p) const; ///< "(number) name", as messages call a parameter
    /** Value of a parameter. */
    std::int32_t Value(int p) const { return ParamTable[p].Value; }

    bool AttrBit(std::int32_t mask, int p) const; ///< Attributes AND mask is above 0
    bool DriveIsStopped() const;                  ///< parameter 422 is 0 (Stop) or 8 (EStop)
    /** The first destination selector from 1 up that points at p, or 0. p 0 has none. */
    int FindLinkSource(int p) const;
    int AccessClass(int p) const; ///< one of Access, never Empty
    /** The class as text; a linked destination also names what it is linked from. */
    QString AccessDescription(int p, int accessClass) const;
    /** Whether logic may write p now. Unlike FindLinkSource() this walk starts at 0 and does not exempt p 0.
     */
    bool CanWriteParam(int p) const;
    bool IsModelDefined() const;
    bool IsRegenerative() const;
    /** The text read as a number lies within the raw limits of p; the caller passes raw text. */
    bool IsInRange(const QString &rawText, int p) const;

    /**
     * The one way in which logic changes a value that is to reach the drive.
     * @param modified copied into both marks unless p is 406 or 407; False clears them.
     * @param refresh run RefreshDependentParams(p) at once.
     */
    void SetParamValue(int p, std::int32_t rawValue, bool modified, bool refresh);

    /** Stores a value and queues its write, with no mark set. Run, Stop and Jog go before all other writes.
     */
    void QueueWrite(int p, std::int32_t rawValue);

    /** Sets WriteFlag of every writable parameter but the clock's; state 2 also sets WritePending. */
    void SetAllWriteFlags(std::uint8_t state);
    /** Nothing of the whole table is to be sent any more, the clock's writes included. */
    void DropAllWrites();

    /**
     * Adds delta to ReadFlag of every parameter. Raises RuntimeFailure past 0 or 255, and for a delta other
     * than -1, 0 or 1, which changes nothing.
     */
    void SetAllReadFlags(int delta);

    void AddReadInterest(int p);    ///< ReadFlag of p + 1
    void RemoveReadInterest(int p); ///< ReadFlag of p - 1

    /** Applies the rule of p, if p has one: limits, type and decimals of what hangs on it follow. */
    void RefreshDependentParams(int p);
    /**
     * The same for every parameter that has one of the bits of mask, or for all. A rule that fails keeps none
     * of the others from its turn; the failures are reported together, at the end.
     */
    void RefreshAllDependents(std::int32_t mask = 0);
    void RestoreLimits(int p); ///< Min, Max, Attributes from the factory table
    void ClampValue(int p);
    void ResetToDefaults(); ///< table back to the factory state, with all rules applied

    void ClearVirtualSettings();

    /** The set as a whole holds edits that no file has, or none: sets FileModified and HasUnsavedEdits, and
     * announces the title. */
    void MarkFile(bool modified);

    /** Announces the title that FileName and FileModified now make. */
    void UpdateTitle();
    QString Title() const; ///< "Quorvik - [name]" or "Quorvik - [name*]", and whether it is read by half

    /** The parameter edited last; what hangs on it follows every write that the drive takes. */
    std::int16_t EditParamNumber = 0;

Q_SIGNALS:
    void TitleChanged(const QString &title);
    /** A settings file has been read into VirtualSettings. */
    void VirtualSettingsLoaded();

private:
    void ChangeReadFlag(int p, int delta);
    void ApplyRule(int p);
    void CopyLimits(int from, int to);
    void FollowSource(int p);
};

} // namespace quorvik
