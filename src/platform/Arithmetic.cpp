#include "platform/Arithmetic.h"

#include "platform/RuntimeFailure.h"

#include <cmath>
#include <limits>

namespace quorvik
{

namespace
{

template<typename Integer, typename Whole> Integer Narrow(Whole whole)
{
    // Written so that a NaN fails too.
    if (!(whole >= Whole(std::numeric_limits<Integer>::min()) &&
          whole <= Whole(std::numeric_limits<Integer>::max())))
        throw RuntimeFailure(QStringLiteral("The result is out of range."));
    return static_cast<Integer>(whole);
}

} // namespace

std::int32_t CheckedAdd(std::int32_t left, std::int32_t right)
{
    return Narrow<std::int32_t>(std::int64_t(left) + right);
}

std::int32_t CheckedSubtract(std::int32_t left, std::int32_t right)
{
    return Narrow<std::int32_t>(std::int64_t(left) - right);
}

std::int32_t CheckedMultiply(std::int32_t left, std::int32_t right)
{
    return Narrow<std::int32_t>(std::int64_t(left) * right);
}

std::int32_t CheckedNegate(std::int32_t value)
{
    return CheckedSubtract(0, value);
}

std::int32_t CheckedAbs(std::int32_t value)
{
    return value < 0 ? CheckedNegate(value) : value;
}

double CheckedDivide(double left, double right)
{
    if (right == 0.0)
        throw RuntimeFailure(QStringLiteral("Division by zero."));
    return left / right;
}

double RoundHalfEven(double value)
{
    const double below = std::floor(value);
    const double part = value - below;
    if (part != 0.5)
        return std::floor(value + (part > 0.5 ? 1.0 : 0.0));
    return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

std::int32_t CLng(double value)
{
    return Narrow<std::int32_t>(RoundHalfEven(value));
}

std::int16_t CInt(double value)
{
    return Narrow<std::int16_t>(RoundHalfEven(value));
}

std::int16_t ToInt16(std::int32_t value)
{
    return Narrow<std::int16_t>(value);
}

std::uint8_t ToByte(std::int32_t value)
{
    return Narrow<std::uint8_t>(value);
}

std::int32_t Fix(double value)
{
    return Narrow<std::int32_t>(std::trunc(value));
}

} // namespace quorvik
