#pragma once

#include "compare/DriveIdentity.h"
#include "compare/ParameterSet.h"

#include <QDateTime>
#include <map>
#include <optional>
#include <vector>

namespace quorvik
{

struct Engines;

/** The values that a report is made of, and what is known of them. */
struct ReportSource {
    QString setName; ///< as the report calls the set: "pump.Svx"
    QString setPath; ///< of its file as the journal has it; "unnamed" for none
    QString notes;
    ParameterSet set;   ///< the settings; what is not known has not been read
    ParameterSet drive; ///< what the drive has told; knows nothing where there is none
    QDateTime readAt;   ///< when the drive was read as a whole; invalid where its values came one by one
    std::map<int, QString> doubts;  ///< of values of the drive that are not of now: "last seen 09:12:33, ..."
    std::vector<int> notTaken = {}; ///< entries that the drive has not taken, in rising order
    std::vector<int> otherwise = {}; ///< settings of which the drive has told another value
};

/**
 * The open set as it stands. On line, and after a link that a fault ended, the drive is what it has told, and
 * a value of which it has told nothing is not known, but for a set that is held beside it. Off line the set
 * knows its settings and its model, and the drive nothing.
 */
ReportSource SourceOf(const Engines &engines);

/** A set of a file or of a drive that was read, for a report of its own.
 * @param isOfDrive else only settings and model count, since the rest is whatever stood in the file. */
ParameterSet ReportedSet(ParameterSet set, bool isOfDrive);

/** What tells this drive from others; nothing where it has not told all of it. */
std::optional<DriveIdentity> IdentityIn(const ParameterSet &drive);

/** "2026-11-23 09:12:33 +01:00". */
QString MomentText(const QDateTime &moment);

} // namespace quorvik
