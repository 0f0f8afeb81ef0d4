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
enum class Indicator { None, Lamp, Level, Contact };

/**
 * A section of the drive's terminal strip: numbered screws with their names, above them a lamp or a level for
 * those that carry a signal, or the contacts that join two of them inside the drive.
 */
class TerminalStrip : public QWidget
{
    Q_OBJECT

public:
    /**
     * @param indicated how many terminals, counted from the left, have a lamp or a level.
     * @param selectable whether these can be picked with the mouse.
     */
    TerminalStrip(QList<Terminal> terminals, Indicator indicator, int indicated, bool selectable,
                  QWidget *parent);

    void SetLamp(int position, bool lit);
    bool IsLit(int position) const { return bars_.at(position).to != 0.0; }
    /** A bar between two places of the level's trough, 0 its left and 1 its right end; cut to it. */
    void SetLevel(int position, double from, double to);
    void SetSelected(int position); ///< -1 for none
    int Selected() const { return selected_; }
    /** Pairs of positions that contacts join now. */
    void SetContacts(const QList<QPair<int, int>> &contacts);

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
    struct Bar {
        double from = 0.0;
        double to = 0.0;
        bool operator==(const Bar &) const = default;
    };

    void SetBar(int position, const Bar &bar);
    int PickableAt(const QPointF &place) const;
    double LineHeight() const;
    double IndicatorHeight() const;
    double ScrewDiameter() const;
    double NaturalWidth(int terminals) const;
    QRectF ScrewRect(const QRectF &cell) const;
    void PaintTerminal(QPainter &painter, int position) const;
    void PaintLevel(QPainter &painter, const QRectF &trough, const Bar &bar) const;
    void PaintContact(QPainter &painter, int from, int to) const;

    QList<Terminal> terminals_;
    QList<Bar> bars_;
    QList<QPair<int, int>> contacts_;
    Indicator indicator_;
    bool selectable_;
    int selected_ = -1;
};

} // namespace quorvik
