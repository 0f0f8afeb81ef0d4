#include "desktop/MarkStyle.h"

#include "desktop/BoxColors.h"

#include <QPainter>
#include <QStyleOption>

namespace quorvik
{

void MarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isRound = element == PE_IndicatorRadioButton;
    const QColor window = option->palette.color(QPalette::Window);
    if ((!isRound && element != PE_IndicatorCheckBox) || ContrastingText(window) != QColor(Qt::white))
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Mixed(window, option->palette.color(QPalette::WindowText), 0.6));
    painter->setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (isRound)
        painter->drawEllipse(outline);
    else
        painter->drawRoundedRect(outline, 1, 1);
    painter->restore();
}

int MarkStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returned) const
{
    return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, returned);
}

} // namespace quorvik
