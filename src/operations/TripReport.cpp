#include "operations/TripReport.h"

#include "model/Faults.h"
#include "model/ParameterTable.h"
#include "settings/Report.h"

#include <QCoreApplication>
#include <algorithm>

namespace quorvik
{

namespace
{

QString TimeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

QString SecondsText(qint64 ms)
{
    constexpr double msOfSecond = 1000;
    return QStringLiteral("%1 s").arg(QString::number(double(ms) / msOfSecond, 'f', 1));
}

QString BeforeText(const TripReading &reading)
{
    return SecondsText(reading.ms) + QStringLiteral(" before");
}

/** Whether a row is told by what stood in it when the trip was seen. */
bool IsOfMoment(const TripValue &value)
{
    return value.before && !value.after;
}

QString ReadText(const TripValue &value)
{
    if (IsOfMoment(value))
        return BeforeText(*value.before);
    if (!value.after)
        return QStringLiteral("not read");
    const QString after = SecondsText(value.after->ms) + QStringLiteral(" after");
    return value.before
               ? QStringLiteral("%1; %2 was %3").arg(after, BeforeText(*value.before), value.before->text)
               : after;
}

} // namespace

QString TripFaultsText(const TripRecord &record)
{
    if (!record.rawFaults)
        return QStringLiteral("fault not read");
    return *record.rawFaults == 0 ? QStringLiteral("no fault told")
                                  : FaultNames(*record.rawFaults).join(QStringLiteral(", "));
}

QString TripSummary(const TripRecord &record)
{
    if (record.isOfBefore)
        return QStringLiteral(
            "Tripped before: the drive stood tripped when the link came up. When it tripped is not "
            "known, and no values are kept of it.");
    const auto count = [&](auto isCounted) { return std::ranges::count_if(record.values, isCounted); };
    const auto late = count([](const TripValue &value) { return value.after.has_value(); });
    const auto missing = count([](const TripValue &value) { return !value.after && !value.before; });
    QString text = QStringLiteral("%1 of %2 values were read before the trip was seen, %3 right after it.")
                       .arg(qsizetype(record.values.size()) - late - missing)
                       .arg(record.values.size())
                       .arg(late);
    if (missing > 0)
        text += QStringLiteral(" %1 could not be read.").arg(missing);
    return text;
}

QStringList TripHeads()
{
    return {QStringLiteral("Group"), QStringLiteral("Number"), QStringLiteral("Name"),
            QStringLiteral("Value"), QStringLiteral("Read")};
}

QStringList TripFields(const TripValue &value, const ParameterTable &table)
{
    const std::optional<TripReading> &told = value.after ? value.after : value.before;
    return {QString::fromLatin1(value.row.group), QString::number(value.row.param),
            table[value.row.param].Name, told ? told->text : QString(), ReadText(value)};
}

QByteArray TripAsCsv(const TripRecord &record, const ParameterTable &table, const QString &setName)
{
    const QString program =
        QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion();
    QByteArray csv;
    for (const QStringList &line :
         QList<QStringList>{{QStringLiteral("Trip of the drive"), program},
                            {QStringLiteral("Set"), setName},
                            {record.isOfBefore ? QStringLiteral("Link came up") : QStringLiteral("Trip seen"),
                             TimeText(record.seen)},
                            {QStringLiteral("Faults"), TripFaultsText(record)},
                            {QStringLiteral("Note"), TripSummary(record)},
                            TripHeads()})
        csv += CsvLine(line);
    for (const TripValue &value : record.values)
        csv += CsvLine(TripFields(value, table));
    return csv;
}

} // namespace quorvik
