#include "compare/forms/DifferenceModel.h"

#include <QFont>
#include <QTextDocument>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int FixedFirst = 3; ///< columns before those of the sides

/** A tool tip that shows its text as it stands: names come from files. */
QString PlainTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped()) : text;
}

/** What has no number stands before all that has one. */
double NumberKey(const std::optional<std::int32_t> &raw)
{
    constexpr double nothing = -1e10;
    return raw ? *raw : nothing;
}

bool IsOdd(const DifferenceRow &row, int side)
{
    const std::optional<std::int32_t> &raw = row.sides[std::size_t(side)].raw;
    const std::optional<std::int32_t> &first = row.sides[0].raw;
    return row.differs && raw && (side == 0 || raw != first);
}

} // namespace

void DifferenceModel::SetRows(std::vector<DifferenceRow> rows, const QStringList &names)
{
    const bool isAnew = rows.size() != rows_.size() || names.size() != names_.size();
    if (isAnew)
        beginResetModel();
    rows_ = std::move(rows);
    const bool isRenamed = names != names_;
    names_ = names;
    if (isAnew)
        return endResetModel();
    TellAll();
    if (isRenamed)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void DifferenceModel::TellAll()
{
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void DifferenceModel::Tick(const QList<int> &params, bool isTicked)
{
    for (const int p : params)
        if (isTicked)
            ticked_.insert(p);
        else
            ticked_.remove(p);
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
    Q_EMIT TicksChanged();
}

void DifferenceModel::SetRefusals(std::map<int, QString> reasons)
{
    if (reasons == refusals_)
        return;
    refusals_ = std::move(reasons);
    TellAll();
}

DifferenceModel::Column DifferenceModel::ColumnAt(int section) const
{
    if (section < FixedFirst)
        return Column(section);
    section -= FixedFirst;
    if (section < Sides())
        return Column::Side;
    if (section < 2 * Sides() - 1)
        return Column::Difference;
    return section == 2 * Sides() - 1 ? Column::Kind : Column::Note;
}

int DifferenceModel::SectionOf(Column column) const
{
    for (int section = 0; section < columnCount(); ++section)
        if (ColumnAt(section) == column)
            return section;
    return -1;
}

int DifferenceModel::SideOf(int section) const
{
    const int side = section - FixedFirst;
    return side < Sides() ? side : side - Sides() + 1;
}

int DifferenceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int DifferenceModel::columnCount(const QModelIndex &parent) const
{
    // Two more for kind and note, one less for the first side, which has no difference.
    return parent.isValid() || names_.isEmpty() ? 0 : FixedFirst + 2 * Sides() - 1 + 2;
}

QString DifferenceModel::Note(const DifferenceRow &row) const
{
    if (const auto refusal = refusals_.find(row.param); refusal != refusals_.end())
        return QStringLiteral("Not copied: it ") + refusal->second;
    return row.drivenBy == 0 ? QString() : QStringLiteral("set by the input of (%1)").arg(row.drivenBy);
}

QString DifferenceModel::Text(const DifferenceRow &row, int section) const
{
    switch (ColumnAt(section)) {
    case Column::Number:
        return QString::number(row.param);
    case Column::Name:
        return row.name;
    case Column::Block:
        return row.block;
    case Column::Side:
        return row.sides[std::size_t(SideOf(section))].text;
    case Column::Difference:
        return row.differences[std::size_t(SideOf(section))];
    case Column::Kind:
        return KindText(row.kind);
    case Column::Note:
        break;
    }
    return Note(row);
}

QVariant DifferenceModel::SortKey(const DifferenceRow &row, int section) const
{
    switch (ColumnAt(section)) {
    case Column::Number:
        return row.param;
    case Column::Side:
        return NumberKey(row.sides[std::size_t(SideOf(section))].raw);
    case Column::Difference:
        return NumberKey(row.rawDifferences[std::size_t(SideOf(section))]);
    case Column::Kind:
        return int(row.kind) * 2 + (row.differs || row.isIncomplete ? 0 : 1);
    default:
        return Text(row, section);
    }
}

QVariant DifferenceModel::data(const QModelIndex &index, int role) const
{
    const DifferenceRow &row = Row(index.row());
    const int section = index.column();
    const Column column = ColumnAt(section);
    const bool isValue = column == Column::Side;
    switch (role) {
    case Qt::DisplayRole:
        return Text(row, section);
    case Qt::ToolTipRole:
        return PlainTip(Text(row, section));
    case SortRole:
        return SortKey(row, section);
    case Qt::CheckStateRole:
        if (column == Column::Number)
            return IsTicked(row.param) ? Qt::Checked : Qt::Unchecked;
        break;
    case Qt::TextAlignmentRole:
        if (column == Column::Number || isValue || column == Column::Difference)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        break;
    case Qt::FontRole: {
        QFont font;
        if (isValue && IsOdd(row, SideOf(section)))
            font.setBold(true);
        else if (isValue && !row.sides[std::size_t(SideOf(section))].raw)
            font.setItalic(true);
        else
            return {};
        return font;
    }
    default:
        break;
    }
    return {};
}

bool DifferenceModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || ColumnAt(index.column()) != Column::Number)
        return false;
    Tick({Row(index.row()).param}, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags DifferenceModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return index.isValid() && ColumnAt(index.column()) == Column::Number ? usual | Qt::ItemIsUserCheckable
                                                                         : usual;
}

QString DifferenceModel::Head(int section) const
{
    switch (ColumnAt(section)) {
    case Column::Number:
        return QStringLiteral("Number");
    case Column::Name:
        return QStringLiteral("Name");
    case Column::Block:
        return QStringLiteral("Block");
    case Column::Side:
        return names_.at(SideOf(section));
    case Column::Difference:
        return Sides() == 2 ? QStringLiteral("Difference")
                            : QStringLiteral("%1 to 1").arg(SideOf(section) + 1);
    case Column::Kind:
        return QStringLiteral("Kind");
    case Column::Note:
        break;
    }
    return QStringLiteral("Note");
}

QVariant DifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section >= columnCount())
        return {};
    if (role == Qt::DisplayRole)
        return Head(section);
    if (role == Qt::ToolTipRole)
        return ColumnAt(section) == Column::Difference
                   ? PlainTip(QStringLiteral("How far \"%1\" is from \"%2\"")
                                  .arg(names_.at(SideOf(section)), names_.first()))
                   : PlainTip(Head(section));
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

DifferenceProxy::DifferenceProxy(DifferenceModel *model)
    : QSortFilterProxyModel(model)
    , model_(model)
{
    setSortRole(DifferenceModel::SortRole);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setSourceModel(model);
}

void DifferenceProxy::SetFilter(const DifferenceFilter &filter)
{
    filter_ = filter;
    invalidateFilter();
}

std::vector<DifferenceRow> DifferenceProxy::Shown() const
{
    std::vector<DifferenceRow> rows;
    for (int row = 0; row < rowCount(); ++row)
        rows.push_back(model_->Row(mapToSource(index(row, 0)).row()));
    return rows;
}

bool DifferenceProxy::filterAcceptsRow(int row, const QModelIndex &) const
{
    return filter_.Shows(model_->Row(row));
}

bool DifferenceProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (QSortFilterProxyModel::lessThan(left, right))
        return true;
    // What is equal stands by number, also where it comes into sight later.
    return !QSortFilterProxyModel::lessThan(right, left) && left.row() < right.row();
}

} // namespace quorvik
