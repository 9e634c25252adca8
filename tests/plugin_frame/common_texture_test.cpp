// The colour, the bounds and the gradient of CommonTexture. The values are dyadic, so that the results that
// the tests name are exact; where weights come in, they are computed here as they are written down.

#include "plugin_frame/probe_textures.h"

#include <limits>

namespace {

using namespace support;
using OUtils::AColor;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
// 0.3 r + 0.59 g + 0.11 b of (0.25, 0.5, 0.75), and the mean of these three.
constexpr double kLuminance = 0.3 * 0.25 + 0.59 * 0.5 + 0.11 * 0.75;
constexpr double kMean = 0.5;

TEST(CommonTexture, PassesTheRawColorWhenNothingIsSet)
{
    LivingRaw living(0);
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 0.125f});
}

TEST(CommonTexture, WithoutCoordinatesIsOpaqueGreyWhileNoUVWColorIsUnset)
{
    for (const int compatibility : {0, 1, 2}) {
        LivingRaw living(0);
        living.set("compatibility_with", compatibility).set("invert", true);
        living.set("color_mult", AColor{0.5f, 0.5f, 0.5f, 1.0f}).set("alpha_offset", 3.0f);
        living.texture.valid = false;
        EXPECT_SAME_COLOR(living.color(), {0.5f, 0.5f, 0.5f, 1.0f});
    }
}

TEST(CommonTexture, WithoutCoordinatesShowsNoUVWColorWithItsAlpha)
{
    TestColor colour({0.25f, 0.5f, 0.75f, 0.125f});
    LivingRaw living(0);
    living.connect("nouvw_color", colour);
    living.texture.valid = false;
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 0.125f});
    living.set("compatibility_with", 2);
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 0.125f});
}

TEST(CommonTexture, WithoutCoordinatesTheAlphaIsTheLuminanceInMayasOrder)
{
    TestColor colour({0.25f, 0.5f, 0.75f, 0.125f});
    LivingRaw living(0);
    living.connect("nouvw_color", colour).set("compatibility_with", 1);
    living.texture.valid = false;
    const AColor result = living.color();
    EXPECT_SAME_COLOR((AColor{result.r, result.g, result.b, 0.0f}), {0.25f, 0.5f, 0.75f, 0.0f});
    EXPECT_SAME_BITS(result.a, static_cast<float>(kLuminance));
}

TEST(CommonTexture, AlphaFarBelowZeroMeansNoValue)
{
    LivingRaw living(0);
    living.texture.raw.a = -1e+18f;
    EXPECT_SAME_COLOR(living.color(), {0.0f, 0.0f, 0.0f, 0.0f});
    living.set("compatibility_with", 1);
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 0.0f});
    living.set("color_mult", AColor{2.0f, 2.0f, 2.0f, 1.0f}).set("alpha_offset", 0.25f);
    EXPECT_SAME_COLOR(living.color(), {0.5f, 1.0f, 1.5f, 0.25f});
    living.set("compatibility_with", 2);
    EXPECT_SAME_COLOR(living.color(), {0.5f, 1.0f, 1.5f, 0.25f});
}

TEST(CommonTexture, OnlyAnAlphaBelowTheLimitMeansNoValue)
{
    LivingRaw living(0);
    living.texture.raw.a = -5e+17f;
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, -5e+17f});
    living.texture.raw.a = std::nextafter(-5e+17f, -kInfinity);
    EXPECT_SAME_COLOR(living.color(), {0.0f, 0.0f, 0.0f, 0.0f});
    living.texture.raw.a = kNaN;
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, kNaN});
}

