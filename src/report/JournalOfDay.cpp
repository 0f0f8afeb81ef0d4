#include "report/JournalOfDay.h"

#include "history/HistoryTexts.h"
#include "model/Document.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int PageSize = 200; ///< actions

bool MayBeSame(const DriveIdentity &drive, const DriveIdentity &told, qint64 utcMs)
{
    // The wanted drive is the one of now, and a day of the past may be asked for.
    const double hours = std::abs(double(QDateTime::currentMSecsSinceEpoch() - utcMs)) / MsPerHour;
    return drive.IsSameAs(told, hours);
}

bool IsWanted(const ShownAction &action, const JournalWish &wish)
{
    if (action.action.link != 0 && action.drive && wish.drive)
        return MayBeSame(*wish.drive, *action.drive, action.action.time.utcMs);
    // Every set without a file has the same name: beside a drive it says nothing.
    return action.action.setName == wish.setPath && (wish.setPath != Document::Unnamed() || !wish.drive);
}

QStringList FieldsOf(const ShownAction &action, const ShownRow *row)
{
    const JournalTime &time = row != nullptr ? row->row.time : action.action.time;
    QStringList fields{HistoryTexts::WholeTime(time)};
    if (row != nullptr)
        fields << HistoryTexts::Parameter(row->row) << HistoryTexts::Before(row->row) << row->row.textAfter
               << HistoryTexts::Result(*row);
    else
        fields << QString() << QString() << QString() << QString();
    return fields << action.action.title << action.run.user;
}

/** Gives the wanted actions of the day to take, the newest first. */
template<typename Take> void ForEachAction(JournalReader &reader, const JournalWish &wish, Take take)
{
    const QDateTime begin = wish.day.startOfDay();
    const qint64 endUtcMs = wish.day.addDays(1).startOfDay().toMSecsSinceEpoch();
    JournalFilter filter;
    filter.sinceUtcMs = begin.toMSecsSinceEpoch();
    for (qint64 beforeId = 0;;) {
        const std::vector<ShownAction> page = reader.Actions(filter, beforeId, PageSize);
        for (const ShownAction &action : page)
            if (action.action.time.utcMs < endUtcMs && IsWanted(action, wish))
                take(action);
        if (int(page.size()) < PageSize)
            return;
        beforeId = page.back().id;
    }
}

} // namespace

CommissioningTable JournalOfDay(JournalReader &reader, const JournalWish &wish)
{
    CommissioningTable table{{QStringLiteral("Time"), QStringLiteral("Parameter"), QStringLiteral("From"),
                              QStringLiteral("To"), QStringLiteral("Result"), QStringLiteral("Action"),
                              QStringLiteral("User")},
                             {},
                             {}};
    int left = wish.mostRows;
    int leftOut = 0;
    ForEachAction(reader, wish, [&](const ShownAction &action) {
        QList<QStringList> rows;
        if (action.rowCount == 0)
            rows.append(FieldsOf(action, nullptr));
        else if (left > 0)
            for (const ShownRow &row : reader.RowsOf(action, {}))
                rows.append(FieldsOf(action, &row));
        const int count = std::max(action.rowCount, 1);
        const int taken = std::clamp(left, 0, int(rows.size()));
        for (int i = 0; i < taken; ++i)
            table.rows.append(rows[rows.size() - 1 - i]);
        left -= taken;
        leftOut += count - taken;
    });
    std::ranges::reverse(table.rows);
    const QString day = wish.day.toString(Qt::ISODate);
    if (!reader.Failure().isEmpty())
        table.remark = QStringLiteral("The journal could not be read: %1.").arg(reader.Failure());
    else if (table.rows.isEmpty())
        table.remark = QStringLiteral("The journal holds no change of %1.").arg(day);
    else if (leftOut > 0)
        table.remark = QStringLiteral("These are the last changes of %1; %2 earlier ones are not listed.")
                           .arg(day)
                           .arg(leftOut);
    return table;
}

} // namespace quorvik
