#pragma once

#include "compare/DriveIdentity.h"
#include "model/Intent.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvik
{

/** What is known of a change. The numbers are kept in the journal. */
enum class EntryResult : std::uint8_t {
    None = 0,         ///< nothing to be known: a value that followed another one by a rule
    Kept = 1,         ///< off line, in the open set
    Queued = 2,       ///< it waits to be sent to the drive
    Acknowledged = 3, ///< the drive has taken it
    Verified = 4,     ///< and told it when it was read afterwards
    Differs = 5,      ///< and told another value when it was read afterwards
    Refused = 6,      ///< by the drive, for good
    GivenUp = 7,      ///< it was not sent: replaced by a newer one, or the user ended it
    Lost = 8,         ///< the link broke before the drive had answered
    Moved = 9,        ///< no end of it: a slider stands elsewhere by now
};
inline constexpr int EntryResults = 10;

/** The result in words, as a list shows it: "acknowledged". Empty for None and Moved. */
QString NameOf(EntryResult result);

/** A moment: milliseconds since 1970 in UTC, and what the computer's zone added to it. */
struct JournalTime {
    qint64 utcMs = 0;
    int offsetMinutes = 0;

    static JournalTime Now();
};

/** Changes that belong together. */
struct JournalAction {
    int number = 0; ///< of this run, from 1
    JournalTime time;
    Origin origin = Origin::Program;
    QString title;   ///< may be empty: then the rows say it
    QString setName; ///< path of the open set's file, or "unnamed"
    int link = 0;    ///< the connection of this run that was up, from 1; 0 off line
};

/** The change of one parameter. */
struct JournalRow {
    int action = 0;   ///< JournalAction::number
    int sequence = 0; ///< of this run, from 1
    JournalTime time;
    int param = 0;
    QString name;                          ///< the parameter's, as it was called
    std::optional<std::int32_t> rawBefore; ///< nothing where nobody knew what the drive held
    std::int32_t rawAfter = 0;
    QString textBefore; ///< with its unit at that time
    QString textAfter;
    EntryResult result = EntryResult::None; ///< of now; later ones follow as JournalResult
};

/** What became of a row. */
struct JournalResult {
    int sequence = 0; ///< JournalRow::sequence
    JournalTime time;
    EntryResult result = EntryResult::None;
    std::optional<std::int32_t> raw = {}; ///< of Differs what the drive holds, of Moved where it stands
    QString text = {};                    ///< the same with its unit
};

/** What an action came to, in a sentence; the last one counts. */
struct JournalNote {
    int action = 0;
    QString text;
};

/** Which drive a connection is with, once it has told. */
struct JournalDrive {
    int link = 0;
    JournalTime time;
    DriveIdentity identity;
};

/** What is written to the journal in one transaction. */
struct JournalBatch {
    std::vector<JournalAction> actions = {};
    std::vector<JournalRow> rows = {};
    std::vector<JournalResult> results = {};
    std::vector<JournalNote> notes = {};
    std::vector<JournalDrive> drives = {};

    bool IsEmpty() const
    {
        return actions.empty() && rows.empty() && results.empty() && notes.empty() && drives.empty();
    }
};

} // namespace quorvik
