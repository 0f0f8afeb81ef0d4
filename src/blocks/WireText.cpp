#include "blocks/WireText.h"

#include "blocks/BlockSheet.h"
#include "desktop/Desk.h"
#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/FullNames.h"
#include "model/ShownText.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr QLatin1String Gap("  ");
/** Elements on the way to a unit; a loop without a box would have no end. */
constexpr int FarthestUnit = 40;

/** Whether the drive may have another value by now. */
bool IsStale(ValueState state)
{
    return state == ValueState::Old || state == ValueState::Never || state == ValueState::Lost;
}

} // namespace

WireText::WiresInto WireText::FindWires(const Net &net)
{
    WiresInto into(net.nodes.size());
    for (std::size_t i = 0; i < net.edges.size(); ++i) {
        const Edge &edge = net.edges[i];
        if (edge.to.node >= 0 && (edge.kind == Edge::Kind::Signal || edge.kind == Edge::Kind::Member))
            into[std::size_t(edge.to.node)].push_back(int(i));
    }
    return into;
}

std::vector<int> WireText::SourcesOf(const Net &net, const WiresInto &into, int node)
{
    std::vector<int> sources;
    std::vector<int> open{node};
    std::vector<bool> seen(net.nodes.size());
    while (!open.empty()) {
        const int next = open.back();
        open.pop_back();
        if (next < 0 || seen[std::size_t(next)])
            continue;
        seen[std::size_t(next)] = true;
        if (const int p = net.nodes[std::size_t(next)].param; p > 0) {
            sources.push_back(p);
            continue;
        }
        for (const int edge : into[std::size_t(next)])
            if (net.Passes(net.edges[std::size_t(edge)]))
                open.push_back(net.edges[std::size_t(edge)].from.node);
        // Which contact is touched hangs on a value, too.
        for (const Edge &edge : net.edges)
            if (edge.kind == Edge::Kind::Control && edge.to.node == next)
                open.push_back(edge.from.node);
    }
    return sources;
}

std::vector<int> WireText::StaleSourcesOf(const Desk &desk, const Net &net, const WiresInto &into, int node)
{
    std::vector<int> stale = SourcesOf(net, into, node);
    std::erase_if(stale,
                  [&desk](int p) { return p > desk.table.UpperBound() || !IsStale(desk.states.Of(p)); });
    std::ranges::sort(stale);
    stale.erase(std::unique(stale.begin(), stale.end()), stale.end());
    return stale;
}

bool WireText::IsParameter(int node) const
{
    const Node &found = NodeAt(node);
    return (found.kind == NodeKind::Value || found.kind == NodeKind::Signal) && found.param > 0 &&
           found.param <= desk_.table.UpperBound();
}

int WireText::MakerOf(int node) const
{
    for (std::size_t steps = 0; steps < net_.nodes.size(); ++steps) {
        const Node &found = NodeAt(node);
        const bool isPassage = found.kind == NodeKind::Joint ||
                               (found.kind == NodeKind::Switch && found.state >= 0) ||
                               (found.kind == NodeKind::Contact && found.state == 1);
        if (!isPassage)
            break;
        const std::vector<int> &into = WiresTo(node);
        const auto given = std::ranges::find_if(into, [this](int edge) { return net_.Passes(EdgeAt(edge)); });
        if (given == into.end() || EdgeAt(*given).from.node < 0)
            break;
        node = EdgeAt(*given).from.node;
    }
    return node;
}

int WireText::BoxBehind(int node) const
{
    std::vector<int> open{node};
    for (std::size_t i = 0; i < open.size() && i < net_.nodes.size(); ++i) {
        if (open[i] < 0)
            continue;
        if (NodeAt(open[i]).kind == NodeKind::Value)
            return open[i];
        if (NodeAt(open[i]).kind == NodeKind::Joint)
            for (const Edge &edge : net_.edges)
                if (edge.from.node == open[i] && edge.kind == Edge::Kind::Signal)
                    open.push_back(edge.to.node);
    }
    return -1;
}

WireText::Unit WireText::UnitOfBox(const Node &node) const
{
    if (node.perCount == 1)
        return {};
    if (node.perCount != 0)
        return {Unit::Kind::Like, Param::Reference0};
    return {Unit::Kind::Like, node.param};
}

