#pragma once

#include "blocks/diagram/Drawing.h"

namespace quorvik
{

struct Desk;

/**
 * What a wire of a block's net carries, in words: "(102) Current Feedback  12.30 %  read 0.2 s ago" of a
 * parameter's value, "72.88 %  computed" of what its elements make of them, with the names of those that may
 * have changed since, "not known: PI has memory".
 * Wires that carry no value, of sets and selectors, tell what they stand for.
 */
class WireText
{
public:
    /** @param values of the drawing's net, as of now. */
    WireText(const Desk &desk, const Drawing &drawing, const NetValues &values)
        : desk_(desk)
        , drawing_(drawing)
        , net_(drawing.TheNet())
        , values_(values)
        , into_(FindWires(net_))
    {
    }

    QString OfEdge(int edge) const;
    /** The parameter whose value a wire carries, from its box or into it; -1 for none. */
    int ParameterOf(int edge) const;
    static QString OfParameter(const Desk &desk, int p);
    /** By element, the wires that bring it values, alone or as members of a set. */
    using WiresInto = std::vector<std::vector<int>>;
    static WiresInto FindWires(const Net &net);
    /** The parameters whose values an element's result comes from, through the contacts that are touched,
     * and those that move these; each as far as the first box or name on the way. */
    static std::vector<int> SourcesOf(const Net &net, const WiresInto &into, int node);
    /** Those of them, in rising order, that the drive may have other values of by now. */
    static std::vector<int> StaleSourcesOf(const Desk &desk, const Net &net, const WiresInto &into, int node);

private:
    /** What a number on a wire is measured in. */
    struct Unit {
        enum class Kind : std::uint8_t { None, Logic, Like };
        Kind kind = Kind::None;
        int param = -1; ///< whose unit and decimals it has
    };

    const Node &NodeAt(int node) const { return net_.nodes[std::size_t(node)]; }
    const Edge &EdgeAt(int edge) const { return net_.edges[std::size_t(edge)]; }
    const std::vector<int> &WiresTo(int node) const { return into_[std::size_t(node)]; }
    bool IsParameter(int node) const;
    /** The element that makes what comes out of one, past joints and the contacts that are touched. */
    int MakerOf(int node) const;
    /** The box that a wire enters, past joints; -1 for none. */
    int BoxBehind(int node) const;
    Unit UnitOf(int edge) const;
    /** Of an element by itself; nothing where it follows from what is next to it. */
    std::optional<Unit> OwnUnit(int node) const;
    Unit UnitBehind(int node, int depth) const;
    Unit UnitBefore(int node, int depth) const;
    Unit UnitOfBox(const Node &node) const;
    QString Number(double value, const Unit &unit) const;
    QString NameOf(int node) const;
    QString WhyUnknown(int node) const;
    QString OfGroup(int node) const;
    QString OfDriveState() const;
    /** Names the values behind an element that are not of now; empty where all are. */
    QString Reservation(int node) const;

    const Desk &desk_;
    const Drawing &drawing_;
    const Net &net_;
    const NetValues &values_;
    WiresInto into_;
};

} // namespace quorvik
