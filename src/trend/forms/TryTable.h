#pragma once

#include "operations/StepTest.h"

#include <QTableWidget>

namespace quorvik
{

class ParameterTable;

/** The last answers side by side, a column each, the newest at the left: gains, and figures with what they
 * leave open. */
class TryTable : public QTableWidget
{
    Q_OBJECT

public:
    TryTable(const ParameterTable &table, QWidget *parent);

    void Show(const std::deque<StepTry> &tries);
    /** All of it, with tabulators between the columns. */
    QString AsText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

Q_SIGNALS:
    /** The column of a try was picked. */
    void Picked(int index);

private:
    void Put(int row, int column, const QString &text, const QString &toolTip);

    const ParameterTable &table_;
};

/** What a try was, in a line: "Velocity loop, 14:03:22, 10.00 % / 0.500 Sec / 0.00 %". */
QString TitleOf(const StepTry &made, const ParameterTable &table);

} // namespace quorvik
