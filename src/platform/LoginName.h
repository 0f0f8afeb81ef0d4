#pragma once

#include <QString>

namespace quorvik
{

/** What the user of this program is called by the system; empty where it has no name for the number. */
QString LoginName();

} // namespace quorvik
