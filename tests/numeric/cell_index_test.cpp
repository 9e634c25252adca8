#include "numeric/cell_index.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using nezaiva::cellIndex;
using nezaiva::finiteOrZero;

namespace {
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kLargest = std::numeric_limits<float>::max();
} // namespace

TEST(CellIndex, TruncatesTowardsZero)
{
    EXPECT_EQ(cellIndex(2.9f), 2);
    EXPECT_EQ(cellIndex(-2.9f), -2);
    EXPECT_EQ(cellIndex(-0.9), 0);
    EXPECT_EQ(cellIndex(2147483646.9), 2147483646);
}

TEST(CellIndex, TooLargeValuesGiveTheNearestEnd)
{
    EXPECT_EQ(cellIndex(2147483648.0f), INT32_MAX);
    EXPECT_EQ(cellIndex(kLargest), INT32_MAX);
    EXPECT_EQ(cellIndex(-2147483648.0f), INT32_MIN);
    EXPECT_EQ(cellIndex(-kLargest), INT32_MIN);
    EXPECT_EQ(cellIndex(1e300), INT32_MAX);
    EXPECT_EQ(cellIndex(-1e300), INT32_MIN);
}

TEST(CellIndex, WhatIsNotFiniteGivesCellZero)
{
    EXPECT_EQ(cellIndex(kNan), 0);
    EXPECT_EQ(cellIndex(kInfinity), 0);
    EXPECT_EQ(cellIndex(-kInfinity), 0);
    EXPECT_EQ(cellIndex(static_cast<double>(kInfinity)), 0);
}

TEST(FiniteOrZero, KeepsEveryFiniteValue)
{
    EXPECT_EQ(finiteOrZero(kLargest), kLargest);
    EXPECT_EQ(finiteOrZero(-kLargest), -kLargest);
    EXPECT_EQ(finiteOrZero(std::numeric_limits<double>::max()), std::numeric_limits<double>::max());
    EXPECT_EQ(finiteOrZero(kInfinity), 0.0f);
    EXPECT_EQ(finiteOrZero(-kInfinity), 0.0f);
    EXPECT_EQ(finiteOrZero(kNan), 0.0f);
    EXPECT_EQ(finiteOrZero(static_cast<double>(kNan)), 0.0);
}
