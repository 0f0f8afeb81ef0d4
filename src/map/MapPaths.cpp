// Which cards and wires a signal passes, up to where it comes from and down to where it goes.

#include "map/MapModel.h"
#include "map/MapNodes.h"
#include "model/ParameterTable.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** One direction of a path, from one signal of a card. */
class Lighting
{
public:
    enum class Way : bool { Up, Down };

    Lighting(const Circuit &circuit, int card, int start, Way way)
        : circuit_(circuit)
        , way_(way)
        , found_(way == Way::Up ? circuit.Upstream(start, Through::ActiveContacts)
                                : circuit.Downstream(start, Through::ActiveContacts))
        , reached_(std::size_t(MapModel::CardCount()))
    {
        reached_[std::size_t(card)] = true;
        for (const int node : found_.nodes)
            // A value that is merely shown in a window is not on its way there.
            if (IsMade(circuit, node) || IsUsed(circuit, node) || IsEndOfLink(circuit, node))
                if (const int at = CardOfNode(circuit, node); at >= 0)
                    reached_[std::size_t(at)] = true;
    }

    void AddTo(MapPath &path, const std::vector<MapWire> &wires)
    {
        for (std::size_t i = 0; i < wires.size(); ++i)
            if (IsOn(wires[i])) {
                path.wires[i] = true;
                reached_[std::size_t(wires[i].from)] = reached_[std::size_t(wires[i].to)] = true;
            }
        for (std::size_t i = 0; i < reached_.size(); ++i)
            path.cards[i] = path.cards[i] || reached_[i];
    }

private:
    bool IsOn(const MapWire &wire) const
    {
        const auto isOnWay = [this](int node) { return found_.HasNode(node); };
        if (!reached_[std::size_t(way_ == Way::Up ? wire.to : wire.from)])
            return false;
        if (!wire.intoNodes.empty())
            return std::ranges::any_of(wire.intoNodes, isOnWay);
        // Through the machine: no node stands for what comes out of it.
        return std::ranges::any_of(wire.params,
                                   [&](int p) { return std::ranges::any_of(circuit_.NodesOf(p), isOnWay); });
    }

    const Circuit &circuit_;
    Way way_;
    CircuitPath found_;
    std::vector<bool> reached_;
};

} // namespace

QSet<int> MapModel::SignalsOf(int card, int row) const
{
    const MapCard &entry = MapCards()[std::size_t(card)];
    QSet<int> found;
    if (!entry.isMirror) {
        for (std::size_t i = 0; i < entry.rows.size(); ++i) {
            const CardRow &each = entry.rows[i];
            if ((row >= 0 && row != int(i)) || each.kind == CardRowKind::Links ||
                each.kind == CardRowKind::Clock)
                continue;
            found.insert(each.selector >= 0 ? int(table_.Value(each.selector)) : each.param);
        }
        return found;
    }
    // What is shown here only is made elsewhere: its signals are those of the wires at the card.
    for (const MachineWire &machine : MachineWires())
        if (qstrcmp(machine.from, entry.title) == 0 || qstrcmp(machine.to, entry.title) == 0)
            found.insert(machine.param);
    return found;
}

MapPath MapModel::PathOf(const Circuit &circuit, int card, int row) const
{
    MapPath path{std::vector<bool>(std::size_t(CardCount())), std::vector<bool>(wires_.size())};
    path.cards[std::size_t(card)] = true;
    for (const int p : SignalsOf(card, row))
        if (!circuit.NodesOf(p).empty())
            for (const Lighting::Way way : {Lighting::Way::Up, Lighting::Way::Down})
                Lighting(circuit, card, circuit.NodesOf(p).front(), way).AddTo(path, wires_);
    return path;
}

} // namespace quorvik
