#pragma once

#include <QWidget>
#include <vector>

class QLabel;

namespace quorvik
{

class ValueBox;
struct Desk;

/** The gains of a loop as boxes of their values, one under the other, each with a line about what it does. A
 * click edits it as everywhere. */
class GainFields : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Most = 3;

    GainFields(Desk &desk, QWidget *parent);

    /** @param params Most at most; those of another set replace what is shown. */
    void Show(const std::vector<int> &params);
    /** Brings the boxes up to the table. */
    void Tick();

private:
    struct Row {
        QLabel *caption;
        ValueBox *box;
        QLabel *effect;
        int param = -1;
    };

    void PaintRow(Row &row);
    void Text1_Click(std::size_t index);

    Desk &desk_;
    std::vector<Row> rows_;
};

} // namespace quorvik
