#pragma once

#include <QProxyStyle>

namespace quorvik
{

/**
 * The desktop's style, with an outline around options and check boxes that is seen on a dark window too, and
 * with menus that scroll on a screen too low for them: a second column may find no room beside the first.
 */
class MarkStyle : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override;
};

} // namespace quorvik
