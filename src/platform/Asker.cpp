#include "platform/Asker.h"

#include "platform/Progress.h"
#include "platform/Waiting.h"

#include <algorithm>

namespace quorvik
{

bool Question::Has(MsgAnswer answer) const
{
    return std::ranges::any_of(choices, [answer](const Choice &choice) { return choice.answer == answer; });
}

QString Question::WholeText() const
{
    return explanation.isEmpty() ? text : text + QStringLiteral("\r\n\r\n") + explanation;
}

QString Question::VerbOf(MsgAnswer answer) const
{
    const auto found = std::ranges::find(choices, answer, &Choice::answer);
    if (found == choices.end() || found->verb.isEmpty())
        return QStringLiteral("Yes");
    return QString(found->verb).remove(u'&');
}

std::optional<std::int32_t> Asker::EditValue(int, std::int32_t)
{
    return std::nullopt;
}

void Asker::ShowProgress(Progress &progress)
{
    PumpWhile([&progress] { return !progress.IsOver(); });
}

} // namespace quorvik
