#pragma once

#include "circuit/Circuit.h"

#include <vector>

namespace quorvik
{

struct Desk;

/** What the virtual operator's panel drives at present: Run, Stop, Jog and each slot that has a parameter.
 * Nothing while the panel is closed. */
std::vector<CircuitLink> OperatorLinks(const Desk &desk);

} // namespace quorvik
