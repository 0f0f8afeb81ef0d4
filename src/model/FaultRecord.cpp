#include "model/FaultRecord.h"

#include "model/DriveClock.h"
#include "model/Faults.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

namespace
{

/** Offsets of a record's words. */
enum Word { Faults, Seconds, Minutes, Hours, WeekDay, MonthDay, Month, Year };

QString TimeText(const ParameterTable &table, int base, const QString &dayText)
{
    const auto word = [&](Word offset) { return table.Value(base + offset); };
    const QString separator = QStringLiteral(", ");
    return dayText + separator + DriveDateText(word(Year), word(Month), word(MonthDay)) + separator +
           DriveTimeText(word(Hours), word(Minutes), word(Seconds));
}

} // namespace

QString GetFault(std::int32_t rawFaults)
{
    QString result;
    for (const Fault &fault : AllFaults())
        if (rawFaults & fault.mask)
            result += fault.logText;
    return result.isEmpty() ? QStringLiteral("None, ") : result;
}

bool IsEmptyRecord(const ParameterTable &table, int base)
{
    for (int p = base; p < base + FaultLog::Step; ++p)
        if (table.Value(p) != 0)
            return false;
    return true;
}

QString GetFaultData(const ParameterTable &table, int base)
{
    return GetFaultData(table, base, DayText(table.Value(base + WeekDay)));
}

QString FaultTimeText(const ParameterTable &table, int base)
{
    QString dayText = QStringLiteral("no day");
    try {
        dayText = DayText(table.Value(base + WeekDay));
    } catch (const RuntimeFailure &) {
        // The rest of the time stands all the same.
    }
    return TimeText(table, base, dayText);
}

QString GetFaultData(const ParameterTable &table, int base, const QString &dayText)
{
    return GetFault(table.Value(base + Faults)) + TimeText(table, base, dayText);
}

} // namespace quorvik
