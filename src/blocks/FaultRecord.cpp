#include "blocks/FaultRecord.h"

#include "blocks/DriveClock.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

namespace quorvik
{

namespace
{

/** By bit, from the lowest. */
constexpr const char *FaultNames[] = {
    "Field Loss, ", "VFB Loss, ",  "OverVoltage, ",       "OverSpeed, ",        "OverCurrent, ",
    "OverTemp, ",   "PhaseLoss, ", "CT ID Board Error, ", "Phase Lock Error, ", "Thermistor Open, "};

/** Offsets of a record's words. */
enum Word { Faults, Seconds, Minutes, Hours, WeekDay, MonthDay, Month, Year };

} // namespace

QString GetFault(std::int32_t rawFaults)
{
    QString result;
    for (int mask = 1; const char *name : FaultNames) {
        if (rawFaults & mask)
            result += QString::fromLatin1(name);
        mask *= 2;
    }
    return result.isEmpty() ? QStringLiteral("None, ") : result;
}

QString GetFaultData(const ParameterTable &table, int base)
{
    return GetFaultData(table, base, DayText(table.Value(base + WeekDay)));
}

QString GetFaultData(const ParameterTable &table, int base, const QString &dayText)
{
    const auto word = [&](Word offset) { return table.Value(base + offset); };
    const QString separator = QStringLiteral(", ");
    return GetFault(word(Faults)) + dayText + separator +
           DriveDateText(word(Year), word(Month), word(MonthDay)) + separator +
           DriveTimeText(word(Hours), word(Minutes), word(Seconds));
}

} // namespace quorvik
