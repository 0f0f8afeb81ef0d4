#pragma once

#include <cstdio>

namespace quorvik
{

/** Whether a person sees what is written there as it comes. */
bool IsTerminal(std::FILE *stream);

/** A closed pipe is a failed write, and does not end the program. */
void IgnoreClosedPipes();

} // namespace quorvik
