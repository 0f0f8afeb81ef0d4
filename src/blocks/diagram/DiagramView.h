#pragma once

#include "blocks/diagram/ClickArea.h"
#include "blocks/diagram/Drawing.h"

#include <QWidget>

class QLabel;

namespace quorvik
{

/**
 * The sheet that shows a drawing: paints it, and carries the labels, value boxes and click areas that stand
 * on it. Its size is the drawing's, at the size of its owner's font or scaled to the room that there is.
 */
class DiagramView : public QWidget
{
    Q_OBJECT

public:
    explicit DiagramView(QWidget *parent);

    /** Shows a drawing that its owner keeps as long as the view. Called once, before Finish(). */
    void Show(Drawing &drawing);

    Drawing &Shown() const { return *drawing_; }

    /** Stands a widget on a rectangle in cells, or moves it there. */
    void Place(QWidget *widget, const QRectF &cells);
    /**
     * Stands a line of text; see DrawnText for the place.
     * @param longestText what room is kept for; the label's own text where empty.
     */
    void PlaceText(QLabel *label, const QPointF &at, Qt::Alignment align, const QString &longestText = {});
    /** A label with plain text, as all of them are. */
    QLabel *MakeLabel(const QString &name, const QString &text, bool bold);

    /** The label of one of the drawing's texts, by its index there; null before Finish(). */
    QLabel *LabelOf(int text) const { return labels_.value(text); }
    /** Width of a text in cells, as a plain label shows it. */
    double TextWidth(const QString &text) const;

    /** Makes labels of the drawing's texts and gives the sheet its size. Called once all is placed. */
    void Finish();

    /** Scales sheet and text to the room, in whole pixels of the screen to a cell; the text stays readable.
     */
    void Fit(const QSize &room);
    /** Scales to so many times the size of the owner's font, but not below the smallest scale. */
    void ScaleTo(double scale);
    double Scale() const { return unit_ / usualUnit_; }
    double SmallestScale() const; ///< at which text can still be read
    /** What the sheet takes at the size of its owner's font. */
    QSize UsualSize() const { return usualSize_; }

    double Unit() const { return unit_; } ///< pixels to a cell
    static int UnitOf(const QFont &font); ///< at the size of a font
    /** Pixels of the sheet for a rectangle or a line in cells. */
    QRectF ToPixels(const QRectF &cells) const;
    QPolygonF ToPixels(const QPolygonF &cells) const;
    QPointF ToCells(const QPointF &pixels) const { return pixels / Unit() + origin_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Standing {
        QWidget *widget;
        QRectF cells; ///< of a widget on a rectangle
        QPointF at;   ///< of a text
        Qt::Alignment align;
        QString longestText;
        bool isText;
    };
    QRectF CellsOf(const Standing &standing) const;
    /** Pixels that a text takes in a font. */
    static double WidthOf(const Standing &text, QFont font);
    void Arrange();
    void SetUsualFont();
    /** The usual font as large as a size of cells allows. */
    QFont FontFor(double unit) const;

    Drawing *drawing_ = nullptr;
    QList<QLabel *> labels_; ///< of the drawing's texts
    QList<Standing> standing_;
    QPointF origin_; ///< cells at the sheet's top left corner
    int usualUnit_ = 0;
    double unit_ = 0;
    QSize usualSize_;
    bool isFitting_ = false;
    bool finished_ = false;
};

} // namespace quorvik
