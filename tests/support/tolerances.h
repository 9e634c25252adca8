// The four tolerances of the tests. A test takes the tightest one that holds.
//
//   exact bits  EXPECT_SAME_BITS, EXPECT_SAME_COLOR, EXPECT_SAME_UVW: everything that has one correct
//               answer in single precision. Most results of this library do: numbers that binary holds
//               exactly, and formulas whose order of operations is told.
//   4 ulp       EXPECT_FLOAT_EQ: one call into the maths library, whose last bit differs between versions.
//   sums        EXPECT_NEAR with tolerance::kSum, EXPECT_SUM: many terms, beside a twin in double precision.
//   pictures    EXPECT_NEAR with tolerance::kImage: the largest difference of a channel.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace tolerance {

inline constexpr double kSum = 1e-5;
inline constexpr double kImage = 2e-3;

inline bool sameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}
// The same bits; two NaNs count as equal whatever their payload.
inline bool sameFloat(float a, float b)
{
    return sameBits(a, b) || (std::isnan(a) && std::isnan(b));
}

// A sum, absolute up to 1 and relative above, times how much the steps before may have grown a rounding
// error. Infinities and NaN agree in kind.
inline bool sumAgrees(float actual, double expected, double growth = 1.0)
{
    const auto wide = static_cast<double>(actual);
    if (std::isnan(expected)) return std::isnan(wide);
    if (std::isinf(expected)) return wide == expected;
    return std::fabs(wide - expected) <= kSum * growth * std::fmax(1.0, std::fabs(expected));
}

// What the macros below report with; count values each, compared in their order.
testing::AssertionResult compareBits(const char* actualText, const char* expectedText, float actual,
                                     float expected);
testing::AssertionResult compareBits(const char* actualText, const float* actual, const float* expected,
                                     int count);

} // namespace tolerance

#define EXPECT_SAME_BITS(actual, expected)                                                                   \
    EXPECT_PRED_FORMAT2(static_cast<testing::AssertionResult (*)(const char*, const char*, float, float)>(   \
                            tolerance::compareBits),                                                         \
                        actual, expected)

#define EXPECT_SUM(actual, expected) EXPECT_PRED3(tolerance::sumAgrees, actual, expected, 1.0)

// All four channels of a colour; the expected one may be written in braces.
#define EXPECT_SAME_COLOR(actual, ...)                                                                       \
    do {                                                                                                     \
        const OUtils::AColor actualColor = (actual);                                                         \
        const OUtils::AColor expectedColor = __VA_ARGS__;                                                    \
        EXPECT_TRUE(tolerance::compareBits(#actual, &actualColor.r, &expectedColor.r, 4));                   \
    } while (false)

// The first three numbers of coordinates or of a vector.
#define EXPECT_SAME_UVW(actual, u, v, w)                                                                     \
    do {                                                                                                     \
        const auto actualUVW = (actual);                                                                     \
        const float expectedUVW[] = {static_cast<float>(u), static_cast<float>(v), static_cast<float>(w)};   \
        EXPECT_TRUE(tolerance::compareBits(#actual, &actualUVW.x, expectedUVW, 3));                          \
    } while (false)
#define EXPECT_NEAR_UVW(actual, u, v, w)                                                                     \
    do {                                                                                                     \
        const auto nearUVW = (actual);                                                                       \
        EXPECT_NEAR(nearUVW.x, u, tolerance::kSum);                                                          \
        EXPECT_NEAR(nearUVW.y, v, tolerance::kSum);                                                          \
        EXPECT_NEAR(nearUVW.z, w, tolerance::kSum);                                                          \
    } while (false)
