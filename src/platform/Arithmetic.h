#pragma once

#include <cstdint>

namespace quorvik
{

/**
 * Checked integer arithmetic on raw values. Every routine raises RuntimeFailure where the exact
 * result does not fit its result type; none wraps.
 */
std::int32_t CheckedAdd(std::int32_t left, std::int32_t right);
std::int32_t CheckedSubtract(std::int32_t left, std::int32_t right);
std::int32_t CheckedMultiply(std::int32_t left, std::int32_t right);
std::int32_t CheckedNegate(std::int32_t value);
std::int32_t CheckedAbs(std::int32_t value);

/** left / right in 64-bit floating point; a right of 0 raises RuntimeFailure ("Division by zero."). */
double CheckedDivide(double left, double right);

/** Converts to a signed 32-bit integer, halves to the even neighbour (2.5 is 2, 3.5 is 4). */
std::int32_t CLng(double value);

/** As CLng(), to a signed 16-bit integer, -32768 to 32767. */
std::int16_t CInt(double value);

/** Narrows to a signed 16-bit integer. */
std::int16_t ToInt16(std::int32_t value);

/** Narrows to an unsigned byte, 0 to 255. */
std::uint8_t ToByte(std::int32_t value);

/** Cuts toward zero (-3.7 is -3), as a signed 32-bit integer. */
std::int32_t Fix(double value);

/** Rounds to a whole number, halves to the even neighbour, whatever rounding mode the platform is in. */
double RoundHalfEven(double value);

} // namespace quorvik
