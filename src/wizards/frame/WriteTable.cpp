#include "wizards/frame/WriteTable.h"

#include <QHeaderView>
#include <algorithm>

namespace quorvik
{

namespace
{

enum Column { Number, Name, Third, Fourth, ColumnCount };

} // namespace

WriteTable::WriteTable(QWidget *parent, const QString &third, const QString &fourth, int widest)
    : QTableWidget(0, ColumnCount, parent)
    , widest_(widest)
{
    setObjectName(QStringLiteral("TableWrites"));
    setHorizontalHeaderLabels({QStringLiteral("Number"), QStringLiteral("Name"), third, fourth});
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(Number, QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
}

void WriteTable::ShowRows(const std::vector<WriteRow> &rows)
{
    setRowCount(int(rows.size()));
    for (int row = 0; row < int(rows.size()); ++row) {
        const WriteRow &shown = rows[std::size_t(row)];
        const QString texts[] = {QString::number(shown.param), shown.name, shown.third, shown.fourth};
        for (int column = 0; column < ColumnCount; ++column) {
            auto *item = new QTableWidgetItem(texts[column]);
            item->setTextAlignment((column == Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
            if (column == Fourth && shown.bold) {
                QFont font = item->font();
                font.setBold(true);
                item->setFont(font);
            }
            setItem(row, column, item);
        }
    }
    // The values of a link hold names, which wrap rather than squeeze the column of names.
    const int widest = fontMetrics().height() * widest_;
    for (const int column : {Third, Fourth}) {
        resizeColumnToContents(column);
        setColumnWidth(column, std::min(columnWidth(column), widest));
    }
}

} // namespace quorvik
