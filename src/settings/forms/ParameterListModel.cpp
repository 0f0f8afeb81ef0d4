#include "settings/forms/ParameterListModel.h"

#include "desktop/PlainText.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <algorithm>
#include <limits>

namespace quorvik
{

ParameterListModel::ParameterListModel(const ParameterTable &table, const ValueStates &states,
                                       std::function<QString(int p)> blockOf, QObject *parent)
    : QAbstractTableModel(parent)
    , table_(table)
    , states_(states)
    , blockOf_(std::move(blockOf))
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
        Q_EMIT dataChanged(index(row, ValueColumn), index(row, RangeColumn));
    }
}

void ParameterListModel::FollowAges()
{
    if (!rows_.isEmpty())
        Q_EMIT dataChanged(index(0, AgeColumn), index(rowCount() - 1, AgeColumn));
}

void ParameterListModel::SetFile(ParameterSet file)
{
    file_ = std::move(file);
    if (!rows_.isEmpty())
        Q_EMIT dataChanged(index(0, FileColumn), index(rowCount() - 1, FileColumn));
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

QString ParameterListModel::FileText(const ReportRow &row) const
{
    // A command in a file is none that would be given.
    if (!file_.Knows(row.param) || Param::IsCommand(row.param))
        return {};
    const ParamRecord &record = file_.records[row.param];
    return ShownText(record.Value, record.Attributes);
}

QString ParameterListModel::TextOf(const ReportRow &row, int column) const
{
    if (column < ReportColumns)
        return ReportField(row, column);
    const ParamRecord *record = row.param <= table_.UpperBound() ? &table_[row.param] : nullptr;
    switch (column) {
    case StateColumn:
        return NameOf(StateOf(row));
    case AgeColumn: {
        const std::optional<qint64> age = AgeOf(row);
        return age ? AgeText(*age) : QString();
    }
    case BlockColumn:
        return blockOf_(row.param);
    case UnitColumn:
        return record ? UnitText(record->Attributes) : QString();
    case RangeColumn:
        return record ? RangeText(record->Min, record->Max, record->Attributes) : QString();
    default:
        return FileText(row);
    }
}

QString ParameterListModel::ToolTipOf(const ReportRow &row, int column) const
{
    // What a column is too narrow for.
    if (column == NameColumn || column >= BlockColumn)
        return PlainToolTip(TextOf(row, column));
    return column >= ValueColumn && row.param <= table_.UpperBound()
               ? PlainToolTip(states_.Describe(row.param))
               : QString();
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
        return ToolTipOf(row, index.column());
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

QString ParameterListModel::HeadOf(int column)
{
    static const QString heads[] = {QStringLiteral("Tag"),    QStringLiteral("Name"),
                                    QStringLiteral("Preset"), QStringLiteral("Value"),
                                    QStringLiteral("State"),  QStringLiteral("Age"),
                                    QStringLiteral("Block"),  QStringLiteral("Unit"),
                                    QStringLiteral("Range"),  QStringLiteral("In the file")};
    return heads[column];
}

QVariant ParameterListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return HeadOf(section);
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
    if (sortColumn_ > AgeColumn) {
        std::ranges::stable_sort(rows_, [&](const ReportRow &left, const ReportRow &right) {
            const int order =
                TextOf(left, sortColumn_).compare(TextOf(right, sortColumn_), Qt::CaseInsensitive);
            return isDescending ? order > 0 : order < 0;
        });
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
