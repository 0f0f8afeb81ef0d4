#pragma once

#include "compare/DriveIdentity.h"
#include "link/ParamValue.h"

#include <QString>
#include <optional>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** What is known of one value that was to reach the drive. */
enum class Arrival : std::uint8_t {
    NotSent,
    Sent,     ///< and never answered, or answered and not read back: the drive may or may not hold it
    Refused,  ///< by the drive, again and again
    Verified, ///< read back, and the same
    Differs,  ///< taken by the drive, which holds another value
    Given,    ///< a command that the drive has taken; it clears itself, so there is nothing to compare
};

struct WrittenRow {
    ParamValue value;
    Arrival arrival = Arrival::NotSent;
    std::optional<std::int32_t> rawBefore = {}; ///< what the drive held, once its set was read
    std::optional<std::int32_t> rawFound = {};  ///< what the drive holds, once it was read back
    int drivenBy = 0; ///< of a row that differs: the destination selector whose input sets it, or 0
};

/** What a verified write came to. */
struct WriteReport {
    enum class End : std::uint8_t {
        Complete,
        Cancelled,  ///< by the user, between two parameters
        LinkLost,   ///< can be resumed
        NoBackup,   ///< the drive's set could not be read or kept; nothing was written
        OtherDrive, ///< what answers is not the drive with which the write was begun; nothing was written
        Changed,    ///< it may be another drive: settings that were not to be written are other ones now
    };

    End end = End::Complete;
    std::vector<WrittenRow> rows; ///< in the order in which they are written
    QString backupPath;           ///< where the drive's set of before lies; empty where none is kept
    QString failure;              ///< why there is no backup, or which is the other drive
    std::vector<int> changed;     ///< the settings that are other ones than when the write was begun
    DriveIdentity drive;          ///< with which the write was begun

    int Count(Arrival arrival) const;
    bool CanResume() const; ///< it ended early, and rows are left
    /** "265 written and verified, 2 refused, 0 differ": what it came to, in one line. */
    QString Summary() const { return Sentence({}); }
    /** The same with the refused ones by name: "..., 1 refused: (245) Logic Select, changeable only at stop,
     * 0 differ". */
    QString Summary(const ParameterTable &table) const;
    /** What became of a row, in words. */
    static QString ArrivalText(const WrittenRow &row, const ParameterTable &table);

private:
    QString Sentence(const QString &refused) const;
};

} // namespace quorvik
