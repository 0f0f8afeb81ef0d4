#include "settings/forms/ParameterListModel.h"

namespace quorvik
{

void ParameterListModel::SetRows(QList<ReportRow> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    SortNow();
    endResetModel();
}

int ParameterListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int ParameterListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ReportColumns;
}

QVariant ParameterListModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole)
        return ReportField(rows_.at(index.row()), index.column());
    // Numbers padded with blanks line up in any font only from the right.
    if (role == Qt::TextAlignmentRole && index.column() == 0)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant ParameterListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString heads[] = {QStringLiteral("Tag"), QStringLiteral("Name"), QStringLiteral("Preset"),
                                    QStringLiteral("Value")};
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return heads[section];
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

void ParameterListModel::sort(int column, Qt::SortOrder order)
{
    sortColumn_ = column;
    sortOrder_ = order;
    Q_EMIT layoutAboutToBeChanged();
    SortNow();
    Q_EMIT layoutChanged();
}

void ParameterListModel::SortNow()
{
    if (sortColumn_ >= 0)
        SortRows(rows_, sortColumn_, sortOrder_ == Qt::DescendingOrder);
}

} // namespace quorvik
