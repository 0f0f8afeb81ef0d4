#pragma once

#include <QWidgetList>

namespace quorvik
{

/** Has Tab go through controls of one window in this order; what followed each of them before and is not
 * among them stays where it is. */
void OrderTabs(const QWidgetList &controls);

} // namespace quorvik
