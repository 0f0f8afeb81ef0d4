#include "circuit/Net.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace quorvik
{

namespace
{

using Outcome = std::optional<double>;

bool IsTrue(double value)
{
    return value != 0;
}

/** All inputs, or nothing where one is not known. */
std::optional<std::vector<double>> AllOf(const NetInputs &inputs)
{
    std::vector<double> values;
    for (int i = 0; i < inputs.Count(); ++i) {
        const Outcome value = inputs.At(i);
        if (!value)
            return std::nullopt;
        values.push_back(*value);
    }
    return values;
}

Outcome SumOf(const NetInputs &inputs, const QString &signs)
{
    double sum = 0;
    for (int i = 0; i < inputs.Count(); ++i) {
        const Outcome value = inputs.At(i);
        const auto place = qsizetype(inputs.PinAt(i).side);
        if (!value || place >= signs.size())
            return std::nullopt;
        sum += signs.at(place) == u'-' ? -*value : *value;
    }
    return sum;
}

Outcome ProductOf(const NetInputs &inputs)
{
    const auto values = AllOf(inputs);
    if (!values || values->empty())
        return std::nullopt;
    double product = values->front();
    for (auto value = values->begin() + 1; value != values->end(); ++value)
        product *= *value / 100;
    return product;
}

/** What is decided does not hang on what is unknown. */
Outcome GateOf(const NetInputs &inputs, bool decides)
{
    bool isKnown = true;
    for (int i = 0; i < inputs.Count(); ++i) {
        const Outcome value = inputs.At(i);
        if (!value)
            isKnown = false;
        else if (IsTrue(*value) == decides)
            return decides;
    }
    return isKnown ? Outcome(!decides) : std::nullopt;
}

Outcome LimitedBy(const NetInputs &inputs, const Node &node)
{
    const Outcome value = inputs.On(Side::Left);
    const Outcome lowest = node.lowest ? node.lowest : inputs.On(Side::Bottom);
    const Outcome highest = node.highest ? node.highest : inputs.On(Side::Top);
    if (!value || !lowest || !highest)
        return std::nullopt;
    return std::max(*lowest, std::min(*value, *highest));
}

Outcome Compared(const NetInputs &inputs, const QString &relation)
{
    const auto values = AllOf(inputs);
    if (!values || values->size() != 2)
        return std::nullopt;
    const std::optional<bool> holds = Holds(relation, values->at(0), values->at(1));
    return holds ? Outcome(*holds) : std::nullopt;
}

Outcome Negated(const Outcome &value)
{
    return value ? Outcome(!IsTrue(*value)) : std::nullopt;
}

} // namespace

std::optional<bool> Holds(const QString &relation, double value, double level)
{
    switch (relation.isEmpty() ? 0 : relation.at(0).unicode()) {
    case u'>':
        return value > level;
    case u'<':
        return value < level;
    case u'\u2264':
        return value <= level;
    case u'\u2265':
        return value >= level;
    default:
        return std::nullopt;
    }
}

int Net::Add(Node node)
{
    nodes.push_back(std::move(node));
    return int(nodes.size()) - 1;
}

int Net::Connect(const Pin &from, const Pin &to, Edge::Kind kind)
{
    edges.push_back({from, to, kind});
    return int(edges.size()) - 1;
}

bool Net::Passes(const Edge &edge) const
{
    const auto isTouched = [this](const Pin &pin) {
        if (pin.node < 0 || pin.contact < 0)
            return true;
        const Node &node = nodes[std::size_t(pin.node)];
        return node.kind == NodeKind::Contact ? node.state == 1 : node.state == pin.contact;
    };
    return isTouched(edge.from) && isTouched(edge.to);
}

Outcome NetInputs::At(int index) const
{
    const Pin &from = net_.edges[std::size_t(edges_[std::size_t(index)])].from;
    return from.node < 0 ? std::nullopt : results_[std::size_t(from.node)];
}

Outcome NetInputs::On(Side side, int index) const
{
    for (int i = 0; i < Count(); ++i)
        if (PinAt(i).side == side && index-- == 0)
            return At(i);
    return std::nullopt;
}

int NetInputs::CountOn(Side side) const
{
    return int(std::ranges::count_if(
        edges_, [&](int edge) { return net_.edges[std::size_t(edge)].to.side == side; }));
}

Outcome NetInputs::OnContact(int contact) const
{
    for (int i = 0; i < Count(); ++i)
        if (PinAt(i).contact == contact)
            return At(i);
    return std::nullopt;
}

NetValues::NetValues(const Net &net)
    : net_(net)
    , into_(net.nodes.size())
    , results_(net.nodes.size())
{
    const auto isBox = [&](int node) { return net.nodes[std::size_t(node)].kind == NodeKind::Value; };
    std::vector<std::vector<int>> onward(net.nodes.size());
    std::vector<int> waits(net.nodes.size());
    for (std::size_t i = 0; i < net.edges.size(); ++i) {
        const Edge &edge = net.edges[i];
        if (edge.kind != Edge::Kind::Signal || edge.to.node < 0)
            continue;
        into_[std::size_t(edge.to.node)].push_back(int(i));
        // What a box gives is read, before all else, and waits for nothing.
        if (edge.from.node < 0 || isBox(edge.from.node) || isBox(edge.to.node))
            continue;
        onward[std::size_t(edge.from.node)].push_back(edge.to.node);
        ++waits[std::size_t(edge.to.node)];
    }
    const auto place = [&](int edge) {
        const Pin &pin = net.edges[std::size_t(edge)].to;
        return std::tuple(pin.side, pin.along, edge);
    };
    for (std::vector<int> &wires : into_)
        std::ranges::sort(wires, {}, place);
    for (std::size_t node = 0; node < net.nodes.size(); ++node)
        if (waits[node] == 0)
            order_.push_back(int(node));
    std::stable_partition(order_.begin(), order_.end(), isBox);
    // Elements in a loop without a box between them never come to their turn, and stay unknown.
    for (std::size_t i = 0; i < order_.size(); ++i)
        for (const int next : onward[std::size_t(order_[i])])
            if (--waits[std::size_t(next)] == 0)
                order_.push_back(next);
}

NetInputs::Reader NetValues::ReaderOf(const ParameterTable &table)
{
    return [&table](int p, double perCount) -> Outcome {
        if (p < 0 || p > table.UpperBound())
            return std::nullopt;
        return perCount != 0 ? Outcome(table[p].Value * perCount)
                             : ShownNumber(table[p].Value, table[p].Attributes);
    };
}

void NetValues::Follow(const NetInputs::Reader &read)
{
    std::ranges::fill(results_, std::nullopt);
    for (const int node : order_)
        results_[std::size_t(node)] = Compute(node, read);
}

Outcome NetValues::OnEdge(int edge) const
{
    const Pin &from = net_.edges[std::size_t(edge)].from;
    return from.node < 0 ? std::nullopt : results_[std::size_t(from.node)];
}

Outcome NetValues::Entering(int node) const
{
    const std::vector<int> &wires = into_[std::size_t(node)];
    return wires.size() == 1 ? OnEdge(wires.front()) : std::nullopt;
}

NetInputs NetValues::InputsOf(int node) const
{
    static const NetInputs::Reader readsNothing = [](int, double) { return std::nullopt; };
    return {net_, results_, Into(node), readsNothing};
}

Outcome NetValues::Compute(int index, const NetInputs::Reader &read) const
{
    const Node &node = net_.nodes[std::size_t(index)];
    const NetInputs inputs(net_, results_, into_[std::size_t(index)], read);
    switch (node.kind) {
    case NodeKind::Value:
    case NodeKind::Signal:
        return read(node.param, node.perCount);
    case NodeKind::Constant:
        return node.number;
    case NodeKind::Joint:
        return inputs.Count() == 1 ? inputs.At(0) : std::nullopt;
    case NodeKind::Sum:
        return SumOf(inputs, node.text);
    case NodeKind::Product:
        return ProductOf(inputs);
    case NodeKind::Gain: {
        const Outcome value = inputs.On(Side::Left);
        return value ? Outcome(*value * node.number) : std::nullopt;
    }
    case NodeKind::Not:
        return Negated(inputs.On(Side::Left));
    case NodeKind::And:
        return GateOf(inputs, false);
    case NodeKind::Nand:
        return Negated(GateOf(inputs, false));
    case NodeKind::Or:
        return GateOf(inputs, true);
    case NodeKind::Absolute: {
        const Outcome value = inputs.On(Side::Left);
        return value ? Outcome(std::abs(*value)) : std::nullopt;
    }
    case NodeKind::Limiter:
        return node.formula ? node.formula(inputs) : LimitedBy(inputs, node);
    case NodeKind::Comparator:
        return Compared(inputs, node.text);
    case NodeKind::Switch:
        return node.state < 0 ? std::nullopt : inputs.OnContact(node.state);
    case NodeKind::Contact:
        return node.state == 1 ? inputs.OnContact(0) : Outcome(0.0);
    case NodeKind::Formula:
        return node.formula ? node.formula(inputs) : std::nullopt;
    case NodeKind::Memory:
    case NodeKind::Terminal:
    case NodeKind::Group:
        break;
    }
    return std::nullopt;
}

} // namespace quorvik
