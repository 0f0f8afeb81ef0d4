#include "circuit/Circuit.h"

#include "model/ParameterTable.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

namespace
{

void AddTo(std::vector<int> &sorted, int value)
{
    const auto at = std::ranges::lower_bound(sorted, value);
    if (at == sorted.end() || *at != value)
        sorted.insert(at, value);
}

bool IsIn(const std::vector<int> &sorted, int value)
{
    return std::ranges::binary_search(sorted, value);
}

bool HasParameter(const Node &node)
{
    // Number 0 is the parameter that stands for none.
    return (node.kind == NodeKind::Value || node.kind == NodeKind::Signal) && node.param > 0;
}

} // namespace

bool CircuitPath::HasNode(int node) const
{
    return IsIn(nodes, node);
}

bool CircuitPath::HasEdge(int edge) const
{
    return IsIn(edges, edge);
}

Circuit::Circuit(const ParameterTable &table, std::vector<BlockNet> blocks)
    : table_(table)
{
    for (BlockNet &block : blocks) {
        const Net &net = *block.net;
        const int number = int(blocks_.size());
        blocks_.push_back({std::move(block), NetValues(net), nodes_, edges_});
        nodes_ += int(net.nodes.size());
        edges_ += int(net.edges.size());
        blockOfNode_.resize(std::size_t(nodes_), number);
        blockOfEdge_.resize(std::size_t(edges_), number);
    }
    into_.resize(std::size_t(nodes_));
    outOf_.resize(std::size_t(nodes_));
    for (int edge = 0; edge < edges_; ++edge) {
        if (const int end = To(edge); end >= 0)
            into_[std::size_t(end)].push_back(edge);
        if (const int start = From(edge); start >= 0)
            outOf_[std::size_t(start)].push_back(edge);
    }
    JoinParameters();
}

void Circuit::Follow()
{
    for (Joined &block : blocks_) {
        try {
            if (block.given.follow)
                block.given.follow();
        } catch (const RuntimeFailure &) {
            // The window of that block tells it; its switches stay where they were.
        }
        block.values.Follow(table_);
    }
    JoinParameters();
    FindLinks();
}

void Circuit::JoinParameters()
{
    nodesOf_.resize(std::size_t(table_.UpperBound()) + 1);
    for (std::vector<int> &nodes : nodesOf_)
        nodes.clear();
    for (int node = 0; node < nodes_; ++node)
        if (const Node &found = NodeAt(node); HasParameter(found) && found.param < int(nodesOf_.size()))
            nodesOf_[std::size_t(found.param)].push_back(node);
}

void Circuit::FindLinks()
{
    links_ = operatorLinks_;
    // The blocks come in the order of the catalogue, which has inputs before links as the drive has.
    const auto selected = [this](int selector) {
        const std::int32_t p = table_.Value(selector);
        return p > 0 && p <= table_.UpperBound() ? int(p) : -1;
    };
    for (const Joined &block : blocks_)
        for (const Edge &edge : block.given.net->edges) {
            if (edge.from.node < 0 || edge.to.node < 0)
                continue;
            const Node &from = block.given.net->nodes[std::size_t(edge.from.node)];
            const Node &to = block.given.net->nodes[std::size_t(edge.to.node)];
            if (edge.kind == Edge::Kind::Choice) {
                const int source = selected(from.param);
                const int destination = selected(to.param);
                if (source < 0 || destination < 0)
                    continue;
                const int number = (from.param - Param::InternalLink1Source) / 2 + 1;
                links_.push_back({.kind = CircuitLink::Kind::Internal,
                                  .selector = from.param,
                                  .source = source,
                                  .destination = destination,
                                  .name = QStringLiteral("Internal Link %1").arg(number)});
            } else if (edge.kind == Edge::Kind::Control && to.kind == NodeKind::Value && to.param > 0) {
                const bool isInput = table_.AttrBit(Attr::Destination, from.param);
                links_.push_back({.kind = isInput ? CircuitLink::Kind::Input : CircuitLink::Kind::Output,
                                  .selector = from.param,
                                  .source = isInput ? -1 : to.param,
                                  .destination = isInput ? to.param : -1,
                                  .name = block.given.window});
            }
        }
}

int Circuit::BlockOfNode(int node) const
{
    return blockOfNode_[std::size_t(node)];
}

int Circuit::BlockOfEdge(int edge) const
{
    return blockOfEdge_[std::size_t(edge)];
}

int Circuit::FindBlock(const QString &window) const
{
    const auto at =
        std::ranges::find(blocks_, window, [](const Joined &block) { return block.given.window; });
    return at == blocks_.end() ? -1 : int(at - blocks_.begin());
}

const Node &Circuit::NodeAt(int node) const
{
    return Block(BlockOfNode(node)).net->nodes[std::size_t(LocalNode(node))];
}

const Edge &Circuit::EdgeAt(int edge) const
{
    return Block(BlockOfEdge(edge)).net->edges[std::size_t(LocalEdge(edge))];
}

std::optional<double> Circuit::Result(int node) const
{
    return blocks_[std::size_t(BlockOfNode(node))].values.Result(LocalNode(node));
}

