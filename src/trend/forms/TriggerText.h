#pragma once

#include "trend/TrendData.h"
#include "trend/Trigger.h"

namespace quorvik
{

/** The kinds that can be chosen, as the list of them calls each: "Rises through". Empty for none. */
QString NameOf(TriggerKind kind);
/** Whether it looks at the samples of a channel. */
bool IsOfChannel(TriggerKind kind);
/** What is waited for: "(193) Vel Feedback rises through 50.00 %". @param channel that of the trigger, or
 * null where it is none of the recording. */
QString TriggerText(const TriggerSetting &trigger, const TrendChannel *channel);

} // namespace quorvik
