#include "map/MapPicture.h"

#include "map/MapMetrics.h"

#include <QPainter>

namespace quorvik
{

MapPicture::MapPicture(const ParameterTable &table)
    : table_(table)
{
    circuit_.Get().Follow();
    model_.Follow(circuit_.Get());
    layout_.Route(model_.Wires());

    const std::vector<MapWire> &wires = model_.Wires();
    MapPath path = model_.PathOf(circuit_.Get(), MapModel::FindCard(QStringLiteral("Motor")));
    for (const MapWire &wire : wires)
        if (wire.isLink)
            path.cards[std::size_t(wire.from)] = path.cards[std::size_t(wire.to)] = true;
    for (std::size_t i = 0; i < wires.size(); ++i)
        path.wires[i] = path.cards[std::size_t(wires[i].from)] && path.cards[std::size_t(wires[i].to)];

    for (int card = 0; card < MapModel::CardCount(); ++card)
        if (path.cards[std::size_t(card)])
            used_ |= layout_.Card(card);
    for (int wire = 0; wire < int(wires.size()); ++wire)
        if (path.wires[std::size_t(wire)])
            used_ |= layout_.Way(wire).boundingRect();
    const double margin = MapMetrics::Margin / 2;
    used_.adjust(-margin, -margin, margin, margin);
    light_.path = std::move(path);
    light_.isAlone = true;
}

QStringList MapPicture::Blocks() const
{
    QStringList titles;
    for (int card = 0; card < MapModel::CardCount(); ++card)
        if (light_.path->cards[std::size_t(card)])
            titles.append(QString::fromLatin1(MapCards()[std::size_t(card)].title));
    return titles;
}

void MapPicture::Paint(QPainter &painter) const
{
    painter.save();
    painter.translate(-used_.topLeft());
    MapPainter(model_, layout_).Paint(painter, MapPainter::PaperPalette(), light_, used_);
    painter.restore();
}

} // namespace quorvik