std::optional<double> Circuit::OnEdge(int edge) const
{
    return blocks_[std::size_t(BlockOfEdge(edge))].values.OnEdge(LocalEdge(edge));
}

std::optional<double> Circuit::Entering(int node) const
{
    return blocks_[std::size_t(BlockOfNode(node))].values.Entering(LocalNode(node));
}

const std::vector<int> &Circuit::NodesOf(int p) const
{
    static const std::vector<int> none;
    return p <= 0 || p >= int(nodesOf_.size()) ? none : nodesOf_[std::size_t(p)];
}

std::vector<int> Circuit::Inputs(int node) const
{
    const Joined &block = blocks_[std::size_t(BlockOfNode(node))];
    std::vector<int> inputs;
    for (const int local : block.values.Into(LocalNode(node)))
        inputs.push_back(block.firstEdge + local);
    return inputs;
}

bool Circuit::IsMade(int node) const
{
    return NodeAt(node).kind == NodeKind::Value && !Into(node).empty();
}

bool Circuit::IsTraced(int edge) const
{
    const Edge::Kind kind = EdgeAt(edge).kind;
    return kind == Edge::Kind::Signal || kind == Edge::Kind::Member;
}

bool Circuit::Passes(int edge) const
{
    return Block(BlockOfEdge(edge)).net->Passes(EdgeAt(edge));
}

void Circuit::Visit(int node, Way way, Through through, CircuitPath &path, std::vector<int> &open) const
{
    const auto reach = [&](int next) {
        if (next < 0 || path.HasNode(next))
            return;
        AddTo(path.nodes, next);
        open.push_back(next);
    };
    for (const int edge : way == Way::Up ? Into(node) : OutOf(node)) {
        if (!IsTraced(edge) || (through == Through::ActiveContacts && !Passes(edge)))
            continue;
        AddTo(path.edges, edge);
        reach(FarEnd(edge, way));
    }
    const Node &found = NodeAt(node);
    if (!HasParameter(found))
        return;
    for (const int other : NodesOf(found.param)) {
        // The value is made where a wire enters its box; it goes on wherever it stands. A name at the end of
        // a wire only says where that leads.
        if (way == Way::Down || IsMade(other))
            reach(other);
    }
    for (const CircuitLink &link : links_) {
        const int here = way == Way::Up ? link.destination : link.source;
        if (link.kind != CircuitLink::Kind::Internal || here != found.param)
            continue;
        for (const int other : NodesOf(way == Way::Up ? link.source : link.destination))
            reach(other);
    }
}

CircuitPath Circuit::Trace(int node, Way way, Through through) const
{
    CircuitPath path;
    path.nodes.push_back(node);
    std::vector<int> open{node};
    while (!open.empty()) {
        const int next = open.back();
        open.pop_back();
        Visit(next, way, through, path, open);
    }
    return path;
}

CircuitPath Circuit::Upstream(int node, Through through) const
{
    return Trace(node, Way::Up, through);
}

CircuitPath Circuit::Downstream(int node, Through through) const
{
    return Trace(node, Way::Down, through);
}

std::vector<CircuitNeighbour> Circuit::Neighbours(int p, Way way) const
{
    std::vector<CircuitNeighbour> found;
    const auto add = [&found, p](const CircuitNeighbour &neighbour) {
        if (neighbour.param == p)
            return;
        const auto same = std::ranges::find(found, neighbour.param, &CircuitNeighbour::param);
        if (same == found.end())
            found.push_back(neighbour);
        else if (neighbour.isActive && !same->isActive)
            *same = neighbour;
    };
    for (const int start : NodesOf(p)) {
        if (way == Way::Up && !IsMade(start))
            continue;
        struct Step {
            int node;
            bool isActive;
        };
        std::vector<Step> open{{start, true}};
        std::vector<int> seen{start};
        for (std::size_t i = 0; i < open.size(); ++i) {
            const Step step = open[i];
            for (const int edge : way == Way::Up ? Into(step.node) : OutOf(step.node)) {
                const int next = FarEnd(edge, way);
                if (next < 0 || !IsTraced(edge))
                    continue;
                const bool isActive = step.isActive && Passes(edge);
                if (const Node &node = NodeAt(next); HasParameter(node)) {
                    if (way == Way::Up || node.kind == NodeKind::Value)
                        add({.param = node.param, .node = next, .isActive = isActive});
                } else if (!IsIn(seen, next)) {
                    AddTo(seen, next);
                    open.push_back({next, isActive});
                }
            }
        }
    }
    for (std::size_t i = 0; i < links_.size(); ++i) {
        const CircuitLink &link = links_[i];
        const int here = way == Way::Up ? link.destination : link.source;
        const int there = way == Way::Up ? link.source : link.destination;
        if (here == p && there > 0)
            add({.param = there, .link = int(i), .isActive = true});
    }
    std::stable_partition(found.begin(), found.end(),
                          [](const CircuitNeighbour &neighbour) { return neighbour.isActive; });
    return found;
}

std::vector<CircuitNeighbour> Circuit::SourcesOf(int p) const
{
    return Neighbours(p, Way::Up);
}

std::vector<CircuitNeighbour> Circuit::FeedsOf(int p) const
{
    return Neighbours(p, Way::Down);
}

} // namespace quorvik
