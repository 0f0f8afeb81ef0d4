#include "blocks/FaultRecord.h"

#include "blocks/DriveClock.h"
#include "model/Model.h"
#include "model/TextTables.h"

namespace quorvik
{

namespace
{

struct FaultBit {
    std::int32_t mask;
    const char *text;
};

constexpr FaultBit FaultBits[] = {
    {1, "Field Loss, "},         {2, "VFB Loss, "},
    {4, "OverVoltage, "},        {8, "OverSpeed, "},
    {16, "OverCurrent, "},       {32, "OverTemp, "},
    {64, "PhaseLoss, "},         {128, "CT ID Board Error, "},
    {256, "Phase Lock Error, "}, {512, "Thermistor Open, "},
};

/** Offsets of a record's words. */
enum Word { Faults, Seconds, Minutes, Hours, WeekDay, MonthDay, Month, Year };

} // namespace

QString GetFault(std::int32_t rawFaults)
{
    QString result;
    for (const FaultBit &bit : FaultBits)
        if (rawFaults & bit.mask)
            result += QString::fromLatin1(bit.text);
    return result.isEmpty() ? QStringLiteral("None, ") : result;
}

QString GetFaultData(const Model &model, int base)
{
    return GetFaultData(model, base, DayText(model.Value(base + WeekDay)));
}

QString GetFaultData(const Model &model, int base, const QString &dayText)
{
    const auto word = [&](Word offset) { return model.Value(base + offset); };
    const QString separator = QStringLiteral(", ");
    return GetFault(word(Faults)) + dayText + separator +
           DriveDateText(word(Year), word(Month), word(MonthDay)) + separator +
           DriveTimeText(word(Hours), word(Minutes), word(Seconds));
}

} // namespace quorvik
