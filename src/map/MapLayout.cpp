#include "map/MapLayout.h"

#include "blocks/diagram/Geometry.h"
#include "map/MapMetrics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

using namespace MapMetrics;

constexpr int LastColumn = MapColumns - 1;

bool IsEdgeColumn(int column)
{
    return column == 0 || column == LastColumn;
}

double HeightOf(const MapCard &card)
{
    return HeaderHeight + double(card.rows.size()) * RowHeight + CardFoot +
           (card.group == CardGroup::Machine ? SymbolHeight : 0);
}

double ColumnLeft(int column)
{
    return Margin + column * (CardWidth + GutterWidth);
}

} // namespace

MapLayout::MapLayout()
    : cards_(MapCards().size())
{
    PlaceInner();
    PlaceEdge(0);
    PlaceEdge(LastColumn);
}

void MapLayout::PlaceInner()
{
    std::array<double, MapBands> heights{};
    for (const MapCard &card : MapCards())
        if (!IsEdgeColumn(card.column))
            heights[std::size_t(card.band)] = std::max(heights[std::size_t(card.band)], HeightOf(card));
    double y = Margin;
    std::array<double, MapBands> tops{};
    for (std::size_t band = 0; band < heights.size(); ++band) {
        channelTops_.push_back(y);
        tops[band] = y + ChannelHeight;
        y = tops[band] + heights[band];
    }
    channelTops_.push_back(y);
    for (std::size_t i = 0; i < cards_.size(); ++i) {
        const MapCard &card = MapCards()[i];
        if (!IsEdgeColumn(card.column))
            cards_[i] =
                QRectF(ColumnLeft(card.column), tops[std::size_t(card.band)], CardWidth, HeightOf(card));
    }
    size_ = QSizeF(ColumnLeft(LastColumn) + CardWidth + Margin, y + ChannelHeight + LegendHeight + Margin);
}

void MapLayout::PlaceEdge(int column)
{
    double taken = 0;
    int count = 0;
    for (const MapCard &card : MapCards())
        if (card.column == column) {
            taken += HeightOf(card);
            ++count;
        }
    const double top = channelTops_.front() + ChannelHeight;
    const double gap = (channelTops_.back() - top - taken) / std::max(count - 1, 1);
    double y = top;
    for (std::size_t i = 0; i < cards_.size(); ++i)
        if (const MapCard &card = MapCards()[i]; card.column == column) {
            cards_[i] = QRectF(ColumnLeft(column), std::round(y), CardWidth, HeightOf(card));
            y += HeightOf(card) + gap;
        }
}

QRectF MapLayout::Header(int card) const
{
    QRectF header = Card(card);
    header.setHeight(HeaderHeight);
    return header;
}

QRectF MapLayout::Symbol(int card) const
{
    if (MapCards()[std::size_t(card)].group != CardGroup::Machine)
        return {};
    return QRectF(Card(card).left(), Header(card).bottom(), CardWidth, SymbolHeight);
}

QRectF MapLayout::Row(int card, int row) const
{
    const double above = HeaderHeight + Symbol(card).height();
    return QRectF(Card(card).left(), Card(card).top() + above + row * RowHeight + 1, CardWidth, RowHeight);
}

int MapLayout::CardAt(const QPointF &place) const
{
    const auto at = std::ranges::find_if(cards_, [&](const QRectF &card) { return card.contains(place); });
    return at == cards_.end() ? -1 : int(at - cards_.begin());
}

int MapLayout::RowAt(int card, const QPointF &place) const
{
    const int rows = int(MapCards()[std::size_t(card)].rows.size());
    for (int row = 0; row < rows; ++row)
        if (Row(card, row).contains(place))
            return row;
    return -1;
}

int MapLayout::WireAt(const QPointF &place, double distance) const
{
    int nearest = -1;
    for (std::size_t i = 0; i < ways_.size(); ++i)
        if (const double away = DistanceFrom(ways_[i], place); away <= distance) {
            distance = away;
            nearest = int(i);
        }
    return nearest;
}

int MapLayout::Neighbour(int card, int dx, int dy) const
{
    // What lies straight ahead comes before what lies nearer, but aside.
    constexpr double asideCost = 3;
    const QPointF from = Card(card).center();
    int best = card;
    double least = 0;
    for (std::size_t i = 0; i < cards_.size(); ++i) {
        const QPointF way = cards_[i].center() - from;
        const double ahead = dx != 0 ? way.x() * dx : way.y() * dy;
        const double aside = std::abs(dx != 0 ? way.y() : way.x());
        if (ahead < 1 || (dy != 0 && aside > CardWidth / 2))
            continue;
        const double cost = ahead + asideCost * aside;
        if (best == card || cost < least) {
            best = int(i);
            least = cost;
        }
    }
    return best;
}

} // namespace quorvik
