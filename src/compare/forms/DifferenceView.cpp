#include "compare/forms/DifferenceView.h"

#include "compare/forms/DifferenceModel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Width of a column in characters. */
int CharactersOf(DifferenceModel::Column column)
{
    using enum DifferenceModel::Column;
    switch (column) {
    case Number:
        return 10;
    case Name:
        return 32;
    case Block:
        return 20;
    case Side:
        return 18;
    case Difference:
        return 14;
    case Kind:
        return 10;
    case Note:
        break;
    }
    return 24;
}

constexpr int RowsInSight = 20;
constexpr int FewestRows = 2;
constexpr int CharactersInSight = 165;
constexpr int WidestHead = 32; ///< in characters

} // namespace

DifferenceView::DifferenceView(DifferenceProxy *proxy, QWidget *parent)
    : QTableView(parent)
    , proxy_(proxy)
{
    setObjectName(QStringLiteral("TableDifferences"));
    setAccessibleName(QStringLiteral("Differences"));
    setModel(proxy);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    // One height for all, or each row would be measured.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    setSortingEnabled(true);
}

void DifferenceView::SizeColumns()
{
    const auto *model = qobject_cast<const DifferenceModel *>(proxy_->sourceModel());
    for (int section = 0; section < model->columnCount(); ++section)
        setColumnWidth(section, CharactersOf(model->ColumnAt(section)) * fontMetrics().averageCharWidth());
    sortByColumn(model->SectionOf(DifferenceModel::Column::Kind), Qt::AscendingOrder);
}

void DifferenceView::FitHeads()
{
    const auto *model = qobject_cast<const DifferenceModel *>(proxy_->sourceModel());
    const int widest = WidestHead * fontMetrics().averageCharWidth();
    for (int section = 0; section < model->columnCount(); ++section)
        if (model->ColumnAt(section) == DifferenceModel::Column::Side)
            setColumnWidth(section, std::max(columnWidth(section),
                                             std::min(horizontalHeader()->sectionSizeHint(section), widest)));
}

QSize DifferenceView::sizeHint() const
{
    return {CharactersInSight * fontMetrics().averageCharWidth(),
            RowsInSight * verticalHeader()->defaultSectionSize()};
}

QSize DifferenceView::minimumSizeHint() const
{
    return {sizeHint().width() / 3, (FewestRows + 2) * verticalHeader()->defaultSectionSize()};
}

void DifferenceView::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier)
        TickSelected();
    else if (isEnter && event->modifiers().testFlag(Qt::ControlModifier))
        SortByCurrent();
    else
        QTableView::keyPressEvent(event);
}

void DifferenceView::TickSelected()
{
    auto *model = qobject_cast<DifferenceModel *>(proxy_->sourceModel());
    // A view that has just got the focus has a current row, and none selected.
    QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty() && currentIndex().isValid())
        rows += currentIndex();
    QList<int> params;
    bool isAnyOff = false;
    for (const QModelIndex &index : rows) {
        params += model->Row(proxy_->mapToSource(index).row()).param;
        isAnyOff |= !model->IsTicked(params.last());
    }
    model->Tick(params, isAnyOff);
}

void DifferenceView::SortByCurrent()
{
    const int section = currentIndex().column();
    const QHeaderView *header = horizontalHeader();
    if (section < 0)
        return;
    const bool isAgain =
        header->sortIndicatorSection() == section && header->sortIndicatorOrder() == Qt::AscendingOrder;
    sortByColumn(section, isAgain ? Qt::DescendingOrder : Qt::AscendingOrder);
}

} // namespace quorvik