std::optional<WireText::Unit> WireText::OwnUnit(int node) const
{
    const Node &found = NodeAt(node);
    switch (found.kind) {
    case NodeKind::Value:
    case NodeKind::Signal:
        return IsParameter(node) ? UnitOfBox(found) : Unit{};
    case NodeKind::Not:
    case NodeKind::And:
    case NodeKind::Nand:
    case NodeKind::Or:
        return Unit{Unit::Kind::Logic};
    case NodeKind::Joint:
    case NodeKind::Sum:
    case NodeKind::Gain:
    case NodeKind::Absolute:
    case NodeKind::Limiter:
    case NodeKind::Switch:
    case NodeKind::Contact:
        return std::nullopt;
    default:
        return Unit{};
    }
}

WireText::Unit WireText::UnitBehind(int node, int depth) const
{
    if (node < 0 || depth > FarthestUnit)
        return {};
    if (const std::optional<Unit> own = OwnUnit(node))
        return *own;
    for (const Edge &edge : net_.edges)
        if (edge.from.node == node && edge.kind == Edge::Kind::Signal)
            if (const Unit unit = UnitBehind(edge.to.node, depth + 1); unit.kind != Unit::Kind::None)
                return unit;
    return {};
}

WireText::Unit WireText::UnitBefore(int node, int depth) const
{
    if (node < 0 || depth > FarthestUnit)
        return {};
    const Node &found = NodeAt(node);
    if (found.kind == NodeKind::Comparator)
        return {Unit::Kind::Logic};
    if (found.kind == NodeKind::Constant) {
        if (found.text.endsWith(u'%'))
            return {Unit::Kind::Like, Param::Reference0};
        return {found.text == QStringLiteral("False") ? Unit::Kind::Logic : Unit::Kind::None};
    }
    if (const std::optional<Unit> own = OwnUnit(node))
        return *own;
    for (const int edge : WiresTo(node))
        if (const Unit unit = UnitBefore(EdgeAt(edge).from.node, depth + 1); unit.kind != Unit::Kind::None)
            return unit;
    return {};
}

WireText::Unit WireText::UnitOf(int edge) const
{
    const Unit behind = UnitBehind(EdgeAt(edge).to.node, 0);
    return behind.kind != Unit::Kind::None ? behind : UnitBefore(EdgeAt(edge).from.node, 0);
}

QString WireText::Number(double value, const Unit &unit) const
{
    if (unit.kind == Unit::Kind::Logic)
        return value != 0 ? QStringLiteral("True") : QStringLiteral("False");
    if (unit.kind == Unit::Kind::None)
        return QString::number(value);
    const std::int32_t attributes = desk_.table[unit.param].Attributes;
    const std::optional<std::int32_t> raw = RawOfShown(value, attributes);
    return raw ? ShownText(*raw, attributes) : QString::number(value);
}

QString WireText::OfParameter(const Desk &desk, int p)
{
    const ParamRecord &record = desk.table[p];
    QStringList parts{desk.table.FullName(p), ShownText(record.Value, record.Attributes)};
    if (const QString state = desk.states.Describe(p); !state.isEmpty())
        parts.append(state);
    return parts.join(Gap);
}

QString WireText::NameOf(int node) const
{
    if (!NodeAt(node).text.isEmpty())
        return NodeAt(node).text;
    const auto at = std::ranges::find(drawing_.Elements(), node, &Element::node);
    switch (at == drawing_.Elements().end() ? Symbol::Wire : at->symbol) {
    case Symbol::Latch:
        return QStringLiteral("the latch");
    case Symbol::Ramp:
        return QStringLiteral("the ramp");
    case Symbol::Hysteresis:
        return QStringLiteral("the hysteresis");
    default:
        return QStringLiteral("the element before it");
    }
}

