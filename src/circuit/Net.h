#pragma once

#include <QList>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** The side of an element on which a wire ends. */
enum class Side : std::uint8_t { Left, Top, Right, Bottom, Any };

/** What an element of a block diagram does with what enters it. */
enum class NodeKind : std::uint8_t {
    Value,      ///< a parameter's box: shows what enters it, and gives what the parameter has
    Signal,     ///< a signal by its name only, of a parameter where it has one
    Constant,   ///< a number that stands in the drawing
    Joint,      ///< where wires meet
    Terminal,   ///< a screw of the terminal strip, or the circuit behind it
    Sum,        ///< inputs added with their signs
    Product,    ///< a percentage counts as a fraction in it
    Gain,       ///< a number times a factor
    Not,        ///< a logic value turned over
    And,        ///< true where all inputs are
    Nand,       ///< true unless all inputs are
    Or,         ///< true where one input is
    Absolute,   ///< the size of a number
    Limiter,    ///< held between its inputs at the bottom and at the top
    Comparator, ///< whether the relation between first input and level holds
    Switch,     ///< gives the input of the contact that it touches
    Contact,    ///< gives its input where it is closed, and nothing, zero, where it is open
    Formula,    ///< its result follows from its inputs by a rule of its own
    Memory,     ///< its result hangs on what was before: PI, ramp, filter, latch, timer, delay
    Group,      ///< values that belong together, such as a set of gains
};

class NetInputs;
/** The result of an element, or nothing where an input that it needs is not known. */
using NetFormula = std::function<std::optional<double>(const NetInputs &inputs)>;

struct Node {
    NodeKind kind = NodeKind::Joint;
    QString text = {};   ///< its caption; signs of a sum: one for left, top, right and bottom, blank for
                         ///< none; relation of a comparator
    int param = -1;      ///< of values and signals, and what a named formula rests on; -1 none
    double number = 0;   ///< of constants; factor of gains
    double perCount = 0; ///< of values: what a raw count stands for on its wires, 0 for what the box shows
    std::optional<double> lowest = {};  ///< of limiters at which no wire brings it
    std::optional<double> highest = {}; ///< the same
    int state = 0;                      ///< switches: the contact touched, -1 none; contacts: 1 closed
    NetFormula formula = {};            ///< of formulas
};

/** The end of a wire at an element. */
struct Pin {
    int node = -1; ///< index of the element, -1 where the wire leaves the drawing
    Side side = Side::Any;
    double along = 0; ///< place on that side; only the order counts
    int contact = -1; ///< of a switch or a contact: from 0 on, -1 its pivot
};

/** A wire, in the direction of its signal. */
struct Edge {
    enum class Kind : std::uint8_t {
        Signal,
        Control, ///< what moves a switch
        Member,  ///< from a value to the group that it belongs to
        Choice,  ///< from one selector to another: what they point at is joined, not they themselves
    };
    Pin from = {};
    Pin to = {};
    Kind kind = Kind::Signal;
};

/** The signal paths of one drawing, without any place on it. */
struct Net {
    std::vector<Node> nodes;
    std::vector<Edge> edges;

    int Add(Node node);
    /** Adds a wire. @return its index. */
    int Connect(const Pin &from, const Pin &to, Edge::Kind kind = Edge::Kind::Signal);
    /** Whether a wire passes its signal now: no switch at an end of it touches another contact. */
    bool Passes(const Edge &edge) const;
};

/** Whether a relation such as ">" holds between a value and its level; nothing for an unknown one. */
std::optional<bool> Holds(const QString &relation, double value, double level);

/** What enters an element. */
class NetInputs
{
public:
    /** Tells the value of a parameter; counts are worth perCount, or what its box shows where that is 0. */
    using Reader = std::function<std::optional<double>(int p, double perCount)>;

    NetInputs(const Net &net, const std::vector<std::optional<double>> &results, std::span<const int> edges,
              const Reader &read)
        : net_(net)
        , results_(results)
        , edges_(edges)
        , read_(read)
    {
    }

    int Count() const { return int(edges_.size()); }
    /** What the input of that index brings, in their order: left side from above down, top, right, bottom. */
    std::optional<double> At(int index) const;
    const Pin &PinAt(int index) const { return net_.edges[std::size_t(edges_[std::size_t(index)])].to; }
    /** What enters at a side, the index-th there from the left or from above. */
    std::optional<double> On(Side side, int index = 0) const;
    int CountOn(Side side) const;
    /** What the contact of a switch is given. */
    std::optional<double> OnContact(int contact) const;
    /** A parameter's value, as NetValues reads it. */
    std::optional<double> Parameter(int p) const { return read_(p, 0); }

private:
    const Net &net_;
    const std::vector<std::optional<double>> &results_;
    std::span<const int> edges_;
    const Reader &read_;
};

/**
 * The values on the wires of a net, in the units that the boxes show: 72.88 for "72.88 %", 1 for "True".
 * Computes each element once, in an order found at construction; the net must outlive it and keep its wires.
 */
class NetValues
{
public:
    explicit NetValues(const Net &net);

    /** Computes all results anew from the values of the parameters. */
    void Follow(const ParameterTable &table) { Follow(ReaderOf(table)); }
    void Follow(const NetInputs::Reader &read);

    /** What leaves an element: of a value box what its parameter has; nothing where it is not known. */
    std::optional<double> Result(int node) const { return results_[std::size_t(node)]; }
    /** What is on a wire. */
    std::optional<double> OnEdge(int edge) const;
    /** What enters a value box: what it ought to show. */
    std::optional<double> Entering(int node) const;
    /** What enters an element, as of the last Follow(); of parameters it tells nothing. */
    NetInputs InputsOf(int node) const;
    /** Wires that end at a node, in the order of NetInputs. */
    std::span<const int> Into(int node) const { return into_[std::size_t(node)]; }

    /** Reads the values of a table; nothing for a number outside it. */
    static NetInputs::Reader ReaderOf(const ParameterTable &table);

private:
    std::optional<double> Compute(int node, const NetInputs::Reader &read) const;

    const Net &net_;
    std::vector<std::vector<int>> into_; ///< signal wires only
    std::vector<int> order_;
    std::vector<std::optional<double>> results_;
};

} // namespace quorvik
