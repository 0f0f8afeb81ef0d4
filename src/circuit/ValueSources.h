#pragma once

#include "circuit/Circuit.h"

#include <vector>

namespace quorvik
{

class ParameterTable;

/** What sets a parameter that the drive does not work out itself. */
struct ValueSource {
    QString name = {};           ///< "digital input 3"; empty where the value is just set
    QString text = {};           ///< "digital input 3 is its source and reads Open"
    std::vector<int> reads = {}; ///< parameters on which the text hangs
    int digitalInput = -1;       ///< from 1 on, -1 where it is none

    /** What to do at the source so that the value becomes True, or False; empty where nothing is known of
     * that. */
    QString Remedy(const ParameterTable &table, bool wantsFalse) const;
};

/** Of several that write a parameter, the one whose value stands. */
ValueSource SourceOfValue(const Circuit &circuit, const ParameterTable &table, int p);

} // namespace quorvik
