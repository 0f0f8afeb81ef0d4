#pragma once

#include <QString>
#include <cstdint>

namespace quorvik
{

/** A raw value as the program shows it, with its unit; one that has no text as the plain raw number. */
QString ShownText(std::int32_t rawValue, std::int32_t attributes);

} // namespace quorvik
