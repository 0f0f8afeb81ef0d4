#include "history/forms/HistoryView.h"

#include "history/forms/HistoryModel.h"
#include "platform/Guard.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters; what was done takes what is left. */
constexpr std::array<int, HistoryModel::Columns> ColumnCharacters = {28, 19, 38, 15, 15, 24, 20, 24};
constexpr int RowsInSight = 20;
constexpr int FewestRows = 4;
/** Older pages are fetched when so many heights of the window are left below. */
constexpr int HeightsAhead = 3;

} // namespace

HistoryView::HistoryView(HistoryModel *model, QWidget *parent)
    : QTreeView(parent)
    , model_(model)
{
    setObjectName(QStringLiteral("TreeHistory"));
    setAccessibleName(QStringLiteral("History"));
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    // The end of a file's name tells more than its folders.
    setTextElideMode(Qt::ElideMiddle);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setModel(model);
    SizeColumns();
    timerFetch_.setSingleShot(true);
    timerFetch_.setInterval(0);
    On(&timerFetch_, &QTimer::timeout, this, [this] { FetchAhead(); });
    On(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { timerFetch_.start(); });
    On(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { timerFetch_.start(); });
    On(this, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        // The view opens and closes the others by itself.
        if (!model_->hasChildren(index.siblingAtColumn(0)))
            Q_EMIT Chosen(index);
    });
}

void HistoryView::SizeColumns()
{
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(HistoryModel::WhatColumn, QHeaderView::Stretch);
    for (int column = 0; column < HistoryModel::Columns; ++column)
        header()->resizeSection(column,
                                ColumnCharacters[std::size_t(column)] * fontMetrics().averageCharWidth() +
                                    (column == 0 ? 2 * indentation() : 0));
}

void HistoryView::reset()
{
    QTreeView::reset();
    OpenRuns(0, model_->rowCount() - 1);
    timerFetch_.start();
}

void HistoryView::rowsInserted(const QModelIndex &above, int first, int last)
{
    QTreeView::rowsInserted(above, first, last);
    if (!above.isValid())
        OpenRuns(first, last);
}

void HistoryView::OpenRuns(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        setFirstColumnSpanned(row, {}, true);
        expand(model_->index(row, 0));
    }
}

void HistoryView::FetchAhead()
{
    executeDelayedItemsLayout();
    const QScrollBar *bar = verticalScrollBar();
    if (!model_->HasOlder() || bar->maximum() - bar->value() > HeightsAhead * bar->pageStep())
        return;
    model_->FetchOlder();
    Q_EMIT Fetched();
    // What came may lie in a run that is closed.
    timerFetch_.start();
}

void HistoryView::Follow()
{
    const bool isAtTop = verticalScrollBar()->value() == 0;
    const int across = horizontalScrollBar()->value();
    const QPersistentModelIndex top = indexAt(QPoint(0, 0));
    model_->FollowJournal();
    if (isAtTop || !top.isValid())
        return;
    executeDelayedItemsLayout();
    scrollTo(top, QAbstractItemView::PositionAtTop);
    horizontalScrollBar()->setValue(across);
}

QModelIndexList HistoryView::SelectedLines() const
{
    QModelIndexList lines = selectionModel()->selectedRows();
    if (lines.isEmpty() && currentIndex().isValid())
        lines += currentIndex().siblingAtColumn(0);
    std::ranges::sort(lines, [this](const QModelIndex &left, const QModelIndex &right) {
        return visualRect(left).top() < visualRect(right).top();
    });
    return lines;
}

QSize HistoryView::sizeHint() const
{
    int characters = 0;
    for (const int width : ColumnCharacters)
        characters += width;
    return {characters * fontMetrics().averageCharWidth() + 3 * fontMetrics().height(),
            RowsInSight * fontMetrics().lineSpacing()};
}

QSize HistoryView::minimumSizeHint() const
{
    return {sizeHint().width() / 3, (FewestRows + 2) * fontMetrics().lineSpacing()};
}

void HistoryView::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QModelIndex line = currentIndex().siblingAtColumn(0);
    if (event->matches(QKeySequence::Copy))
        Q_EMIT CopyWanted();
    else if (isEnter && model_->hasChildren(line) && line.isValid())
        setExpanded(line, !isExpanded(line));
    else if (isEnter && line.isValid())
        Q_EMIT Chosen(line);
    else
        QTreeView::keyPressEvent(event);
}

} // namespace quorvik
