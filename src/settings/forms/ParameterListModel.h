#pragma once

#include "settings/Report.h"

#include <QAbstractTableModel>

namespace quorvik
{

/** The rows of the parameter list as they are shown. Sorting stays on when the rows are replaced. */
class ParameterListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    const QList<ReportRow> &Rows() const { return rows_; }
    void SetRows(QList<ReportRow> rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    void SortNow();

    QList<ReportRow> rows_;
    int sortColumn_ = -1; ///< -1 while no column was clicked yet
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace quorvik
