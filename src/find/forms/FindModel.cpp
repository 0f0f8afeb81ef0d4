#include "find/forms/FindModel.h"

#include "desktop/Desk.h"
#include "desktop/PlainText.h"
#include "link/ValueStates.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "settings/forms/ParameterListModel.h"

#include <QGuiApplication>
#include <QPalette>

namespace quorvik
{

namespace
{

QString NameOf(FindKind kind)
{
    static const QString names[] = {QStringLiteral("Parameter"), QStringLiteral("Window"),
                                    QStringLiteral("Command"), QStringLiteral("Help")};
    return names[std::size_t(kind)];
}

bool IsCommand(const FindEntry &entry)
{
    return entry.kind == FindKind::Window || entry.kind == FindKind::Command;
}

} // namespace

FindModel::FindModel(const Desk &desk, const FindHost &host, FindIndex index, QObject *parent)
    : QAbstractTableModel(parent)
    , desk_(desk)
    , host_(host)
    , index_(std::move(index))
{
}

void FindModel::SetEntries(std::vector<int> entries, const QString &query)
{
    beginResetModel();
    query_ = query;
    entries_ = std::move(entries);
    endResetModel();
}

QString FindModel::Spoken(int row) const
{
    const FindEntry &entry = EntryAt(row);
    QStringList parts;
    for (const int column : {TitleColumn, ValueColumn, StateColumn, KindColumn, PlaceColumn})
        parts.append(TextOf(row, column));
    if (IsCommand(entry))
        parts.append(host_.CommandOf(entry.key).whyNot);
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

void FindModel::Follow(const std::set<int> &params)
{
    for (int row = 0; row < rowCount(); ++row)
        if (EntryAt(row).kind == FindKind::Parameter && params.contains(EntryAt(row).number))
            Q_EMIT dataChanged(index(row, ValueColumn), index(row, StateColumn));
}

void FindModel::FollowCommands()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
}

int FindModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(entries_.size());
}

int FindModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QString FindModel::TextOf(int row, int column) const
{
    const FindEntry &entry = EntryAt(row);
    switch (column) {
    case KindColumn:
        return NameOf(entry.kind);
    case TitleColumn:
        return (QStringList(entry.title) + index_.Reasons(entries_[std::size_t(row)], query_))
            .join(QStringLiteral(" \u00b7 "));
    case PlaceColumn:
        return entry.place;
    default:
        break;
    }
    if (IsCommand(entry))
        return column == ValueColumn ? host_.CommandOf(entry.key).shown : QString();
    // A drive with fewer parameters may have come after the search.
    if (entry.kind != FindKind::Parameter || entry.number > desk_.table.UpperBound())
        return {};
    if (column == StateColumn)
        return quorvik::NameOf(desk_.states.Of(entry.number));
    const ParamRecord &record = desk_.table[entry.number];
    return ShownText(record.Value, record.Attributes);
}

bool FindModel::CanBeChosen(const FindEntry &entry) const
{
    return !IsCommand(entry) || host_.CommandOf(entry.key).whyNot.isEmpty();
}

QString FindModel::ToolTipOf(const FindEntry &entry) const
{
    if (IsCommand(entry))
        return PlainToolTip(host_.CommandOf(entry.key).whyNot);
    if (entry.kind != FindKind::Parameter || entry.number > desk_.table.UpperBound())
        return {};
    return PlainToolTip(desk_.states.Describe(entry.number));
}

QVariant FindModel::data(const QModelIndex &index, int role) const
{
    const FindEntry &entry = EntryAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(index.row(), index.column());
    case ParameterListModel::StateRole:
        return int(entry.kind == FindKind::Parameter && entry.number <= desk_.table.UpperBound()
                       ? desk_.states.Of(entry.number)
                       : ValueState::Set);
    case Qt::ForegroundRole:
        return CanBeChosen(entry)
                   ? QVariant()
                   : QVariant(QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text));
    case Qt::ToolTipRole:
        return ToolTipOf(entry);
    case Qt::AccessibleTextRole:
        return index.column() == TitleColumn ? QVariant(Spoken(index.row())) : QVariant();
    default:
        return {};
    }
}

QVariant FindModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString heads[] = {QStringLiteral("Kind"), QStringLiteral("Name"), QStringLiteral("Value"),
                                    QStringLiteral("State"), QStringLiteral("Place")};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? QVariant(heads[section]) : QVariant();
}

} // namespace quorvik
