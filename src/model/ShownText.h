#pragma once

#include <QString>
#include <cstdint>

namespace quorvik
{

/** A raw value as the program shows it, with its unit; one that has no text as the plain raw number. */
QString ShownText(std::int32_t rawValue, std::int32_t attributes);

/** What may be entered: "0.0 % to 100.0 %", or the texts of a list, parted by commas.
 * @param rawMin, rawMax the limits, raw. */
QString RangeText(std::int32_t rawMin, std::int32_t rawMax, std::int32_t attributes);

} // namespace quorvik
