#pragma once

#include "report/CommissioningReport.h"
#include "report/DriveVerification.h"
#include "report/ReportSource.h"

#include <QDate>
#include <set>

namespace quorvik
{

struct Engines;

/** Parts that a report can do without. */
enum class ReportPart : std::uint8_t { Notes, Settings, Faults, Journal };

/** What the user wants in a report. */
struct ReportChoices {
    CommissioningPlace place;
    QStringList recordings; ///< paths of their files
    QDate journalDay;       ///< by the computer's clock
    QStringList blocks;     ///< by number, the block that shows a parameter; empty for no such column
    std::set<ReportPart> leftOut = {}; ///< each says so in its place
};

/**
 * Puts a report together. It asks nothing and reads nothing of the drive; journal and recordings are read.
 * @param verification tells what the drive held when it was read last, and what came of it; the report's
 * values of the drive are those, where there are any.
 */
CommissioningReport MakeReport(Engines &engines, ReportSource source, const ReportChoices &choices,
                               const DriveVerification &verification);

/** The same of the open set. */
CommissioningReport MakeReport(Engines &engines, const ReportChoices &choices,
                               const DriveVerification &verification);

} // namespace quorvik
