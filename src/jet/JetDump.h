#pragma once

#include "platform/JetOutput.h"

#include <cstdio>
#include <vector>

namespace quorvik
{

/**
 * Prints the tables of a database of Jet version 3 in the form that JetOutput.h tells; those that the
 * database engine keeps for itself are left out. A file that does not agree with itself is damaged, and what
 * was printed of it counts for nothing: a row that is missed would shift all after it.
 * @param file the whole file.
 */
JetExit DumpJet(std::vector<char> &file, std::FILE *out);

} // namespace quorvik
