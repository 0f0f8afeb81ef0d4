#pragma once

#include <QTableView>

namespace quorvik
{

class DifferenceProxy;

/** The table of a comparison. Space ticks the selected rows, and Ctrl+Enter sorts by the column of the
 * current cell, so that no mouse is needed. */
class DifferenceView : public QTableView
{
    Q_OBJECT

public:
    DifferenceView(DifferenceProxy *proxy, QWidget *parent);

    /** Gives each column the width of its usual texts; once, and when the number of sides changes. */
    void SizeColumns();

    /** Widens the columns of the sides to what their names need. */
    void FitHeads();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void TickSelected();
    void SortByCurrent();

    DifferenceProxy *proxy_;
};

} // namespace quorvik
