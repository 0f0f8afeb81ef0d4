#include "batch/Verbs.h"

#include "batch/Verb.h"

namespace quorvik
{

namespace
{

constexpr Verb AllVerbs[] = {
    {"info", "", "Tells which drive answers: model, firmware, hours, state.", nullptr, RunInfo},
};

} // namespace

std::span<const Verb> Verbs()
{
    return AllVerbs;
}

} // namespace quorvik
