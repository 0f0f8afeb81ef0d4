#pragma once

#include "blocks/diagram/Drawing.h"

#include <QBrush>
#include <QPalette>
#include <QTransform>

class QPainter;

namespace quorvik
{

/** The inks of a drawing, made from a palette, light or dark. */
struct DrawingInk {
    explicit DrawingInk(const QPalette &palette);

    QColor line;
    QColor faint;
    QColor fill;
    QColor paper;
    QColor arm;   ///< the one strong accent: what moves
    QColor curve; ///< characteristics inside boxes
};

/** Paints a drawing's elements on a painter whose origin is the drawing's. */
class DrawingPainter
{
public:
    /** @param unit pixels to a cell. */
    DrawingPainter(QPainter &painter, const DrawingInk &ink, double unit);

    void Paint(const Drawing &drawing, const QRectF &exposedCells);

    // What the single shapes are painted with; see ShapePainter.h.

    QPainter &Canvas() { return painter_; }
    const DrawingInk &Ink() const { return ink_; }
    double Unit() const { return unit_; }
    /** @param cells the width of the line. */
    void SetInk(const QColor &color, double cells, const QBrush &fill = Qt::NoBrush,
                Qt::PenStyle style = Qt::SolidLine);
    void PaintBox(const QRectF &rect);
    QPointF Px(const QPointF &cells) const { return cells * unit_; }
    QRectF Px(const QRectF &cells) const { return {cells.topLeft() * unit_, cells.size() * unit_}; }
    QPolygonF Px(const QPolygonF &cells) const { return QTransform::fromScale(unit_, unit_).map(cells); }

private:
    void PaintElement(const Drawing &drawing, const Element &element);
    void PaintWire(const QPolygonF &line, bool arrow);
    void PaintRound(const Element &element);
    void PaintTriangle(const Element &element);
    void PaintGate(const Element &element);
    void PaintOr(const QRectF &rect);
    void PaintRoll(const Element &element);
    void PaintArm(const Element &element);
    void PaintTerminal(const Element &element);

    QPainter &painter_;
    const DrawingInk &ink_;
    double unit_;
    QColor line_;          ///< of the element that is being painted
    double lineWidth_ = 0; ///< in cells
};

} // namespace quorvik
