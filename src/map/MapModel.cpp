#include "map/MapModel.h"

#include "blocks/BlockCatalogue.h"
#include "link/ValueStates.h"
#include "map/MapNodes.h"
#include "model/Faults.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <QHash>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int InternalLinkCount = 20;

struct WindowPlace {
    int card = -1;
    int row = -1; ///< of a family
};

/** The cards by the captions of their windows. */
const QHash<QString, WindowPlace> &Windows()
{
    static const QHash<QString, WindowPlace> windows = [] {
        QHash<QString, WindowPlace> found;
        for (int card = 0; card < MapModel::CardCount(); ++card)
            for (const BlockMenuEntry &block : BlockCatalogue()) {
                if (qstrcmp(block.form, MapCards()[std::size_t(card)].form) != 0 || !block.sheet)
                    continue;
                for (int member = block.firstMember; member <= block.lastMember; ++member)
                    found[block.WindowCaption(member)] = {card,
                                                          block.IsFamily() ? member - block.firstMember : -1};
            }
        return found;
    }();
    return windows;
}

/** A row that stands for what its selector points at. */
bool IsSelecting(const CardRow &row)
{
    return row.selector >= 0;
}

} // namespace

MapModel::MapModel(const ParameterTable &table, const ValueStates &states)
    : table_(table)
    , states_(states)
    , rows_(MapCards().size())
{
}

int MapModel::FindCard(const QString &title)
{
    const auto at = std::ranges::find(MapCards(), title,
                                      [](const MapCard &card) { return QString::fromLatin1(card.title); });
    return at == MapCards().end() ? -1 : int(at - MapCards().begin());
}

int MapModel::CardOfWindow(const QString &window, int *row)
{
    const WindowPlace place = Windows().value(window);
    if (row)
        *row = place.row;
    return place.card;
}

int MapModel::RowShowing(int card, int p) const
{
    const auto &rows = MapCards()[std::size_t(card)].rows;
    const auto at = std::ranges::find_if(
        rows, [p](const CardRow &row) { return row.param == p && row.kind != CardRowKind::Clock; });
    return at == rows.end() ? -1 : int(at - rows.begin());
}

int MapModel::CardOf(const Circuit &circuit, int p, int *row) const
{
    int shown = -1;
    int card = -1;
    for (int i = 0; p > 0 && card < 0 && i < CardCount(); ++i)
        if (shown = RowShowing(i, p); shown >= 0 && !MapCards()[std::size_t(i)].isMirror)
            card = i;
    if (card < 0)
        shown = -1;
    for (const bool wantsMade : {true, false})
        for (const int node : circuit.NodesOf(p))
            if (card < 0 && circuit.NodeAt(node).kind == NodeKind::Value && !IsEndOfLink(circuit, node) &&
                (!wantsMade || IsMade(circuit, node)))
                card = CardOfNode(circuit, node, &shown);
    if (row)
        *row = shown;
    return card;
}

bool MapModel::Follow(const Circuit &circuit)
{
    FollowRows();
    marks_ = FindMarks(circuit, table_);
    const std::vector<MapWire> before = std::exchange(wires_, {});
    FollowWires(circuit);
    return wires_ != before;
}

MapRow MapModel::RowOf(const CardRow &row) const
{
    MapRow shown;
    shown.caption = QString::fromLatin1(row.caption);
    shown.param = row.param;
    if (IsSelecting(row)) {
        const int selected = table_.Value(row.selector);
        const bool isLinked = selected > 0 && selected <= table_.UpperBound();
        const QString name = isLinked ? table_[selected].Name : QStringLiteral("not linked");
        shown.caption += (shown.caption.isEmpty() ? QString() : QStringLiteral(" ")) + name;
        if (row.param < 0)
            shown.param = isLinked ? selected : -1;
    }
    if (shown.param < 0)
        return shown;
    const std::int32_t rawValue = table_.Value(shown.param);
    shown.state = states_.Of(shown.param);
    switch (row.kind) {
    case CardRowKind::Faults:
        shown.value = FaultsInShort(rawValue);
        if (shown.value.isEmpty())
            shown.value = QStringLiteral("none");
        break;
    case CardRowKind::OnOff:
        shown.value = rawValue != 0 ? QStringLiteral("On") : QStringLiteral("Off");
        break;
    case CardRowKind::Links: {
        int used = 0;
        for (int i = 0; i < InternalLinkCount; ++i)
            used += table_.Value(row.param + 2 * i) > 0 && table_.Value(row.param + 2 * i + 1) > 0 ? 1 : 0;
        shown.value = QStringLiteral("%1 of %2").arg(used).arg(InternalLinkCount);
        break;
    }
    case CardRowKind::Clock:
        shown.value = QStringLiteral("%1:%2")
                          .arg(table_.Value(row.param + 1), 2, 10, QChar(u'0'))
                          .arg(rawValue, 2, 10, QChar(u'0'));
        break;
    default:
        shown.value = ShownText(rawValue, table_[shown.param].Attributes);
    }
    return shown;
}

void MapModel::FollowRows()
{
    for (std::size_t card = 0; card < rows_.size(); ++card) {
        rows_[card].clear();
        for (const CardRow &row : MapCards()[card].rows)
            rows_[card].push_back(RowOf(row));
    }
}

void MapModel::FollowWires(const Circuit &circuit)
{
    AddMachineWires();
    AddDrawnWires(circuit);
    AddLinks(circuit);
}

MapWire *MapModel::AddWire(int from, int to, bool isLink)
{
    if (from < 0 || to < 0 || from == to)
        return nullptr;
    const auto same = std::ranges::find_if(wires_, [&](const MapWire &wire) {
        return wire.from == from && wire.to == to && wire.isLink == isLink;
    });
    if (same != wires_.end())
        return &*same;
    MapWire &wire = wires_.emplace_back();
    wire.from = from;
    wire.to = to;
    wire.isLink = isLink;
    return &wire;
}

