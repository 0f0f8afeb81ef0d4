#include "circuit/SignalWalk.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

using Outcome = std::optional<double>;

} // namespace

std::vector<int> SignalWalk::InputsOn(int node, Side side) const
{
    std::vector<int> found;
    for (const int edge : circuit_.Inputs(node))
        if (circuit_.EdgeAt(edge).to.side == side && circuit_.From(edge) >= 0)
            found.push_back(circuit_.From(edge));
    return found;
}

int SignalWalk::InputOn(int node, Side side) const
{
    const std::vector<int> found = InputsOn(node, side);
    return found.empty() ? -1 : found.front();
}

std::vector<int> SignalWalk::SelectorsOf(int node) const
{
    std::vector<int> selectors;
    for (const int edge : circuit_.Into(node)) {
        if (circuit_.EdgeAt(edge).kind != Edge::Kind::Control || circuit_.From(edge) < 0)
            continue;
        if (const int p = circuit_.NodeAt(circuit_.From(edge)).param; p > 0)
            selectors.push_back(p);
    }
    return selectors;
}

std::vector<int> SignalWalk::MembersOf(int group) const
{
    std::vector<int> members;
    if (group >= 0)
        for (const int edge : circuit_.Into(group))
            if (circuit_.EdgeAt(edge).kind == Edge::Kind::Member && circuit_.From(edge) >= 0)
                members.push_back(circuit_.From(edge));
    return members;
}

int SignalWalk::TakenInput(int node, bool isAsked) const
{
    const std::vector<int> selectors = SelectorsOf(node);
    const Node &found = circuit_.NodeAt(node);
    if (found.kind == NodeKind::Contact)
        return circuit_.Inputs(node).empty() ? -1 : circuit_.From(circuit_.Inputs(node).front());
    int contact = found.state;
    if (isAsked && selectors.size() == 1 && IsComputed(selectors.front()))
        contact = ValueOf(selectors.front()).value_or(0) != 0;
    int touched = -1;
    bool isStopped = false;
    for (const int edge : circuit_.Inputs(node)) {
        const int input = circuit_.From(edge);
        if (circuit_.EdgeAt(edge).to.contact == contact)
            touched = input;
        isStopped = isStopped || (input >= 0 && circuit_.NodeAt(input).kind == NodeKind::Constant);
    }
    // Nobody moves this switch but the drive's own state.
    if (isAsked && selectors.empty() && isStopped && touched >= 0 &&
        circuit_.NodeAt(touched).kind == NodeKind::Constant)
        return OtherInput(node, touched);
    return touched;
}

int SignalWalk::OtherInput(int node, int taken) const
{
    for (const int edge : circuit_.Inputs(node))
        if (const int input = circuit_.From(edge);
            input >= 0 && input != taken && circuit_.NodeAt(input).kind != NodeKind::Constant)
            return input;
    return -1;
}

bool SignalWalk::IsComputed(int p) const
{
    return table_.AttrBit(Attr::ReadOnly, p);
}

int SignalWalk::MakerOf(int p) const
{
    if (!IsComputed(p))
        return -1;
    for (const int node : circuit_.NodesOf(p))
        if (circuit_.NodeAt(node).kind == NodeKind::Value && !circuit_.Inputs(node).empty())
            return node;
    return -1;
}

int SignalWalk::SetpointOf(int node) const
{
    if (circuit_.NodeAt(node).kind != NodeKind::Memory)
        return -1;
    int input = InputOn(node, Side::Left);
    while (input >= 0) {
        const NodeKind kind = circuit_.NodeAt(input).kind;
        if (kind == NodeKind::Sum)
            return InputOn(input, Side::Left);
        if (kind != NodeKind::Value && kind != NodeKind::Joint)
            return -1;
        input = InputOn(input, Side::Left);
    }
    return -1;
}

Outcome SignalWalk::ValueOf(int p) const
{
    const int made = isPredicting_ ? MakerOf(p) : -1;
    if (made >= 0)
        if (const Outcome worked = Result(circuit_.From(circuit_.Inputs(made).front())))
            return worked;
    return ShownNumber(table_.Value(p), table_[p].Attributes);
}

Outcome SignalWalk::Result(int node) const
{
    if (node < 0 || std::ranges::find(pending_, node) != pending_.end())
        return std::nullopt;
    pending_.push_back(node);
    const Outcome result = Work(node);
    pending_.pop_back();
    return result;
}

