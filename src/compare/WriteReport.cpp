#include "compare/WriteReport.h"

#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <QStringList>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostNamed = 4;

/** Why the drive may have refused a parameter; empty where nothing is known. */
QString Reason(std::int32_t attributes)
{
    return (attributes & Attr::Icr) != 0 ? QStringLiteral(", changeable only at stop") : QString();
}

} // namespace

int WriteReport::Count(Arrival arrival) const
{
    return int(
        std::count_if(rows.begin(), rows.end(), [arrival](auto row) { return row.arrival == arrival; }));
}

bool WriteReport::CanResume() const
{
    return end != End::Complete && Count(Arrival::NotSent) + Count(Arrival::Sent) > 0;
}

QString WriteReport::Summary(const ParameterTable &table) const
{
    QStringList names;
    int refused = 0;
    for (const WrittenRow &row : rows)
        if (row.arrival == Arrival::Refused && ++refused <= MostNamed)
            names.append(table.FullName(row.value.param) + Reason(table[row.value.param].Attributes));
    if (refused > MostNamed)
        names.append(QStringLiteral("and %1 more").arg(refused - MostNamed));
    return Sentence(names.join(QStringLiteral(", ")));
}

QString WriteReport::Sentence(const QString &refused) const
{
    QStringList parts;
    parts.append(QStringLiteral("%1 written and verified").arg(Count(Arrival::Verified)));
    if (const int given = Count(Arrival::Given); given > 0)
        parts.append(QStringLiteral("%1 given as commands").arg(given));
    parts.append(QStringLiteral("%1 refused").arg(Count(Arrival::Refused)) +
                 (refused.isEmpty() ? QString() : QStringLiteral(": ") + refused));
    parts.append(QStringLiteral("%1 differ").arg(Count(Arrival::Differs)));
    if (const int sent = Count(Arrival::Sent); sent > 0)
        parts.append(QStringLiteral("%1 sent and not verified").arg(sent));
    if (const int notSent = Count(Arrival::NotSent); notSent > 0)
        parts.append(QStringLiteral("%1 not sent").arg(notSent));
    return parts.join(QStringLiteral(", "));
}

QString WriteReport::ArrivalText(const WrittenRow &row, const ParameterTable &table)
{
    const std::int32_t attributes = table[row.value.param].Attributes;
    const QString found = row.rawFound ? ShownText(*row.rawFound, attributes) : QString();
    switch (row.arrival) {
    case Arrival::NotSent:
        return QStringLiteral("Not sent");
    case Arrival::Sent:
        return QStringLiteral("Sent, and not verified");
    case Arrival::Refused: {
        const QString why = Reason(attributes);
        return found.isEmpty() ? QStringLiteral("Refused%1").arg(why)
                               : QStringLiteral("Refused%1; the drive keeps %2").arg(why, found);
    }
    case Arrival::Verified:
        return QStringLiteral("Verified");
    case Arrival::Differs:
        return row.drivenBy == 0 ? QStringLiteral("Differs: the drive holds %1").arg(found)
                                 : QStringLiteral("Differs: the drive holds %1, which %2 sets")
                                       .arg(found, table.FullName(row.drivenBy));
    case Arrival::Given:
        break;
    }
    return QStringLiteral("Command taken");
}

} // namespace quorvik
