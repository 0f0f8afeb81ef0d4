#pragma once

#include "model/ParameterNumbers.h"

#include <QString>
#include <cstdint>

namespace quorvik
{

class ParameterTable;

/** The drive's fault log: five records, the most recent first. */
namespace FaultLog
{
inline constexpr int First = Param::FaultLog1Faults; ///< the fault bits of the most recent record
inline constexpr int Step = Param::FaultLog2Faults - First;
inline constexpr int Records = 5;
} // namespace FaultLog

/** The names of all faults in a word of fault bits, each followed by ", "; "None, " where there is none. */
QString GetFault(std::int32_t rawFaults);

/** Whether all words of a record are 0: the drive has not filled it yet. */
bool IsEmptyRecord(const ParameterTable &table, int base);

/** When a record was made, by the drive's clock: "Sunday, 1/2/05, 3:04:05 PM", or "no day" and so on. Raises
 * RuntimeFailure for a record outside the table alone. */
QString FaultTimeText(const ParameterTable &table, int base);

/**
 * One line of the log: "OverSpeed, Sunday, 1/2/05, 3:04:05 PM".
 * @param base the parameter that holds the record's fault bits. Raises RuntimeFailure where the record's day
 * of the week lies outside 0 to 7, or the record outside the table.
 */
QString GetFaultData(const ParameterTable &table, int base);

/** The same line with another text for the day of the week; it raises nothing for a record inside the table.
 */
QString GetFaultData(const ParameterTable &table, int base, const QString &dayText);

} // namespace quorvik
