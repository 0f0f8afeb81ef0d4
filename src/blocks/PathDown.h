#pragma once

#include "circuit/Circuit.h"

namespace quorvik
{

/** Where the signal of a node goes through the contacts that are touched, without the branches that a switch
 * passes by. */
CircuitPath PathDown(const Circuit &circuit, int node);

} // namespace quorvik
