#pragma once

#include "circuit/Conditions.h"

#include <QString>
#include <vector>

namespace quorvik
{

/** What lies between a start and a turning motor, and what of it stands in the way. */
struct WhyNot {
    std::vector<Condition> conditions; ///< in the order of the signal
    int first = -1;                    ///< index of the first that blocks, -1 for none
    bool runs = false;
    std::vector<int> reads = {}; ///< parameters on which all of it hangs, in rising order
    QString headline = {}; ///< one or two sentences: the first cause with its remedy, or how the drive runs

    /** All of it as lines of text. */
    QString AsText() const;
};

/** Looks through the drive as its drawings are: from faults and commands over demand and loops to armature
 * and field. @param circuit as of its last Follow(). */
WhyNot ExplainStandstill(const Circuit &circuit, const ParameterTable &table, const ConditionsGiven &given);

/** "met", "blocks": a verdict in a word. */
QString WordOf(Verdict verdict);

} // namespace quorvik
