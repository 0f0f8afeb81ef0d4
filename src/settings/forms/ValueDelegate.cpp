#include "settings/forms/ValueDelegate.h"

#include "desktop/ValueMark.h"
#include "settings/forms/ParameterListModel.h"

#include <QApplication>
#include <QPainter>
#include <cmath>

namespace quorvik
{

namespace
{

QColor BodyOf(const QStyleOptionViewItem &option)
{
    const bool isActive = option.state & QStyle::State_Active;
    const QPalette::ColorGroup group = isActive ? QPalette::Active : QPalette::Inactive;
    if (option.state & QStyle::State_Selected)
        return option.palette.color(group, QPalette::Highlight);
    const bool isAlternate = option.features & QStyleOptionViewItem::Alternate;
    return option.palette.color(group, isAlternate ? QPalette::AlternateBase : QPalette::Base);
}

} // namespace

void ValueDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const ValueMark mark(ValueState(index.data(ParameterListModel::StateRole).toInt()), BodyOf(cell));
    if (mark.IsPlain()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QString text = std::exchange(cell.text, QString());
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    painter->save();
    painter->setFont(cell.font);
    // A row is no higher than its text, which the outline must leave alone.
    mark.Draw(*painter, QRectF(cell.rect).adjusted(0, -1, 0, 0.5));
    painter->setFont(mark.TextFont(cell.font));
    painter->setPen(mark.Ink());
    const int usual = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    const int margin = mark.HasOutline() ? 2 * usual : usual;
    const int room = std::max(margin, int(std::ceil(mark.Room(cell.font, cell.rect.height()))));
    const QRect place = cell.rect.adjusted(room, 0, -margin, 0);
    painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
    painter->restore();
}

} // namespace quorvik
