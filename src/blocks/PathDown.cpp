#include "blocks/PathDown.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** Takes off the branches of a way down that a switch passes by, since it takes the signal from another one
 * of them. A switch that takes it from elsewhere is where the way ends. */
void Prune(const Circuit &circuit, CircuitPath &path)
{
    const auto isPassedBy = [&](int edge) { return !path.HasEdge(edge) && path.HasNode(circuit.To(edge)); };
    const auto leadsNowhere = [&](int node) {
        const std::vector<int> &onward = circuit.OutOf(node);
        return circuit.NodeAt(node).kind != NodeKind::Value && !onward.empty() &&
               std::ranges::all_of(onward, isPassedBy);
    };
    for (bool isDone = false; !isDone;) {
        const auto end = std::ranges::find_if(path.nodes, leadsNowhere);
        isDone = end == path.nodes.end();
        if (isDone)
            continue;
        for (const int edge : circuit.Into(*end))
            std::erase(path.edges, edge);
        path.nodes.erase(end);
    }
}

} // namespace

CircuitPath PathDown(const Circuit &circuit, int node)
{
    CircuitPath path = circuit.Downstream(node, Through::ActiveContacts);
    Prune(circuit, path);
    return path;
}

} // namespace quorvik
