#include "history/HistoryReport.h"

#include "history/HistoryTexts.h"
#include "settings/Report.h"

namespace quorvik
{

namespace
{

constexpr int PageOfReport = 500; ///< actions

} // namespace

QList<QStringList> HistoryHeading(const HistoryReport &report)
{
    return {
        {QStringLiteral("Shown"), report.filterText.isEmpty() ? QStringLiteral("all") : report.filterText},
        {QStringLiteral("Written"), HistoryTexts::WholeTime(report.made)}};
}

QStringList HistoryHeads()
{
    return {QStringLiteral("Time"),   QStringLiteral("User"),   QStringLiteral("Origin"),
            QStringLiteral("Action"), QStringLiteral("Number"), QStringLiteral("Name"),
            QStringLiteral("From"),   QStringLiteral("To"),     QStringLiteral("Result"),
            QStringLiteral("Set"),    QStringLiteral("Drive")};
}

QStringList HistoryFields(const ShownAction &action, const ShownRow *row)
{
    QStringList fields{HistoryTexts::WholeTime(row ? row->row.time : action.action.time), action.run.user,
                       NameOf(action.action.origin), action.action.title};
    if (row)
        fields << QString::number(row->row.param) << row->row.name << HistoryTexts::Before(row->row)
               << row->row.textAfter << HistoryTexts::Result(*row);
    else
        fields << QString() << QString() << QString() << QString() << QString();
    return fields << action.action.setName << HistoryTexts::WholeDrive(action);
}

QString ReadHistory(JournalReader &reader, const JournalFilter &filter, const TakeHistoryRow &take)
{
    qint64 beforeId = 0;
    while (true) {
        const std::vector<ShownAction> actions = reader.Actions(filter, beforeId, PageOfReport);
        if (!reader.Failure().isEmpty())
            return reader.Failure();
        for (const ShownAction &action : actions) {
            if (action.rowCount == 0 && !take(HistoryFields(action, nullptr)))
                return {};
            if (action.rowCount == 0)
                continue;
            const std::vector<ShownRow> rows = reader.RowsOf(action, filter);
            if (!reader.Failure().isEmpty())
                return reader.Failure();
            for (const ShownRow &row : rows)
                if (!take(HistoryFields(action, &row)))
                    return {};
        }
        if (int(actions.size()) < PageOfReport)
            return {};
        beforeId = actions.back().id;
    }
}

QByteArray HistoryCsvHead(const HistoryReport &report)
{
    QByteArray head;
    const QList<QStringList> lines = HistoryHeading(report) << HistoryHeads();
    for (const QStringList &line : lines)
        head += CsvLine(line);
    return head;
}

} // namespace quorvik
