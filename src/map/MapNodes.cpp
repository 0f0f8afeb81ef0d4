#include "map/MapNodes.h"

#include "map/MapModel.h"

#include <algorithm>

namespace quorvik
{

bool IsEndOfLink(const Circuit &circuit, int node)
{
    return circuit.NodeAt(node).kind == NodeKind::Value &&
           std::ranges::any_of(circuit.Into(node), [&circuit](int edge) {
               return circuit.EdgeAt(edge).kind == Edge::Kind::Control;
           });
}

bool IsMade(const Circuit &circuit, int node)
{
    return std::ranges::any_of(
        circuit.Into(node), [&circuit](int edge) { return circuit.EdgeAt(edge).kind == Edge::Kind::Signal; });
}

bool IsUsed(const Circuit &circuit, int node)
{
    return std::ranges::any_of(circuit.OutOf(node), [&circuit](int edge) {
        return circuit.EdgeAt(edge).kind != Edge::Kind::Choice && circuit.EdgeAt(edge).to.node >= 0;
    });
}

int CardOfNode(const Circuit &circuit, int node, int *row)
{
    return MapModel::CardOfWindow(circuit.Block(circuit.BlockOfNode(node)).window, row);
}

} // namespace quorvik