Outcome SignalWalk::Gate(int node, bool decides) const
{
    bool isAnyKnown = false;
    for (const int edge : circuit_.Inputs(node)) {
        const Outcome value = Result(circuit_.From(edge));
        if (value && (*value != 0) == decides)
            return decides;
        isAnyKnown = isAnyKnown || value.has_value();
    }
    // What is not known, such as the ramp's enable by the state, is taken not to stand in the way.
    return isAnyKnown ? Outcome(!decides) : std::nullopt;
}

Outcome SignalWalk::Summed(int node) const
{
    static constexpr Side Sides[] = {Side::Left, Side::Top, Side::Right, Side::Bottom};
    const QString &signs = circuit_.NodeAt(node).text;
    Outcome sum;
    for (int i = 0; i < int(std::size(Sides)) && i < signs.size(); ++i) {
        const Outcome value = Result(InputOn(node, Sides[i]));
        if (signs.at(i) != u' ' && value)
            sum = sum.value_or(0) + (signs.at(i) == u'-' ? -*value : *value);
    }
    return sum;
}

Outcome SignalWalk::Limited(int node) const
{
    Outcome value = Result(InputOn(node, Side::Left));
    const Outcome high = Result(InputOn(node, Side::Top));
    const Outcome low = Result(InputOn(node, Side::Bottom));
    if (value && high && low)
        value = *value > 0 ? std::min(*value, *high) : std::max(*value, *low);
    return value;
}

Outcome SignalWalk::Work(int node) const
{
    const Node &found = circuit_.NodeAt(node);
    switch (found.kind) {
    case NodeKind::Value:
    case NodeKind::Signal:
        return found.param > 0 ? ValueOf(found.param) : std::nullopt;
    case NodeKind::Constant:
        return found.number;
    case NodeKind::Joint:
        return circuit_.Inputs(node).size() == 1 ? Result(circuit_.From(circuit_.Inputs(node).front()))
                                                 : std::nullopt;
    case NodeKind::Sum:
        return Summed(node);
    case NodeKind::Gain: {
        const Outcome value = Result(InputOn(node, Side::Left));
        return value ? Outcome(*value * found.number) : std::nullopt;
    }
    case NodeKind::Absolute: {
        const Outcome value = Result(InputOn(node, Side::Left));
        return value ? Outcome(std::abs(*value)) : std::nullopt;
    }
    case NodeKind::Not: {
        const Outcome value = Result(InputOn(node, Side::Left));
        return value ? Outcome(*value == 0) : std::nullopt;
    }
    case NodeKind::And:
        return Gate(node, false);
    case NodeKind::Nand: {
        const Outcome value = Gate(node, false);
        return value ? Outcome(*value == 0) : std::nullopt;
    }
    case NodeKind::Or:
        return Gate(node, true);
    case NodeKind::Switch:
        return Result(TakenInput(node, isPredicting_));
    case NodeKind::Contact: {
        bool isClosed = isPredicting_ || found.state == 1;
        for (const int selector : SelectorsOf(node))
            isClosed = isClosed && ValueOf(selector).value_or(0) != 0;
        return isClosed ? Result(TakenInput(node, true)) : Outcome(0.0);
    }
    case NodeKind::Comparator: {
        const std::vector<int> inputs = circuit_.Inputs(node);
        if (inputs.size() != 2)
            return std::nullopt;
        const Outcome value = Result(circuit_.From(inputs.front()));
        const Outcome level = Result(circuit_.From(inputs.back()));
        if (!value || !level)
            return std::nullopt;
        const std::optional<bool> holds = Holds(found.text, *value, *level);
        return holds ? Outcome(*holds) : std::nullopt;
    }
    case NodeKind::Limiter:
    case NodeKind::Formula:
        return Limited(node);
    case NodeKind::Memory: {
        if (const int setpoint = SetpointOf(node); setpoint >= 0)
            return Result(setpoint);
        const std::vector<int> left = InputsOn(node, Side::Left);
        if (left.empty())
            return std::nullopt;
        const Outcome set = Result(left.front());
        if (left.size() == 1)
            return set;
        const Outcome reset = Result(left.back());
        return set && reset ? Outcome(*set != 0 && *reset == 0) : std::nullopt;
    }
    case NodeKind::Terminal:
    case NodeKind::Product:
    case NodeKind::Group:
        break;
    }
    return std::nullopt;
}

} // namespace quorvik
