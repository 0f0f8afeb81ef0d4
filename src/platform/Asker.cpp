#include "platform/Asker.h"

#include "platform/Progress.h"
#include "platform/Waiting.h"

namespace quorvik
{

std::optional<std::int32_t> Asker::EditValue(int, std::int32_t)
{
    return std::nullopt;
}

void Asker::ShowProgress(Progress &progress)
{
    PumpWhile([&progress] { return !progress.IsOver(); });
}

} // namespace quorvik
