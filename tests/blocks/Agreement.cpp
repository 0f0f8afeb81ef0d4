#include "Agreement.h"

#include "model/Conversions.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

bool IsSource(const Node &node)
{
    return node.kind == NodeKind::Value || node.kind == NodeKind::Signal || node.kind == NodeKind::Constant;
}

bool IsSwitch(const Node &node)
{
    return node.kind == NodeKind::Switch || node.kind == NodeKind::Contact;
}

} // namespace

Agreement::Agreement(ParameterTable &table)
    : table_(table)
    , drive_(table)
{
    const Circuit &circuit = drive_.Get();
    for (int node = 0; node < circuit.NodeCount(); ++node) {
        Box box{.node = node, .cone = {}};
        Collect(node, box.cone);
        if (circuit.NodeAt(node).kind == NodeKind::Value && !box.cone.empty())
            boxes_.push_back(std::move(box));
    }
}

void Agreement::Collect(int node, std::vector<int> &cone) const
{
    const Circuit &circuit = drive_.Get();
    for (const int edge : circuit.Inputs(node)) {
        const int before = circuit.From(edge);
        if (before < 0 || std::ranges::find(cone, before) != cone.end())
            continue;
        cone.push_back(before);
        if (!IsSource(circuit.NodeAt(before)))
            Collect(before, cone);
    }
}

Agreement::Known Agreement::KnownOf(int index) const
{
    const Circuit &circuit = drive_.Get();
    const Node &node = circuit.NodeAt(index);
    if (node.kind == NodeKind::Constant)
        return Known::AsConstant;
    if (IsSource(node))
        return node.kind == NodeKind::Value || node.param >= 0 ? Known::AsValue : Known::Never;
    if (node.kind == NodeKind::Memory || node.kind == NodeKind::Terminal || node.kind == NodeKind::Group ||
        (node.kind == NodeKind::Formula && !node.formula))
        return Known::Never;
    Known least = Known::AsValue;
    Known most = Known::Never;
    for (const int edge : circuit.Inputs(index)) {
        const int from = circuit.From(edge);
        const Known one = from < 0 ? Known::Never : KnownOf(from);
        least = std::min(least, one);
        most = std::max(most, one);
    }
    if (circuit.Into(index).empty())
        return Known::AsValue; // a formula of parameters alone
    return least == Known::Never && !IsSwitch(node) ? Known::Never : most;
}

double Agreement::Blur(const Box &box) const
{
    const Circuit &circuit = drive_.Get();
    const BlockNet &block = circuit.Block(circuit.BlockOfNode(box.node));
    NetValues values(*block.net);
    const auto enteringAt = [&](int blurred, double counts) {
        values.Follow([&](int p, double perCount) {
            std::optional<double> value = NetValues::ReaderOf(table_)(p, perCount);
            if (value && p == blurred)
                *value += counts * (perCount != 0 ? perCount : ShownNumber(1, table_[p].Attributes));
            return value;
        });
        return values.Entering(circuit.LocalNode(box.node)).value_or(0);
    };
    double blur = 0;
    for (const int node : box.cone)
        if (const int p = circuit.NodeAt(node).param; p > 0 && !IsEnumerated(TypeCode(table_[p].Attributes)))
            blur += std::abs(enteringAt(p, 0.5) - enteringAt(p, -0.5)) / 2;
    return blur;
}

bool Agreement::Agrees(const Box &box) const
{
    const Node &node = drive_.Get().NodeAt(box.node);
    const ParamRecord &record = table_[node.param];
    const double count = node.perCount != 0 ? node.perCount : ShownNumber(1, record.Attributes);
    const double asked = *drive_.Get().Entering(box.node) / count;
    const double held = std::clamp(asked, double(record.Min), double(std::max(record.Min, record.Max)));
    constexpr double tiny = 1e-6;
    const double off = std::min(std::abs(record.Value - asked), std::abs(record.Value - held)) - tiny;
    // A place is lost only where there is something to round or to cut; logic must be right.
    const double lost = std::abs(asked - std::nearbyint(asked)) < tiny ? 0 : 1;
    return off <= lost || off <= lost + Blur(box) / count;
}

std::string Agreement::Name(int node) const
{
    const Circuit &circuit = drive_.Get();
    const Node &found = circuit.NodeAt(node);
    return (circuit.Block(circuit.BlockOfNode(node)).window + QStringLiteral(": ") +
            (found.param >= 0 ? table_.FullName(found.param) : found.text) +
            QStringLiteral(" #%1").arg(circuit.LocalNode(node)))
        .toStdString();
}

void Agreement::Compare(const std::string &state, const std::function<bool(int p)> &isComputed,
                        const std::function<bool(int p)> &excused)
{
    Circuit &circuit = drive_.Get();
    circuit.Follow();
    for (Box &box : boxes_) {
        const Node &node = circuit.NodeAt(box.node);
        const std::optional<double> entering = circuit.Entering(box.node);
        if (node.param <= 0 || !entering || !isComputed(node.param))
            continue;
        if (!Agrees(box)) {
            if (!excused(node.param) && told_.insert(Name(box.node)).second)
                ADD_FAILURE() << Name(box.node) << " shows " << table_.Value(node.param) << " where "
                              << *entering << " enters, in " << state;
            continue;
        }
        box.wasNonZero = box.wasNonZero || table_.Value(node.param) != 0;
        for (const int element : box.cone)
            if (IsSwitch(circuit.NodeAt(element)))
                touched_[element].insert(circuit.NodeAt(element).state);
    }
}

std::set<std::string> Agreement::Missing(const std::function<bool(int p)> &isComputed) const
{
    const Circuit &circuit = drive_.Get();
    std::set<std::string> missing;
    for (const Box &box : boxes_) {
        const Known known = KnownOf(circuit.From(circuit.Inputs(box.node).front()));
        if (known == Known::Never || !isComputed(circuit.NodeAt(box.node).param))
            continue;
        if (known == Known::AsValue && !box.wasNonZero)
            missing.insert(Name(box.node));
        for (const int element : box.cone) {
            if (!IsSwitch(circuit.NodeAt(element)))
                continue;
            const auto touched = touched_.find(element);
            for (const int edge : circuit.Inputs(element)) {
                if (KnownOf(circuit.From(edge)) == Known::Never)
                    continue;
                const bool isContact = circuit.NodeAt(element).kind == NodeKind::Contact;
                const int position = isContact ? 1 : circuit.EdgeAt(edge).to.contact;
                if (touched == touched_.end() || !touched->second.contains(position))
                    missing.insert(Name(box.node) + " with " + Name(element) + " at " +
                                   std::to_string(position));
            }
        }
    }
    return missing;
}

} // namespace quorvik::testing
