#pragma once

#include <QList>
#include <QPair>
#include <QWidget>

namespace quorvik
{

/** One terminal as printed on the strip. */
struct Terminal {
    int number;
    QString name;
};

/** What a strip shows above its screws. */
enum class Indicator { None, Lamp, Level };

/**
 * A section of the drive's terminal strip: numbered screws with their names, a lamp or a level above those
 * that carry a signal, and bridges where a contact joins two of them.
 */
class TerminalStrip : public QWidget
{
    Q_OBJECT

public:
    /** @param selectable whether a terminal with an indicator can be picked with the mouse. */
    TerminalStrip(QList<Terminal> terminals, Indicator indicator, int indicated, bool selectable,
                  QWidget *parent);

    /** Lamp: lit unless 0. Level: -1 to 1, cut to it. */
    void SetIndicator(int position, double level);
    double IndicatorAt(int position) const { return levels_.at(position); }
    void SetSelected(int position); ///< -1 for none
    int Selected() const { return selected_; }
    /** Positions of screws joined inside the drive. */
    void SetBridges(const QList<QPair<int, int>> &bridges);
    const QList<QPair<int, int>> &Bridges() const { return bridges_; }

    /** Where the terminal is drawn. */
    QRectF CellRect(int position) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void Picked(int position);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    int PickableAt(const QPointF &place) const;
    double LineHeight() const;
    double IndicatorHeight() const;
    double ScrewDiameter() const;
    QRectF ScrewRect(const QRectF &cell) const;
    void PaintTerminal(QPainter &painter, int position) const;

    QList<Terminal> terminals_;
    QList<double> levels_;
    QList<QPair<int, int>> bridges_;
    Indicator indicator_;
    bool selectable_;
    int selected_ = -1;
};

} // namespace quorvik
