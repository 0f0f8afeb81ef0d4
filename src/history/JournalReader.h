#pragma once

#include "history/JournalEntry.h"
#include "history/JournalFile.h"

#include <QSqlQuery>
#include <QVariant>
#include <optional>
#include <set>

namespace quorvik
{

/** A drive as it was seen at some time. */
struct JournalSighting {
    DriveIdentity identity;
    JournalTime time;
    qint64 run = 0; ///< of the connection that it was seen on; 0 for none
    int link = 0;
};

/** Which rows of the journal are shown; a member that says nothing shows all. */
struct JournalFilter {
    QString text = {}; ///< in name, values, title, notes or set name; capitals or not
    std::optional<int> param = {};
    std::set<Origin> origins = {};
    std::set<EntryResult> results = {};
    qint64 sinceUtcMs = 0;
    qint64 fromId = 0; ///< no actions with a lower id: for who searches piece by piece
    std::optional<JournalSighting> drive =
        {}; ///< only what was done on line with a drive that may be this one

    bool IsEmpty() const;
};

/** A run of a program. */
struct JournalRun {
    qint64 id = 0;
    JournalTime began;
    QString user; ///< empty where it was not to be kept
    QString version;
};

/** An action as it is shown. */
struct ShownAction {
    qint64 id = 0; ///< rises with time, across runs
    JournalRun run;
    JournalAction action;               ///< its title is the last note, where there is one
    std::optional<DriveIdentity> drive; ///< on line, once it was known
    int rowCount = 0;                   ///< of those that the filter shows
};

/** A row as it is shown. */
struct ShownRow {
    qint64 id = 0;  ///< rises with time, across runs
    JournalRow row; ///< rawAfter and textAfter tell where a movement ended; result is the last one
    std::optional<std::int32_t> rawFound; ///< of Differs: what the drive holds
    QString textFound;
    qint64 run = 0; ///< that it is of
};

/** Reads the journal while others write it. Nothing raises; a journal that cannot be read is empty, and
 * Failure() says why. */
class JournalReader
{
public:
    explicit JournalReader(const QString &path);

    /** The newest actions first. @param beforeId only older ones than this; 0 for the newest of all. */
    std::vector<ShownAction> Actions(const JournalFilter &filter, qint64 beforeId, int limit);
    /** The rows of an action that the filter shows, in their order. */
    std::vector<ShownRow> RowsOf(const ShownAction &action, const JournalFilter &filter);
    /** All sightings of drives, the newest first; the same drive comes again and again. */
    std::vector<JournalSighting> Sightings();
    /** All changes on these connections between two moments, in their order, whatever became of them. */
    std::vector<ShownRow> ChangesOn(const std::vector<JournalSighting> &connections, qint64 fromUtcMs,
                                    qint64 toUtcMs);
    /** Since when the journal holds every change: its beginning, or what was let go of last; nothing where
     * there is no journal. */
    std::optional<qint64> CompleteSince();

    /** Why the last call could not read the journal; empty where it could, or where there is none yet. */
    const QString &Failure() const { return failure_; }

private:
    /** Follows the path where another file lies there by now. @return whether there is something to read. */
    bool Open();
    /** Gives each row of a query to take. */
    template<typename Take> void Read(const QString &statement, const QVariantList &values, Take take);
    /** A condition on actions a: with a drive that may be this one. */
    QString ConnectionsWith(const DriveIdentity &drive, qint64 driveTimeUtcMs);
    std::optional<DriveIdentity> DriveOf(qint64 run, int link);
    static JournalSighting SightingOf(const QSqlQuery &query);
    static ShownRow RowOf(const QSqlQuery &query);
    static QString RowColumns();

    QString path_;
    JournalFile file_;
    std::optional<QSqlQuery> query_; ///< the last one, for the same question about something else
    QString failure_;
};

} // namespace quorvik
