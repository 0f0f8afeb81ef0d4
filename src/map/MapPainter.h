#pragma once

#include "map/MapLayout.h"

#include <QFont>
#include <QPalette>
#include <optional>

class QPainter;

namespace quorvik
{

/** What the user points at, and what follows from it. */
struct MapLight {
    int card = -1; ///< with the frame of the focus or the pointer
    int row = -1;
    std::optional<MapPath> path = {}; ///< all else is faint while there is one
    bool isAlone = false;             ///< the path is the picture: nothing else is drawn, and no values
    int pulsing = -1;                 ///< card that is pulsing
    int pulsingRow = -1;
    double pulse = 0; ///< 1 at its beginning, 0 at its end
};

/** Draws the map in pixels at zoom 1; the painter carries zoom and place. */
class MapPainter
{
public:
    MapPainter(const MapModel &model, const MapLayout &layout)
        : model_(model)
        , layout_(layout)
    {
    }

    /** The font that texts are drawn in. */
    static QFont TextFont(const QFont &base);
    static QColor Paper(const QPalette &palette);
    /** For paper, which is white whatever the screen is. */
    static QPalette PaperPalette();
    void Paint(QPainter &painter, const QPalette &palette, const MapLight &light,
               const QRectF &visible) const;

private:
    struct Inks;

    void PaintWires(QPainter &painter, const Inks &inks, const MapLight &light) const;
    void PaintWire(QPainter &painter, const Inks &inks, int wire, bool isLit, bool isFaint) const;
    void PaintCard(QPainter &painter, const Inks &inks, int card, const MapLight &light) const;
    void PaintRow(QPainter &painter, const Inks &inks, int card, int row, bool withValue) const;
    void PaintSymbol(QPainter &painter, const Inks &inks, const QRectF &place) const;
    void PaintMarks(QPainter &painter, const Inks &inks, int card) const;
    void PaintLegend(QPainter &painter, const Inks &inks) const;

    const MapModel &model_;
    const MapLayout &layout_;
};

} // namespace quorvik
