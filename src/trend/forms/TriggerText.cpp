#include "trend/forms/TriggerText.h"

#include "model/ShownText.h"
#include "trend/forms/ChannelModel.h"

namespace quorvik
{

QString NameOf(TriggerKind kind)
{
    switch (kind) {
    case TriggerKind::Rising:
        return QStringLiteral("Rises through");
    case TriggerKind::Falling:
        return QStringLiteral("Falls through");
    case TriggerKind::Leaving:
        return QStringLiteral("Leaves the range");
    case TriggerKind::Equals:
        return QStringLiteral("Becomes");
    case TriggerKind::Fault:
        return QStringLiteral("The drive trips");
    case TriggerKind::Edit:
        return QStringLiteral("A value is changed: record the answer");
    case TriggerKind::ByHand:
        return QStringLiteral("By hand only");
    case TriggerKind::None:
        break;
    }
    return {};
}

bool IsOfChannel(TriggerKind kind)
{
    return kind == TriggerKind::Rising || kind == TriggerKind::Falling || kind == TriggerKind::Leaving ||
           kind == TriggerKind::Equals;
}

QString TriggerText(const TriggerSetting &trigger, const TrendChannel *channel)
{
    if (!IsOfChannel(trigger.kind))
        return trigger.kind == TriggerKind::Edit     ? QStringLiteral("a value is changed")
               : trigger.kind == TriggerKind::Fault  ? QStringLiteral("the drive trips")
               : trigger.kind == TriggerKind::ByHand ? QStringLiteral("by hand")
                                                     : QString();
    const std::int32_t attributes = channel == nullptr ? 0 : channel->attributes;
    QString text =
        QStringLiteral("%1 %2 %3")
            .arg(channel == nullptr ? QStringLiteral("(%1)").arg(trigger.param) : ChannelName(*channel),
                 NameOf(trigger.kind).toLower(), ShownText(trigger.rawLevel, attributes));
    if (trigger.kind == TriggerKind::Leaving)
        text += QStringLiteral(" to ") + ShownText(trigger.rawHigh, attributes);
    return text;
}

} // namespace quorvik
