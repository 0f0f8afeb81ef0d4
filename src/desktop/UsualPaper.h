#pragma once

#include <QPageSize>

namespace quorvik
{

/** The paper that the user's country prints on: A4, or Letter. */
QPageSize UsualPaper();

} // namespace quorvik
