#pragma once

#include <QString>

namespace quorvik
{

/**
 * What to do about a parameter that keeps a signal from getting through: a sentence or two that hold for any
 * drive. Parameters in it stand by number and name. Empty where nothing more is to be said than what it must
 * be.
 */
QString RemedyFor(int p);

} // namespace quorvik
