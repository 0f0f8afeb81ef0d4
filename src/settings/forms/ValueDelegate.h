#pragma once

#include <QStyledItemDelegate>

namespace quorvik
{

/** Draws the values of the parameter list with the marks of their states, as the value boxes have them. */
class ValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace quorvik
