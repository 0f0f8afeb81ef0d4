#pragma once

#include <QObject>

class QMdiArea;
class QWidget;

namespace quorvik
{

/** Has a page stand over the area of the child windows while none of them is open there. */
class StartArea : public QObject
{
    Q_OBJECT

public:
    /** Both must be children of one widget, and lie in the same place. */
    StartArea(QMdiArea *area, QWidget *page, QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Follow();

    QMdiArea *area_;
    QWidget *page_;
};

} // namespace quorvik
