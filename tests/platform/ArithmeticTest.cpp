#include "platform/Arithmetic.h"

#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>
#include <limits>

namespace quorvik::testing
{

namespace
{

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

} // namespace

TEST(ArithmeticTest, WholeNumbersNeverWrap)
{
    EXPECT_EQ(CheckedAdd(Highest - 1, 1), Highest);
    EXPECT_EQ(CheckedSubtract(Lowest + 1, 1), Lowest);
    EXPECT_EQ(CheckedMultiply(-65536, 32768), Lowest);
    EXPECT_EQ(CheckedAbs(-Highest), Highest);
    EXPECT_THROW(CheckedAdd(Highest, 1), RuntimeFailure);
    EXPECT_THROW(CheckedSubtract(Lowest, 1), RuntimeFailure);
    EXPECT_THROW(CheckedMultiply(65536, 32768), RuntimeFailure);
    EXPECT_THROW(CheckedAbs(Lowest), RuntimeFailure);
    EXPECT_THROW(CheckedDivide(1.0, -0.0), RuntimeFailure);
}

TEST(ArithmeticTest, TiesGoToTheEvenNeighbour)
{
    // What is rounded, and what is cut.
    const std::tuple<double, std::int32_t, std::int32_t> cases[] = {
        {1.5, 2, 1},
        {2.5, 2, 2},
        {2.51, 3, 2},
        {-0.5, 0, 0},
        {-1.5, -2, -1},
        {0.49999999999999994, 0, 0},
        {-3.7, -4, -3},
        {2147483646.5, 2147483646, 2147483646},
        {-2147483648.5, Lowest, Lowest},
    };
    for (const auto &[value, rounded, cut] : cases) {
        EXPECT_EQ(CLng(value), rounded) << value;
        EXPECT_EQ(Fix(value), cut) << value;
    }
}

TEST(ArithmeticTest, WhatDoesNotFitItsTypeFails)
{
    for (const double value : {2147483647.5, -2147483649.0, NoNumber, Infinite, -Infinite})
        EXPECT_THROW(CLng(value), RuntimeFailure) << value;
    EXPECT_EQ(Fix(2147483647.9), Highest);
    EXPECT_THROW(Fix(2147483648.0), RuntimeFailure);
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(CInt(-32768.5), -32768);
    EXPECT_THROW(CInt(32767.5), RuntimeFailure);
    EXPECT_EQ(ToInt16(-32768), -32768);
    EXPECT_THROW(ToInt16(32768), RuntimeFailure);
    EXPECT_EQ(ToByte(255), 255);
    EXPECT_THROW(ToByte(256), RuntimeFailure);
    EXPECT_THROW(ToByte(-1), RuntimeFailure);
}

} // namespace quorvik::testing
