#include "desktop/PlainText.h"
#include "history/HistoryTexts.h"
#include "history/forms/HistoryModel.h"

#include <QFont>

namespace quorvik
{

QString HistoryModel::TextOf(const QModelIndex &index) const
{
    Node *node = NodeOf(index);
    const ShownAction *action = ActionAt(index);
    if (!action)
        return index.column() == TimeColumn ? HistoryTexts::Run(node->run, minutesNow_) : QString();
    const bool isBelow = node->kind == Node::Kind::Row;
    const ShownRow *row = RowAt(index);
    switch (index.column()) {
    case TimeColumn:
        return isBelow ? QString() : HistoryTexts::Time(action->action.time, minutesNow_);
    case OriginColumn:
        return isBelow ? QString() : NameOf(action->action.origin);
    case WhatColumn:
        if (!row)
            return HistoryTexts::Title(*action);
        return isBelow ? HistoryTexts::Parameter(row->row) : HistoryTexts::OnlyRow(*action, row->row);
    case FromColumn:
        return row ? HistoryTexts::Before(row->row) : QString();
    case ToColumn:
        return row ? row->row.textAfter : QString();
    case ResultColumn:
        if (row)
            return HistoryTexts::Result(*row);
        return isBelow || action->rowCount == 0 ? QString() : HistoryTexts::Results(RowsOf(*node));
    case SetColumn:
        return isBelow ? QString() : HistoryTexts::Set(action->action);
    default:
        return isBelow ? QString() : HistoryTexts::Drive(*action);
    }
}

QString HistoryModel::ToolTipOf(const QModelIndex &index) const
{
    const ShownAction *action = ActionAt(index);
    if (action && index.column() == SetColumn)
        return action->action.setName;
    if (action && index.column() == DriveColumn)
        return HistoryTexts::WholeDrive(*action);
    return TextOf(index);
}

QString HistoryModel::Spoken(const QModelIndex &index) const
{
    QStringList parts;
    for (int column = 0; column < Columns; ++column) {
        const QString text = TextOf(index.siblingAtColumn(column));
        if (text.isEmpty())
            continue;
        if (column == FromColumn || column == ToColumn)
            parts += headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toLower() + u' ' + text;
        else
            parts += text;
    }
    return parts.join(QStringLiteral(", "));
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(index);
    case Qt::ToolTipRole:
        return PlainToolTip(ToolTipOf(index));
    case Qt::AccessibleTextRole:
        return index.column() == TimeColumn ? Spoken(index) : TextOf(index);
    case Qt::FontRole:
        if (IsRun(index)) {
            QFont font;
            font.setBold(true);
            return font;
        }
        return {};
    default:
        return {};
    }
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString heads[Columns] = {
        QStringLiteral("Time"), QStringLiteral("Origin"), QStringLiteral("What"), QStringLiteral("From"),
        QStringLiteral("To"),   QStringLiteral("Result"), QStringLiteral("Set"),  QStringLiteral("Drive")};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? QVariant(heads[section]) : QVariant();
}

} // namespace quorvik
