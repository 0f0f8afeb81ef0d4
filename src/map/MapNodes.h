#pragma once

namespace quorvik
{

class Circuit;

/** A value box that shows what a selector points at. */
bool IsEndOfLink(const Circuit &circuit, int node);
/** A wire brings its value. */
bool IsMade(const Circuit &circuit, int node);
/** A wire takes it on. */
bool IsUsed(const Circuit &circuit, int node);
/** The card of the window in which a node stands; see MapModel::CardOfWindow(). */
int CardOfNode(const Circuit &circuit, int node, int *row = nullptr);

} // namespace quorvik
