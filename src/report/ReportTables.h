#pragma once

#include "report/CommissioningReport.h"
#include "report/ReportSource.h"

#include <deque>

namespace quorvik
{

class ParameterTable;
struct TripRecord;

// The tables of a report that come out of parameters. A value that is not known is called "not read".

/** Model, rated current, firmware, hours, number of parameters and clock of the drive. */
CommissioningTable IdentityTable(const ReportSource &source);

/** The nameplate of the motor, and how its speed and field are fed back and limited. */
CommissioningTable MotorTable(const ReportSource &source);

/**
 * The settings that are not at their factory values.
 * @param like gives the factory values.
 * @param blocks by number, the block that shows a parameter; with none there is no such column.
 */
CommissioningTable ChangedSettingsTable(const ReportSource &source, const ParameterTable &like,
                                        const QStringList &blocks);

/** The drive's log, and below it the trips that this run of the program has seen; the most recent first. */
CommissioningTable FaultsTable(const ReportSource &source, const ParameterTable &like,
                               const std::deque<TripRecord> &trips);

/** All that is known of the set, by number. */
std::map<int, std::int32_t> KnownValues(const ParameterSet &set);

} // namespace quorvik
