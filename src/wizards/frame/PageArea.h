#pragma once

#include <QScrollArea>

namespace quorvik
{

/** Room for a Mentor's pages: as large as they need, or as the screen has, where they scroll then. */
class PageArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit PageArea(QWidget *parent);

    /** What the screen has for pages, with a scroll bar beside them. */
    QSize Room() const;

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;
};

} // namespace quorvik
