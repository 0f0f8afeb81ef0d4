#include "blocks/DriveCircuit.h"
#include "support/TestDesk.h"

#include "model/Conversions.h"

#include <gtest/gtest.h>
#include <map>

namespace quorvik::testing
{

namespace
{

enum class Carried { Unknown, Number, Logic };

/** What the symbols take at their left and give at their right. */
struct Word {
    Carried takes;
    Carried gives;
};
const std::map<Symbol, Word> Words = {
    {Symbol::Sum, {Carried::Number, Carried::Number}},
    {Symbol::Multiplier, {Carried::Number, Carried::Number}},
    {Symbol::Gain, {Carried::Number, Carried::Number}},
    {Symbol::Absolute, {Carried::Number, Carried::Number}},
    {Symbol::Limiter, {Carried::Number, Carried::Number}},
    {Symbol::DeadBand, {Carried::Number, Carried::Number}},
    {Symbol::Ramp, {Carried::Unknown, Carried::Number}},
    {Symbol::Scale, {Carried::Number, Carried::Number}},
    {Symbol::Filter, {Carried::Number, Carried::Number}},
    {Symbol::Pi, {Carried::Unknown, Carried::Number}},
    {Symbol::Comparator, {Carried::Number, Carried::Logic}},
    {Symbol::Hysteresis, {Carried::Number, Carried::Logic}},
    {Symbol::Inverter, {Carried::Logic, Carried::Logic}},
    {Symbol::And, {Carried::Logic, Carried::Logic}},
    {Symbol::Nand, {Carried::Logic, Carried::Logic}},
    {Symbol::Or, {Carried::Logic, Carried::Logic}},
    {Symbol::Latch, {Carried::Logic, Carried::Logic}},
};

class Vocabulary
{
public:
    Vocabulary(const BlockSheet &sheet, const ParameterTable &table)
        : net_(sheet.drawing.TheNet())
        , table_(table)
    {
        for (const Element &element : sheet.drawing.Elements())
            if (const auto word = Words.find(element.symbol); word != Words.end() && element.node >= 0)
                words_[element.node] = word->second;
    }

    /** The wires on which an element gets or gives what it is not for. */
    std::vector<const Edge *> Misused() const
    {
        std::vector<const Edge *> misused;
        for (const Edge &edge : net_.edges) {
            if (edge.kind != Edge::Kind::Signal || edge.from.node < 0 || edge.to.node < 0)
                continue;
            const auto word = words_.find(edge.to.node);
            const Carried wanted = word == words_.end()         ? OfBox(edge.to.node)
                                   : edge.to.side == Side::Left ? word->second.takes
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
        if (const auto word = words_.find(index); word != words_.end())
            return word->second.gives;
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
    std::map<int, Word> words_;
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
        for (const Element &element : drive.Sheet(block).drawing.Elements())
            EXPECT_TRUE(element.symbol == Symbol::Absolute || element.node < 0 ||
                        net.net->nodes[std::size_t(element.node)].text != QStringLiteral("ABS"))
                << qPrintable(net.window);
    }
}

} // namespace

} // namespace quorvik::testing