QString WireText::WhyUnknown(int node) const
{
    std::vector<bool> seen(net_.nodes.size());
    while (node >= 0 && !seen[std::size_t(node)]) {
        seen[std::size_t(node)] = true;
        const Node &found = NodeAt(node);
        const std::vector<int> &into = WiresTo(node);
        switch (found.kind) {
        case NodeKind::Memory:
            return into.empty() ? QStringLiteral("%1 is known to the drive only").arg(NameOf(node))
                                : QStringLiteral("%1 has memory").arg(NameOf(node));
        case NodeKind::Terminal:
            return QStringLiteral("it comes from the terminals");
        case NodeKind::Switch:
            if (found.state < 0)
                return QStringLiteral("the switch touches no contact");
            break;
        case NodeKind::Value:
        case NodeKind::Signal:
            return QStringLiteral("no parameter tells it");
        default:
            break;
        }
        const auto unknown = std::ranges::find_if(
            into, [this](int edge) { return net_.Passes(EdgeAt(edge)) && !values_.OnEdge(edge); });
        if (unknown == into.end())
            return QStringLiteral("%1 is known to the drive only").arg(NameOf(node));
        node = EdgeAt(*unknown).from.node;
    }
    return QStringLiteral("it comes from outside");
}

QString WireText::OfGroup(int node) const
{
    QStringList lines{NodeAt(node).text};
    for (const int edge : WiresTo(node))
        if (const int member = EdgeAt(edge).from.node; member >= 0 && IsParameter(member))
            lines.append(OfParameter(desk_, NodeAt(member).param));
    return lines.join(u'\n');
}

QString WireText::OfDriveState() const
{
    const std::int32_t rawState = desk_.table.Value(Param::DriveState);
    QString state = QString::number(rawState);
    try {
        state = DriveStateText(rawState);
    } catch (const RuntimeFailure &) {
        // A state that has no name.
    }
    return desk_.table.FullName(Param::DriveState) + QStringLiteral(": ") + state;
}

QString WireText::Reservation(int node) const
{
    constexpr int mostNames = 2;
    const std::vector<int> stale = StaleSourcesOf(desk_, net_, into_, node);
    return stale.empty() ? QString()
                         : QStringLiteral(", from values that are not of now: ") +
                               FullNames(desk_.table, stale, mostNames, QStringLiteral(", "));
}

int WireText::ParameterOf(int edge) const
{
    const int from = EdgeAt(edge).from.node;
    const int maker = from < 0 ? -1 : MakerOf(from);
    if (maker >= 0 && IsParameter(maker))
        return NodeAt(maker).param;
    const int box = BoxBehind(EdgeAt(edge).to.node);
    const bool isGroup = maker >= 0 && NodeAt(maker).kind == NodeKind::Group;
    return !isGroup && box >= 0 && IsParameter(box) ? NodeAt(box).param : -1;
}

QString WireText::OfEdge(int edge) const
{
    const int from = EdgeAt(edge).from.node;
    const int box = BoxBehind(EdgeAt(edge).to.node);
    const bool leadsToBox = box >= 0 && IsParameter(box);
    const int maker = from < 0 ? -1 : MakerOf(from);
    if (maker >= 0 && IsParameter(maker)) {
        const Node &source = NodeAt(maker);
        QString text = OfParameter(desk_, source.param);
        if (source.perCount != 0 && source.perCount != 1 && values_.Result(maker))
            text += Gap + QStringLiteral("passed on as ") +
                    Number(*values_.Result(maker), {Unit::Kind::Like, Param::Reference0});
        return text;
    }
    if (maker >= 0 && NodeAt(maker).kind == NodeKind::Group)
        return OfGroup(maker);
    if (const std::optional<double> value = values_.OnEdge(edge)) {
        const QString number = Number(*value, UnitOf(edge));
        const Node &made = NodeAt(maker);
        if (made.kind == NodeKind::Constant)
            return number + Gap + QStringLiteral("always");
        if (made.kind == NodeKind::Formula && made.param > 0)
            return made.text + Gap + number + Gap + QStringLiteral("by ") + OfDriveState() +
                   Reservation(from);
        return number + Gap + QStringLiteral("computed") + Reservation(from);
    }
    // What only the drive can work out, it tells in the box behind.
    if (leadsToBox)
        return OfParameter(desk_, NodeAt(box).param);
    return QStringLiteral("not known: ") + WhyUnknown(from);
}

} // namespace quorvik
