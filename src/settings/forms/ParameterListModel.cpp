#include "settings/forms/ParameterListModel.h"

#include "desktop/PlainText.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <algorithm>
#include <limits>

namespace quorvik
{

ParameterListModel::ParameterListModel(const ParameterTable &table, const ValueStates &states,
                                       QObject *parent)
    : QAbstractTableModel(parent)
    , table_(table)
    , states_(states)
{
}

void ParameterListModel::SetRows(QList<ReportRow> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    SortNow();
    endResetModel();
}

void ParameterListModel::Follow(const std::set<int> &params)
{
    for (int row = 0; row < rowCount(); ++row) {
        ReportRow &shown = rows_[row];
        if (!params.contains(shown.param) || shown.param > table_.UpperBound())
            continue;
        const ParamRecord &record = table_[shown.param];
        // One value without a text must not stop all others.
        shown.valueText = ShownText(record.Value, record.Attributes);
        Q_EMIT dataChanged(index(row, ValueColumn), index(row, AgeColumn));
    }
}

void ParameterListModel::FollowAges()
{
    if (!rows_.isEmpty())
        Q_EMIT dataChanged(index(0, AgeColumn), index(rowCount() - 1, AgeColumn));
}

int ParameterListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int ParameterListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

ValueState ParameterListModel::StateOf(const ReportRow &row) const
{
    // A drive with fewer parameters may have come after the rows.
    return row.param <= table_.UpperBound() ? states_.Of(row.param) : ValueState::Set;
}

std::optional<qint64> ParameterListModel::AgeOf(const ReportRow &row) const
{
    switch (StateOf(row)) {
    case ValueState::Live:
    case ValueState::Old:
    case ValueState::Lost:
        return states_.Age(row.param);
    default:
        return std::nullopt;
    }
}

QString ParameterListModel::TextOf(const ReportRow &row, int column) const
{
    if (column < ReportColumns)
        return ReportField(row, column);
    if (column == StateColumn)
        return NameOf(StateOf(row));
    const std::optional<qint64> age = AgeOf(row);
    return age ? AgeText(*age) : QString();
}

QString ParameterListModel::ToolTipOf(const ReportRow &row) const
{
    return row.param <= table_.UpperBound() ? PlainToolTip(states_.Describe(row.param)) : QString();
}

QVariant ParameterListModel::data(const QModelIndex &index, int role) const
{
    const ReportRow &row = rows_.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(row, index.column());
    case StateRole:
        return int(StateOf(row));
    case Qt::ToolTipRole:
        return index.column() >= ValueColumn ? QVariant(ToolTipOf(row)) : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == ValueColumn
                   ? QVariant(row.valueText + QStringLiteral(", ") + NameOf(StateOf(row)))
                   : QVariant();
    case Qt::TextAlignmentRole:
        // Numbers padded with blanks line up in any font only from the right.
        return index.column() == 0 ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QVariant ParameterListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString heads[] = {QStringLiteral("Tag"),    QStringLiteral("Name"),
                                    QStringLiteral("Preset"), QStringLiteral("Value"),
                                    QStringLiteral("State"),  QStringLiteral("Age")};
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
    if (sortColumn_ < 0)
        return;
    const bool isDescending = sortOrder_ == Qt::DescendingOrder;
    if (sortColumn_ < ReportColumns) {
        SortRows(rows_, sortColumn_, isDescending);
        return;
    }
    const auto keyOf = [this](const ReportRow &row) {
        return sortColumn_ == StateColumn ? qint64(StateOf(row))
                                          : AgeOf(row).value_or(std::numeric_limits<qint64>::max());
    };
    // Ages go on while they are compared.
    std::vector<std::pair<qint64, ReportRow>> keyed;
    for (const ReportRow &row : rows_)
        keyed.emplace_back(isDescending ? -keyOf(row) : keyOf(row), row);
    std::ranges::stable_sort(keyed, {}, &std::pair<qint64, ReportRow>::first);
    std::ranges::transform(keyed, rows_.begin(), &std::pair<qint64, ReportRow>::second);
}

} // namespace quorvik
