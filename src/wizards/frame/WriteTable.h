#pragma once

#include <QTableWidget>
#include <vector>

namespace quorvik
{

/** One row of a list of writes. */
struct WriteRow {
    int param = 0;
    QString name;
    QString third;
    QString fourth;
    bool bold = false; ///< the fourth text
};

/** A list of writes: number, name, and two columns more. */
class WriteTable : public QTableWidget
{
    Q_OBJECT

public:
    /** @param widest greatest width of the third and fourth column, in heights of a line. */
    WriteTable(QWidget *parent, const QString &third, const QString &fourth, int widest);

    void ShowRows(const std::vector<WriteRow> &rows);

private:
    int widest_;
};

} // namespace quorvik
