#include "blocks/DriveCircuit.h"
#include "support/TestDesk.h"

#include "model/Conversions.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace quorvik::testing
{

namespace
{

enum class Carried { Unknown, Number, Logic };

Carried TakenBy(Symbol symbol)
{
    static const std::set logic = {Symbol::Inverter, Symbol::And, Symbol::Nand, Symbol::Or, Symbol::Latch};
    static const std::set numbers = {Symbol::Sum,        Symbol::Multiplier, Symbol::Gain,  Symbol::Absolute,
                                     Symbol::Limiter,    Symbol::DeadBand,   Symbol::Scale, Symbol::Filter,
                                     Symbol::Comparator, Symbol::Hysteresis};
    return logic.contains(symbol)     ? Carried::Logic
           : numbers.contains(symbol) ? Carried::Number
                                      : Carried::Unknown;
}

Carried Given(Symbol symbol)
{
    if (symbol == Symbol::Comparator || symbol == Symbol::Hysteresis)
        return Carried::Logic;
    return symbol == Symbol::Pi || symbol == Symbol::Ramp ? Carried::Number : TakenBy(symbol);
}

class Vocabulary
{
public:
    Vocabulary(const BlockSheet &sheet, const ParameterTable &table)
        : net_(sheet.drawing.TheNet())
        , table_(table)
    {
        for (const Element &element : sheet.drawing.Elements())
            symbols_.emplace(element.node, element.symbol);
    }

    /** The wires on which an element gets or gives what it is not for. */
    std::vector<const Edge *> Misused() const
    {
        std::vector<const Edge *> misused;
        for (const Edge &edge : net_.edges) {
            if (edge.kind != Edge::Kind::Signal || edge.from.node < 0 || edge.to.node < 0)
                continue;
            const auto symbol = symbols_.find(edge.to.node);
            const bool isBox = symbol == symbols_.end();
            const Carried wanted = isBox                        ? OfBox(edge.to.node)
                                   : edge.to.side == Side::Left ? TakenBy(symbol->second)
                                                                : Carried::Unknown;
            const Carried given = GivenBy(edge.from.node);
            if (wanted != Carried::Unknown && given != Carried::Unknown && wanted != given)
                misused.push_back(&edge);
        }
        return misused;
    }

private:
    Carried OfBox(int index) const
    {
        const Node &node = net_.nodes[std::size_t(index)];
        if (node.kind == NodeKind::Constant)
            return node.text == QStringLiteral("False") ? Carried::Logic : Carried::Number;
        // A box that a selector fills shows anything.
        if (node.param <= 0 || node.perCount != 0 ||
            (node.kind != NodeKind::Value && node.kind != NodeKind::Signal))
            return Carried::Unknown;
        const ParamRecord &record = table_[node.param];
        if (IsEnumerated(TypeCode(record.Attributes)))
            return Carried::Logic;
        return DecimalsOf(record.Attributes) > 0 ? Carried::Number : Carried::Unknown;
    }
    Carried GivenBy(int index) const
    {
        if (const auto symbol = symbols_.find(index); symbol != symbols_.end())
            if (const Carried given = Given(symbol->second); given != Carried::Unknown)
                return given;
        const NodeKind kind = net_.nodes[std::size_t(index)].kind;
        if (kind != NodeKind::Joint && kind != NodeKind::Switch && kind != NodeKind::Contact)
            return OfBox(index);
        for (const Edge &edge : net_.edges)
            if (edge.to.node == index && edge.from.node >= 0 && edge.kind == Edge::Kind::Signal)
                if (const Carried given = GivenBy(edge.from.node); given != Carried::Unknown)
                    return given;
        return Carried::Unknown;
    }

    const Net &net_;
    const ParameterTable &table_;
    std::map<int, Symbol> symbols_; ///< by node
};

TEST(VocabularyTest, EachSymbolIsUsedForWhatItStandsFor)
{
    TestDesk desk;
    const DriveCircuit drive(desk.table);
    for (int block = 0; block < drive.Get().BlockCount(); ++block) {
        const BlockNet &net = drive.Get().Block(block);
        for (const Edge *edge : Vocabulary(drive.Sheet(block), desk.table).Misused())
            ADD_FAILURE() << qPrintable(net.window) << ": the wire from " << edge->from.node << " ("
                          << net.net->nodes[std::size_t(edge->from.node)].param << ") to " << edge->to.node;
    }
}

} // namespace

} // namespace quorvik::testing