TEST(CommonTexture, RawLookupNegatesInsteadOfInverting)
{
    LivingRaw living(0);
    living.set("color_mult", AColor{3.0f, 3.0f, 3.0f, 1.0f}).set("alpha_from_intensity", 2);
    living.context.shadeFlags = OUtils::rawTextureLookup;
    living.texture.raw = {1.5f, 0.5f, -0.25f, 0.125f};
    EXPECT_SAME_COLOR(living.color(), {1.5f, 0.5f, -0.25f, 0.125f});
    for (const int compatibility : {0, 1, 2}) {
        living.set("invert", true).set("compatibility_with", compatibility);
        EXPECT_SAME_COLOR(living.color(), {-1.5f, -0.5f, 0.25f, 0.125f});
    }
    living.texture.raw.a = -1e+18f;
    EXPECT_SAME_COLOR(living.color(), {-1.5f, -0.5f, 0.25f, 0.0f});
    living.set("compatibility_with", 0);
    EXPECT_SAME_COLOR(living.color(), {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(CommonTexture, MaxInvertsBehindTheGainsAndMayaBeforeThem)
{
    LivingRaw living(0);
    living.set("invert", true).set("color_mult", AColor{0.5f, 0.5f, 0.5f, 1.0f});
    // 1 - 0.5 r, and alpha 1 - 0.125.
    EXPECT_SAME_COLOR(living.color(), {0.875f, 0.75f, 0.625f, 0.875f});
    living.set("compatibility_with", 1); // 0.5 (1 - r)
    EXPECT_SAME_COLOR(living.color(), {0.375f, 0.25f, 0.125f, 0.875f});
    living.set("compatibility_with", 2); // neither
    EXPECT_SAME_COLOR(living.color(), {0.125f, 0.25f, 0.375f, 0.125f});
    living.set("compatibility_with", -1);
    EXPECT_SAME_COLOR(living.color(), {0.125f, 0.25f, 0.375f, 0.125f});
}

TEST(CommonTexture, OffsetsFollowTheGains)
{
    LivingRaw living(0);
    living.set("color_mult", AColor{2.0f, 4.0f, 8.0f, 100.0f});
    living.set("color_offset", AColor{0.5f, 0.25f, 0.125f, 100.0f});
    living.set("alpha_mult", 4.0f).set("alpha_offset", 0.25f);
    for (const int compatibility : {0, 1, 2}) {
        living.set("compatibility_with", compatibility);
        EXPECT_SAME_COLOR(living.color(), {1.0f, 2.25f, 6.125f, 0.75f});
    }
}

TEST(CommonTexture, MaxInvertsTheAlphaBehindItsGain)
{
    LivingRaw living(0);
    living.set("invert", true).set("alpha_mult", 4.0f).set("alpha_offset", 0.25f);
    EXPECT_SAME_BITS(living.color().a, 0.25f); // 1 - (0.125 * 4 + 0.25)
    living.set("compatibility_with", 1);
    EXPECT_SAME_BITS(living.color().a, 3.75f); // (1 - 0.125) * 4 + 0.25
}

TEST(CommonTexture, LeavesTheAlphaAloneWithoutInvertAlpha)
{
    for (const int compatibility : {0, 1}) {
        LivingRaw living(0);
        living.set("invert", true).set("invert_alpha", false).set("compatibility_with", compatibility);
        EXPECT_SAME_COLOR(living.color(), {0.75f, 0.5f, 0.25f, 0.125f});
        living.set("invert", false).set("invert_alpha", true);
        EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 0.125f});
    }
}

TEST(CommonTexture, InvertedChannelsStopAtZero)
{
    for (const int compatibility : {0, 1}) {
        LivingRaw living(0);
        living.set("invert", true).set("compatibility_with", compatibility);
        living.texture.raw = {1.5f, kInfinity, kNaN, 2.0f};
        EXPECT_SAME_COLOR(living.color(), {0.0f, 0.0f, 0.0f, 0.0f});
        living.texture.raw = {-1.0f, -kInfinity, 1.0f, kNaN};
        EXPECT_SAME_COLOR(living.color(), {2.0f, kInfinity, 0.0f, 0.0f});
    }
}

TEST(CommonTexture, AlphaIsTheMeanInMaxAndTheLuminanceInMaya)
{
    LivingRaw living(0);
    living.set("alpha_from_intensity", 1);
    EXPECT_SAME_BITS(living.color().a, static_cast<float>(kMean));
    living.set("compatibility_with", 1);
    EXPECT_SAME_BITS(living.color().a, static_cast<float>(kLuminance));
    living.set("compatibility_with", 2);
    EXPECT_SAME_BITS(living.color().a, 0.125f);
}

TEST(CommonTexture, AlphaFromIntensitySeesTheColorOfItsPlaceInTheOrder)
{
    LivingRaw living(0);
    living.set("alpha_from_intensity", 1).set("invert", true).set("alpha_mult", 2.0f);
    living.set("color_mult", AColor{0.5f, 0.5f, 0.5f, 1.0f});
    // Max: the mean of (0.875, 0.75, 0.625); the gain of the alpha came before.
    EXPECT_SAME_BITS(living.color().a, 0.75f);
    // Maya: the luminance of the inverted (0.75, 0.5, 0.25), doubled.
    living.set("compatibility_with", 1);
    EXPECT_FLOAT_EQ(living.color().a, static_cast<float>(2.0 * (0.3 * 0.75 + 0.59 * 0.5 + 0.11 * 0.25)));
}

TEST(CommonTexture, ForcedAlphaIsOneBehindTheGainsInMaxAndBeforeThemInMaya)
{
    LivingRaw living(0);
    living.set("alpha_from_intensity", 2).set("alpha_mult", 0.25f);
    EXPECT_SAME_BITS(living.color().a, 1.0f);
    living.set("compatibility_with", 1);
    EXPECT_SAME_BITS(living.color().a, 0.25f);
    living.set("compatibility_with", 2);
    EXPECT_SAME_BITS(living.color().a, 0.03125f);
    living.set("compatibility_with", 0).set("alpha_from_intensity", 3);
    EXPECT_SAME_BITS(living.color().a, 0.03125f);
}

TEST(CommonTexture, BoundsAreTheRawOnesWhenNothingIsSet)
{
    LivingRaw living(0);
    const ColorBounds bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.25f, 0.5f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.75f, 1.0f, 0.75f});
}

