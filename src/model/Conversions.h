#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace quorvik
{

struct ParamRecord;

/**
 * The type code of an attribute word, 0 to 31. It is Attributes / 32 rounded to the nearest integer, ties to
 * even, low five bits kept; not a shift. So the stop-only bit turns an odd code into the next one, and that
 * is required.
 */
int TypeCode(std::int32_t attributes);

/** True for the types whose values are picked from a list of texts: 2 to 9, 19, 21, 22 and 24. */
bool IsEnumerated(int typeCode);

/** Decimals of a parameter, 0 to 3. */
int DecimalsOf(std::int32_t attributes);

/** The display text of a raw value, with its unit. A list type shows nothing for a value above 3 and raises
 *  RuntimeFailure for a negative one; a model code must lie in 0 to 32. */
QString ValueText(std::int32_t rawValue, std::int32_t attributes);

/** All texts of a list between the limits; "-100.00 % to 100.00 %" of another type. */
QString LimitsText(const ParamRecord &record);

/** The raw value as a plain number with the parameter's decimals. */
QString NumberText(std::int32_t rawValue, std::int32_t attributes);

/** The number that a box shows for a raw value: 72.88 for "72.88 %", of a list the raw value itself. */
double ShownNumber(std::int32_t rawValue, std::int32_t attributes);

/** The raw value whose shown number is nearest, halves away from zero; nothing where none can be as large. */
std::optional<std::int32_t> RawOfShown(double number, std::int32_t attributes);

/** The unit column of the type: "%", "Hz", "Sec", "Amps", "RPM", "Volts", "C" or empty. */
QString UnitText(std::int32_t attributes);

/** Typed text, which must be a number, with exactly the parameter's decimals; halves away from zero. */
QString FormatEntry(const QString &text, std::int32_t attributes);

/** The text without its point, as a signed 32-bit integer. */
std::int32_t StripPoint(const QString &text);

/** Typed text as raw value: 12.5 with two decimals gives 1250. Raises RuntimeFailure on no number or
 * overflow. */
std::int32_t EntryToRaw(const QString &text, std::int32_t attributes);

} // namespace quorvik
