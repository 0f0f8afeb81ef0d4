#pragma once

#include "model/Intent.h"
#include "model/ParamTable.h"

#include <QObject>
#include <memory>
#include <vector>

namespace quorvik
{

/** Access classes; they index AccessText() and AccessColors. */
namespace Access
{
inline constexpr int ReadWrite = 0;
inline constexpr int IcrReadWrite = 1;
inline constexpr int IcrReadOnly = 2;
inline constexpr int ReadOnly = 3;
inline constexpr int LinkedDestination = 4;
inline constexpr int Empty = 5;
} // namespace Access

/** Why a value changed. */
enum class ChangeCause : std::uint8_t {
    Entered,   ///< the user's edit, or logic on the user's behalf; it is to reach the drive
    Drive,     ///< the drive has told it
    Transfer,  ///< the drive has taken it from a list of values beside the table
    Emulated,  ///< computed, with no drive attached
    File,      ///< a settings file was opened
    Factory,   ///< back to the factory state
    Rule,      ///< another parameter's rule holds it within its limits
    Command,   ///< a command was carried out, or cannot be any more
    TakenBack, ///< the drive refused what was entered
    Undone,    ///< off line: what was done was taken back, or done again
};

struct ParamChange {
    int param = 0;
    std::int32_t before = 0; ///< raw
    std::int32_t after = 0;  ///< raw
    ChangeCause cause = ChangeCause::Entered;
};

/** What a table announces. Listeners are called from within the change, so they must not wait. */
class TableSignals : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    /** A value is another one than before. */
    void Changed(const quorvik::ParamChange &change);
    /** A value was entered, whether or not it is another one.
     * @param modified what becomes of the marks of file and drive, unless p is a memory command. */
    void Entered(int p, bool modified);
    /** The emulator has computed a value, whether or not it is another one. */
    void Computed(int p);
    /** Somebody is about to change something; ParameterTable::CurrentIntent() tells what. */
    void IntentBegan();
    /** It has happened, whether or not a value changed. */
    void IntentNoted(const QString &what);
    /** It is over; CurrentIntent() still tells it. */
    void IntentEnded();
};

/**
 * The parameters with their factory state, and the rules that tie them to each other. The program's own table
 * is shared by all, and there is no second copy of a value. A copy has the records and no listeners; it is a
 * scratch to try writes on.
 *
 * Every routine with a parameter number raises RuntimeFailure when the number lies outside the table.
 */
class ParameterTable
{
public:
    ParameterTable();
    ParameterTable(const ParameterTable &other);
    ParameterTable &operator=(const ParameterTable &) = delete;
    ~ParameterTable();

    RecordArray PresetTable; ///< as read from Presets.fil; never changed by editing
    std::int16_t FileLastParam = -1;
    std::int16_t LastParam = -1; ///< the highest parameter that exists for the program; all loops run 0 to it
    bool WritePending = false;
    /** On line, and the drive has not told its state yet: what the table holds is older than the link. */
    bool DriveStateUnread = false;
    /** Off line, and the values are the last ones of a drive that was lost: the emulator computes nothing. */
    bool OutputsHeld = false;
    /** The parameter edited last; what hangs on it follows every write that the drive takes. */
    std::int16_t EditParamNumber = 0;

    TableSignals &Signals() const { return *signals_; }

    /** What is being done just now, or null; see Intent. */
    const IntentInfo *CurrentIntent() const { return intentDepth_ > 0 ? &intent_ : nullptr; }
    void BeginIntent(const IntentInfo &info);
    void NoteIntent(const QString &what);
    void EndIntent();

    /** Whether the port is open: the only on-line state of the program. Set by whoever owns the link. */
    bool PortOpen() const { return portOpen_; }
    void SetPortOpen(bool open) { portOpen_ = open; }

    const ParamRecord &operator[](int p) const { return records_[p]; }
    /** The record for whoever fills the table or keeps its flags. A value changed through it is announced to
     * nobody. */
    ParamRecord &Row(int p) { return records_[p]; }
    const RecordArray &Records() const { return records_; }
    int UpperBound() const { return records_.UpperBound(); }
    void Resize(int upperBound) { records_.Resize(upperBound); }

    QString FullName(int p) const; ///< "(number) name", as messages call a parameter
    std::int32_t Value(int p) const { return records_[p].Value; }
    /** Stores a value, and announces it where it is another one; nothing is sent. */
    void SetValue(int p, std::int32_t rawValue, ChangeCause cause);

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
     * @param modified what becomes of the marks of file and drive; see TableSignals::Entered().
     * @param refresh run RefreshDependentParams(p) at once.
     */
    void SetParamValue(int p, std::int32_t rawValue, bool modified, bool refresh);

    /** Stores a value and queues its write, with no mark set. Run, Stop and Jog go before all other writes.
     */
    void QueueWrite(int p, std::int32_t rawValue);
    /** Gives up the write of p, and puts its value back to 0: of a command that will not be carried out. */
    void DropCommand(int p);

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
    /**
     * The parameters on which the limits of p hang, in the order in which they are to be set before p; empty
     * for most. The drive model is not among them: it sets values, and no entry changes it.
     */
    static std::vector<int> LeadsOf(int p);
    void RestoreLimits(int p); ///< Min, Max, Attributes from the factory table
    void ClampValue(int p);
    void ResetToDefaults(); ///< back to the factory state, with all rules applied

private:
    void ChangeReadFlag(int p, int delta);
    void ApplyRule(int p);
    void CopyLimits(int from, int to);
    void FollowSource(int p);

    RecordArray records_;
    std::unique_ptr<TableSignals> signals_;
    bool portOpen_ = false;
    IntentInfo intent_;
    int intentDepth_ = 0;
};

} // namespace quorvik
