// The four tolerances of the tests. A test says which one it uses and why.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace tolerance {

// Exact bits: everything that has one correct answer in single precision.
inline bool sameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}
inline bool sameFloat(float a, float b)
{
    return sameBits(a, b) || (std::isnan(a) && std::isnan(b));
}

// One call into the maths library: 4 units in the last place. EXPECT_FLOAT_EQ is this comparison.

// Sums of many terms, compared with a twin in double precision.
inline constexpr double kSum = 1e-5;

// Pictures: the largest difference of a channel.
inline constexpr double kImage = 2e-3;

} // namespace tolerance

// Both values hold the same 32 bits; two NaNs count as equal whatever their payload.
#define EXPECT_SAME_BITS(actual, expected) EXPECT_PRED2(tolerance::sameFloat, actual, expected)
