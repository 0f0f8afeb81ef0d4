#pragma once

#include "circuit/Net.h"

#include <functional>
#include <vector>

namespace quorvik
{

/** The net of one block of the drive. */
struct BlockNet {
    QString window;           ///< caption of the window that shows it
    const Net *net = nullptr; ///< must outlive the circuit
    std::function<void()>
        follow; ///< moves its switches to where the table has them; may raise RuntimeFailure
};

/** What a selector ties together at present. */
struct CircuitLink {
    enum class Kind : std::uint8_t {
        Input,    ///< an input of the drive to the parameter that it drives
        Output,   ///< a parameter to the output that shows it
        Internal, ///< a parameter to a parameter
        Operator, ///< a control of the virtual operator to the parameter that it writes
    };
    Kind kind = Kind::Internal;
    int selector = -1;    ///< the parameter that chooses, -1 for none
    int source = -1;      ///< parameter, -1 where the source is no parameter
    int destination = -1; ///< parameter, -1 where it ends at an output
    QString name = {};    ///< "Internal Link 3", "Digital In 1", "Run of the Virtual Operator"
};

/** Nodes and edges that belong to one path, in rising order; they count through all blocks. */
struct CircuitPath {
    std::vector<int> nodes;
    std::vector<int> edges;

    bool HasNode(int node) const;
    bool HasEdge(int edge) const;
};

/** Whether a path goes through a switch by the contact that it touches only, or by all. */
enum class Through : std::uint8_t { ActiveContacts, AllContacts };

/** A parameter next to another one on its signal's way. */
struct CircuitNeighbour {
    int param = -1;
    int node = -1;         ///< where it stands, in the window in which the two meet; -1 behind a link
    int link = -1;         ///< index of the link between them, -1 for a wire
    bool isActive = false; ///< no open switch lies between them
};

/**
 * The signal paths of the whole drive: the nets of all blocks, joined where they show the same parameter and
 * where a selector links one parameter to another. A node or an edge is named by one number through all
 * blocks. It needs no window.
 */
class Circuit
{
public:
    Circuit(const ParameterTable &table, std::vector<BlockNet> blocks);

    /** Brings switches, links and values up to the table. Everything below is as of the last call. */
    void Follow();
    /** What the virtual operator drives; empty while it is closed. Counts from the next Follow() on. */
    void SetOperatorLinks(std::vector<CircuitLink> links) { operatorLinks_ = std::move(links); }

    int BlockCount() const { return int(blocks_.size()); }
    const BlockNet &Block(int block) const { return blocks_[std::size_t(block)].given; }
    int NodeCount() const { return nodes_; }
    int EdgeCount() const { return edges_; }
    /** Where a node or an edge belongs to: the block, and its index in the block's net. */
    int BlockOfNode(int node) const;
    int BlockOfEdge(int edge) const;
    int LocalNode(int node) const { return node - blocks_[std::size_t(BlockOfNode(node))].firstNode; }
    int LocalEdge(int edge) const { return edge - blocks_[std::size_t(BlockOfEdge(edge))].firstEdge; }
    int NodeIn(int block, int localNode) const { return blocks_[std::size_t(block)].firstNode + localNode; }
    int EdgeIn(int block, int localEdge) const { return blocks_[std::size_t(block)].firstEdge + localEdge; }
    /** The block of a window's caption, or -1. */
    int FindBlock(const QString &window) const;
    const Node &NodeAt(int node) const;
    const Edge &EdgeAt(int edge) const; ///< its pins name nodes of the block's own net

    bool Passes(int edge) const; ///< see Net::Passes()
    /** The nodes at which an edge begins and ends; -1 outside all drawings. */
    int From(int edge) const { return NodeOf(edge, EdgeAt(edge).from); }
    int To(int edge) const { return NodeOf(edge, EdgeAt(edge).to); }

    /** The values; see NetValues. */
    std::optional<double> Result(int node) const;
    std::optional<double> OnEdge(int edge) const;
    std::optional<double> Entering(int node) const;
    /** The edges that bring signals to a node, in the order of NetInputs. */
    std::vector<int> Inputs(int node) const;
    /** Edges that end at a node, or begin there; of every kind. */
    const std::vector<int> &Into(int node) const { return into_[std::size_t(node)]; }
    const std::vector<int> &OutOf(int node) const { return outOf_[std::size_t(node)]; }

    /** The nodes that show a parameter, by box or by name. */
    const std::vector<int> &NodesOf(int p) const;
    /** All links in force, in the order in which a drive and the emulator serve them at each tick: analog,
     * digital and frequency inputs, then internal links. What the virtual operator writes stands before them,
     * since it is written once. */
    const std::vector<CircuitLink> &Links() const { return links_; }

    /** All that a node's value comes from, or goes to, through all windows. The node itself is in it. */
    CircuitPath Upstream(int node, Through through) const;
    CircuitPath Downstream(int node, Through through) const;
    /** The parameters that a parameter's value comes from at once, and those that it feeds. Those through
     * which it passes now come first. */
    std::vector<CircuitNeighbour> SourcesOf(int p) const;
    std::vector<CircuitNeighbour> FeedsOf(int p) const;

private:
    struct Joined {
        BlockNet given;
        NetValues values;
        int firstNode;
        int firstEdge;
    };

    enum class Way : bool { Up, Down };
    CircuitPath Trace(int node, Way way, Through through) const;
    std::vector<CircuitNeighbour> Neighbours(int p, Way way) const;
    void Visit(int node, Way way, Through through, CircuitPath &path, std::vector<int> &open) const;
    int NodeOf(int edge, const Pin &pin) const
    {
        return pin.node < 0 ? -1 : NodeIn(BlockOfEdge(edge), pin.node);
    }
    int FarEnd(int edge, Way way) const { return way == Way::Up ? From(edge) : To(edge); }
    bool IsMade(int node) const; ///< a box that a wire enters
    bool IsTraced(int edge) const;
    void JoinParameters();
    void FindLinks();

    const ParameterTable &table_;
    std::vector<Joined> blocks_;
    int nodes_ = 0;
    int edges_ = 0;
    std::vector<int> blockOfNode_;
    std::vector<int> blockOfEdge_;
    std::vector<std::vector<int>> into_;
    std::vector<std::vector<int>> outOf_;
    std::vector<std::vector<int>> nodesOf_; ///< by parameter
    std::vector<CircuitLink> links_;
    std::vector<CircuitLink> operatorLinks_;
};

} // namespace quorvik
