#pragma once

#include "map/MapModel.h"

#include <QPolygonF>
#include <QRectF>
#include <QSizeF>
#include <vector>

namespace quorvik
{

/**
 * Where the cards of the map stand, and the way of each wire. Cards stand in columns, those of the inner
 * columns in bands as well; wires run upright in the gutters between columns and level in the channels
 * between bands, each in a lane of its own, so none runs over a card. Lengths are pixels at zoom 1.
 */
class MapLayout
{
public:
    MapLayout();

    QSizeF Size() const { return size_; }
    const QRectF &Card(int card) const { return cards_[std::size_t(card)]; }
    /** The strip with the card's title. */
    QRectF Header(int card) const;
    QRectF Row(int card, int row) const;
    /** The motor's circle; empty for other cards. */
    QRectF Symbol(int card) const;

    /** Finds the ways of the wires. */
    void Route(const std::vector<MapWire> &wires);
    /** The way of a wire from its beginning to its arrow. */
    const QPolygonF &Way(int wire) const { return ways_[std::size_t(wire)]; }

    /** The card at a place, or -1. */
    int CardAt(const QPointF &place) const;
    /** The row there, or -1 for the title. */
    int RowAt(int card, const QPointF &place) const;
    /** The wire within a distance of a place, or -1. */
    int WireAt(const QPointF &place, double distance) const;
    /** The next card in a direction of the arrow keys, or the card itself. */
    int Neighbour(int card, int dx, int dy) const;

private:
    void PlaceInner();
    void PlaceEdge(int column);

    std::vector<QRectF> cards_;
    std::vector<QPolygonF> ways_;
    std::vector<double> channelTops_; ///< one above each band, and one below the last
    QSizeF size_;
};

} // namespace quorvik