TEST(CommonTexture, InvertedBoundsAreSortedAndStopAtZero)
{
    LivingRaw living(0);
    living.texture.rawUpper.b = 3.0f;
    living.set("invert", true);
    ColorBounds bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {0.5f, 0.25f, 0.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 0.75f, 0.5f, 0.75f});
    // The alpha takes part in the sorting even where it is not inverted.
    living.texture.rawLower.a = 0.875f;
    living.set("invert_alpha", false);
    bounds = living.bounds();
    EXPECT_SAME_BITS(bounds.lower.a, 0.75f);
    EXPECT_SAME_BITS(bounds.upper.a, 0.875f);
    living.texture.rawLower.a = 0.125f;
    bounds = living.bounds();
    EXPECT_SAME_BITS(bounds.lower.a, 0.125f);
    EXPECT_SAME_BITS(bounds.upper.a, 0.75f);
}

TEST(CommonTexture, AlphaBoundsAreMeansWhateverTheOrder)
{
    for (const int compatibility : {0, 1, 2}) {
        LivingRaw living(0);
        living.set("alpha_from_intensity", 1).set("compatibility_with", compatibility);
        ColorBounds bounds = living.bounds();
        EXPECT_SAME_BITS(bounds.lower.a, 0.25f);
        EXPECT_SAME_BITS(bounds.upper.a, 0.75f);
        living.set("alpha_from_intensity", 2);
        bounds = living.bounds();
        EXPECT_SAME_BITS(bounds.lower.a, 1.0f);
        EXPECT_SAME_BITS(bounds.upper.a, 1.0f);
    }
}

