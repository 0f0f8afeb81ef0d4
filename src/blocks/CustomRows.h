#pragma once

#include <vector>

namespace quorvik
{

struct Desk;

/** The parameters of the Custom window's rows: of the open window, else as they are stored. A number outside
 * the table is an empty row. */
std::vector<int> CustomRows(const Desk &desk);

/** Puts a parameter in a row of the Custom window, which stores that, and shows it there. */
void PutInCustomRow(Desk &desk, int row, int p);

} // namespace quorvik
