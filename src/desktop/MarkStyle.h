#pragma once

#include <QProxyStyle>

namespace quorvik
{

/** The desktop's style, with an outline around options and check boxes that is seen on a dark window too. */
class MarkStyle : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};

} // namespace quorvik