TEST(CommonTexture, GainAndOffsetBoundsAreIntervals)
{
    TestColor mult, offset;
    mult.lowerBound = {-1.0f, -2.0f, 2.0f, 50.0f};
    mult.upperBound = {2.0f, -1.0f, 4.0f, 60.0f};
    offset.lowerBound = {-1.0f, 0.0f, 1.0f, 50.0f};
    offset.upperBound = {1.0f, 0.5f, 2.0f, 60.0f};
    LivingRaw living(0);
    living.texture.rawLower = {-0.5f, 0.25f, 0.5f, 0.25f};
    living.connect("color_mult", mult);
    ColorBounds bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {-1.0f, -1.5f, 1.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, -0.25f, 4.0f, 0.75f});
    living.connect("color_offset", offset);
    bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {-2.0f, -1.5f, 2.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {2.0f, 0.25f, 6.0f, 0.75f});
}

TEST(CommonTexture, AlphaGainAndOffsetBoundsAreIntervals)
{
    TestFloat mult, offset;
    mult.lowerBound = -4.0f;
    mult.upperBound = 2.0f;
    offset.lowerBound = -1.0f;
    offset.upperBound = 1.0f;
    LivingRaw living(0);
    living.connect("alpha_mult", mult).connect("alpha_offset", offset);
    const ColorBounds bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.25f, 0.5f, -4.0f}); // 0.75 * -4 - 1
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.75f, 1.0f, 2.5f});  // 0.75 * 2 + 1
}

TEST(CommonTexture, GradientIsNegatedByInvertInBothOrders)
{
    LivingRaw living(0);
    EXPECT_SAME_COLOR(living.colorGradient(), {1.0f, 2.0f, 3.0f, 4.0f});
    living.set("invert", true);
    EXPECT_SAME_COLOR(living.colorGradient(), {-1.0f, -2.0f, -3.0f, -4.0f});
    living.set("compatibility_with", 1);
    EXPECT_SAME_COLOR(living.colorGradient(), {-1.0f, -2.0f, -3.0f, -4.0f});
    living.set("compatibility_with", 2);
    EXPECT_SAME_COLOR(living.colorGradient(), {1.0f, 2.0f, 3.0f, 4.0f});
}

TEST(CommonTexture, MayasGradientFollowsTheProductRule)
{
    TestColor mult({1.0f, 2.0f, 3.0f, 9.0f});
    mult.gradient = {8.0f, 16.0f, 24.0f, 32.0f};
    LivingRaw living(0);
    living.connect("color_mult", mult);
    EXPECT_SAME_COLOR(living.colorGradient(), {1.0f, 2.0f, 3.0f, 4.0f});
    // c = 0.5, m = 2: 0.5 * gm + 2 * g, without and with the inversion of g.
    living.set("compatibility_with", 1);
    AColor gradient = living.colorGradient();
    EXPECT_SAME_BITS(gradient.r, 6.0f);
    EXPECT_SAME_BITS(gradient.g, 12.0f);
    EXPECT_SAME_BITS(gradient.b, 18.0f);
    EXPECT_SAME_BITS(gradient.a, 24.0f);
    living.set("invert", true);
    gradient = living.colorGradient();
    EXPECT_SAME_BITS(gradient.r, 2.0f);
    EXPECT_SAME_BITS(gradient.g, 4.0f);
    EXPECT_SAME_BITS(gradient.b, 6.0f);
    EXPECT_SAME_BITS(gradient.a, 8.0f);
}

TEST(CommonTexture, GradientWithoutCoordinatesIsThatOfNoUVWColorAlone)
{
    TestColor colour, mult({1.0f, 1.0f, 1.0f, 1.0f});
    LivingRaw living(0);
    living.texture.valid = false;
    living.set("invert", true).connect("color_mult", mult);
    for (const int compatibility : {0, 1, 2}) {
        living.set("compatibility_with", compatibility);
        living.set("nouvw_color", ombrix::PluginReference{});
        EXPECT_SAME_COLOR(living.colorGradient(), {0.0f, 0.0f, 0.0f, 0.0f});
        living.connect("nouvw_color", colour);
        EXPECT_SAME_COLOR(living.colorGradient(), {3.0f, 4.0f, 5.0f, 6.0f});
    }
}

} // namespace