void MapModel::AddSignal(MapWire *wire, int p, const QString &words, int intoNode) const
{
    if (!wire)
        return;
    wire->params.push_back(p);
    if (!wire->words.contains(words))
        wire->words.append(words);
    if (intoNode >= 0)
        wire->intoNodes.push_back(intoNode);
    const auto meet = [](int &row, int found) { row = row < 0 ? found : row; };
    meet(wire->fromRow, RowShowing(wire->from, p));
    meet(wire->toRow, RowShowing(wire->to, p));
}

void MapModel::AddMachineWires()
{
    for (const MachineWire &machine : MachineWires())
        AddSignal(AddWire(FindCard(QString::fromLatin1(machine.from)),
                          FindCard(QString::fromLatin1(machine.to)), false),
                  machine.param, QString::fromLatin1(machine.words));
}

void MapModel::AddDrawnWires(const Circuit &circuit)
{
    for (int p = 1; p <= table_.UpperBound(); ++p)
        if (circuit.NodesOf(p).size() > 1)
            AddDrawn(circuit, p);
}

void MapModel::AddDrawn(const Circuit &circuit, int p)
{
    const int owner = CardOf(circuit, p);
    for (const int node : circuit.NodesOf(p)) {
        const int card = CardOfNode(circuit, node);
        if (card == owner || IsEndOfLink(circuit, node))
            continue;
        if (IsUsed(circuit, node))
            AddSignal(AddWire(owner, card, false), p, table_.FullName(p), node);
        else if (circuit.NodeAt(node).kind == NodeKind::Signal && IsMade(circuit, node))
            for (const int there : circuit.NodesOf(p))
                if (CardOfNode(circuit, there) == owner)
                    AddSignal(AddWire(card, owner, false), p, table_.FullName(p), there);
    }
}

void MapModel::AddLinks(const Circuit &circuit)
{
    for (const CircuitLink &link : circuit.Links()) {
        int fromRow = -1;
        int toRow = -1;
        int from = -1;
        int to = -1;
        if (link.kind == CircuitLink::Kind::Input)
            from = CardOfWindow(link.name, &fromRow);
        else
            from = CardOf(circuit, link.source, &fromRow);
        if (link.kind == CircuitLink::Kind::Output)
            to = CardOfWindow(link.name, &toRow);
        else
            to = CardOf(circuit, link.destination, &toRow);
        MapWire *wire = AddWire(from, to, true);
        if (!wire)
            continue;
        const int p = link.destination > 0 ? link.destination : link.source;
        QString words = link.name + QStringLiteral(": ") + table_.FullName(p);
        if (link.kind == CircuitLink::Kind::Internal)
            words = QStringLiteral("%1: %2 to %3")
                        .arg(link.name, table_.FullName(link.source), table_.FullName(p));
        wire->fromRow = wire->params.empty() ? fromRow : wire->fromRow;
        wire->toRow = wire->params.empty() ? toRow : wire->toRow;
        AddSignal(wire, p, words);
        for (const int node : circuit.NodesOf(p))
            if (CardOfNode(circuit, node) == to)
                wire->intoNodes.push_back(node);
    }
}

std::set<int> MapModel::Interest() const
{
    std::set<int> wanted;
    for (std::size_t card = 0; card < rows_.size(); ++card)
        for (std::size_t i = 0; i < MapCards()[card].rows.size(); ++i) {
            const CardRow &row = MapCards()[card].rows[i];
            const int shown = i < rows_[card].size() ? rows_[card][i].param : row.param;
            for (const int p : {shown, row.selector})
                if (p > 0)
                    wanted.insert(p);
            if (row.kind == CardRowKind::Clock)
                wanted.insert(row.param + 1);
            for (int link = 0; row.kind == CardRowKind::Links && link < 2 * InternalLinkCount; ++link)
                wanted.insert(row.param + link);
        }
    for (const int p : MarkInterest())
        wanted.insert(p);
    return wanted;
}

QStringList MapModel::MarkWords(int card) const
{
    QStringList words;
    for (const MapMark &mark : marks_)
        if (mark.card == card)
            words.append(mark.words);
    return words;
}

QString MapModel::Words(int card, int row) const
{
    const MapRow &shown = Rows(card)[std::size_t(row)];
    if (shown.param < 0)
        return shown.caption;
    const CardRow &entry = MapCards()[std::size_t(card)].rows[std::size_t(row)];
    QString words = entry.selector >= 0 ? shown.caption : table_.FullName(shown.param);
    words += QStringLiteral(": ") + shown.value;
    const QString state = states_.Describe(shown.param);
    return state.isEmpty() ? words : words + QStringLiteral(", ") + state;
}

QString MapModel::Describe(int card) const
{
    QStringList sentences{QString::fromLatin1(MapCards()[std::size_t(card)].title)};
    for (const MapRow &row : Rows(card))
        sentences.append(row.value.isEmpty() ? row.caption : row.caption + u' ' + row.value);
    for (const bool isInto : {true, false}) {
        QStringList others;
        for (const MapWire &wire : wires_)
            if ((isInto ? wire.to : wire.from) == card)
                others.append(
                    QString::fromLatin1(MapCards()[std::size_t(isInto ? wire.from : wire.to)].title));
        others.removeDuplicates();
        if (!others.isEmpty())
            sentences.append((isInto ? QStringLiteral("from ") : QStringLiteral("to ")) +
                             others.join(QStringLiteral(", ")));
    }
    return (sentences + MarkWords(card)).join(QStringLiteral("; "));
}

} // namespace quorvik
