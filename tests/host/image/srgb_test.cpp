#include "host/image/srgb.h"

#include <gtest/gtest.h>

#include <cmath>

using ombrix::srgbDecode;
using ombrix::srgbEncode;

// Values by hand from the curve of IEC 61966-2-1: 12.92 x up to 0.0031308, then 1.055 x^(1/2.4) - 0.055.
TEST(Srgb, EncodesByTheFormula)
{
    EXPECT_FLOAT_EQ(srgbEncode(0.0f), 0.0f);
    EXPECT_FLOAT_EQ(srgbEncode(0.002f), 0.02584f);
    EXPECT_NEAR(srgbEncode(0.18f), 0.461356129, 1e-7);
    EXPECT_NEAR(srgbEncode(0.5f), 0.735356983, 1e-7);
    EXPECT_FLOAT_EQ(srgbEncode(1.0f), 1.0f);
}

TEST(Srgb, DecodesByTheFormula)
{
    EXPECT_FLOAT_EQ(srgbDecode(0.0f), 0.0f);
    EXPECT_NEAR(srgbDecode(0.02f), 0.00154798762, 1e-9);
    EXPECT_NEAR(srgbDecode(0.5f), 0.214041140, 1e-7);
    EXPECT_FLOAT_EQ(srgbDecode(1.0f), 1.0f);
}

TEST(Srgb, DecodeUndoesEncode)
{
    for (int i = 0; i <= 4000; ++i) {
        const float x = static_cast<float>(i) / 1000.0f;
        EXPECT_NEAR(srgbDecode(srgbEncode(x)), x, 1e-6f * (1.0f + x)) << x;
    }
}

TEST(Srgb, IsOddlyBehavedNowhere)
{
    EXPECT_FLOAT_EQ(srgbEncode(-0.1f), -1.292f);
    EXPECT_TRUE(std::isnan(srgbEncode(NAN)));
    EXPECT_TRUE(std::isnan(srgbDecode(NAN)));
    EXPECT_TRUE(std::isinf(srgbEncode(INFINITY)));
}
