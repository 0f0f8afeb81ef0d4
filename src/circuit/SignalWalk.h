#pragma once

#include "circuit/Circuit.h"

#include <optional>
#include <vector>

namespace quorvik
{

class ParameterTable;

/**
 * Where a signal comes from in the joined circuit, and what it would be: what the drive computes is followed
 * back to what is given to it, with ramps and controllers at their end. For a drive that does not run, and
 * for a set without a drive.
 */
class SignalWalk
{
public:
    /** Both must outlive it. */
    SignalWalk(const Circuit &circuit, const ParameterTable &table)
        : circuit_(circuit)
        , table_(table)
    {
    }

    /** Whether values that a drive computes are worked out, and not read. */
    void SetPredicting(bool isPredicting) { isPredicting_ = isPredicting; }
    bool IsPredicting() const { return isPredicting_; }

    std::vector<int> InputsOn(int node, Side side) const;
    int InputOn(int node, Side side) const;       ///< the first one, -1 for none
    std::vector<int> SelectorsOf(int node) const; ///< parameters that move a switch
    std::vector<int> MembersOf(int group) const;
    /**
     * The input that gets through a switch or a contact, -1 for none.
     * @param isAsked what would get through if the drive were started: past what only a stop takes away.
     */
    int TakenInput(int node, bool isAsked) const;
    int OtherInput(int node, int taken) const; ///< the first input that is no constant and another one
    int MakerOf(int p) const;                  ///< the node in which a drive computes it, -1 for what is set
    bool IsComputed(int p) const;
    /** The signal that a controller follows, -1 where the node is none. */
    int SetpointOf(int node) const;

    /** As boxes show it; nothing where it is not known. */
    std::optional<double> ValueOf(int p) const;
    std::optional<double> Result(int node) const;

private:
    std::optional<double> Work(int node) const;
    std::optional<double> Gate(int node, bool decides) const;
    std::optional<double> Summed(int node) const;
    std::optional<double> Limited(int node) const;

    const Circuit &circuit_;
    const ParameterTable &table_;
    bool isPredicting_ = false;
    mutable std::vector<int> pending_; ///< nodes that are being worked out
};

} // namespace quorvik
