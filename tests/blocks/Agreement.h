#pragma once

#include "blocks/DriveCircuit.h"
#include "model/ParameterTable.h"

#include <functional>
#include <map>
#include <set>
#include <string>

namespace quorvik::testing
{

/** Compares what the drawings compute with what the boxes show, and notes what has been compared. */
class Agreement
{
public:
    explicit Agreement(ParameterTable &table);

    /** Compares all boxes that are computed, and reports those that are off by more than a last place.
     * @param excused whether a difference of this parameter is forced; asked where there is one. */
    void Compare(const std::string &state, const std::function<bool(int p)> &isComputed,
                 const std::function<bool(int p)> &excused);
    /** What a drawing computes and no call has compared yet: a value other than zero for each box, and each
     * contact of the switches before it. */
    std::set<std::string> Missing(const std::function<bool(int p)> &isComputed) const;

private:
    struct Box {
        int node;
        std::vector<int> cone; ///< elements between it and the boxes before it
        bool wasNonZero = false;
    };
    void Collect(int node, std::vector<int> &cone) const;
    /** What can be known of an element's result at all: what has a memory gives nothing. */
    enum class Known { Never, AsConstant, AsValue };
    Known KnownOf(int node) const;
    /** Whether the raw value is what enters the box, as the parameter's limits let it be, to a last place of
     * the box and of those before it. */
    bool Agrees(const Box &box) const;
    /** By how much rounding in the boxes before it can change what enters a box. */
    double Blur(const Box &box) const;
    std::string Name(int node) const;

    ParameterTable &table_;
    DriveCircuit drive_;
    std::vector<Box> boxes_;
    std::map<int, std::set<int>> touched_; ///< contacts that were compared, by switch
    std::set<std::string> told_;
};

} // namespace quorvik::testing
