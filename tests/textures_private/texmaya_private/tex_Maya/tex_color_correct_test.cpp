#include "color_correct_fixture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

using namespace support;
using OUtils::AColor;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST_F(ColorCorrectTest, NothingConnectedIsOpaqueBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(ColorCorrectTest, PassesItsInputOnWhileEverythingElseIsUnset)
{
    give("in_color", {0.25f, 1.5f, -0.5f, 0.125f});
    EXPECT_SAME_COLOR(node.color(), {0.25f, 1.5f, -0.5f, 1.0f});
    give("in_alpha", 0.75f);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 1.5f, -0.5f, 0.75f});
}

TEST_F(ColorCorrectTest, UnpremultipliesByTheReciprocalOfAlpha)
{
    give("in_color", {0.25f, 0.5f, 0.75f, 9.0f});
    give("in_alpha", 0.5f);
    for (float off : {0.0f, -0.0f}) {
        give("unpremultiply_input", off);
        EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.5f});
    }
    for (float on : {1.0f, -1.0f, 1e-30f, kNaN}) {
        give("unpremultiply_input", on);
        EXPECT_SAME_COLOR(node.color(), {0.5f, 1.0f, 1.5f, 0.5f});
    }
}

TEST_F(ColorCorrectTest, AlphaZeroUnpremultipliesToInfinities)
{
    give("in_color", {0.25f, -0.5f, 0.0f, 1.0f});
    give("in_alpha", 0.0f);
    give("unpremultiply_input", 1.0f);
    EXPECT_SAME_COLOR(node.color(), {kInfinity, -kInfinity, kNaN, 0.0f});
}

TEST_F(ColorCorrectTest, PremultipliesTheResultByTheCorrectedAlpha)
{
    give("in_color", {0.25f, 0.5f, 1.0f, 1.0f});
    give("in_alpha", 0.5f);
    give("alpha_offset", 1.5f);
    give("premultiply_result", 1.0f);
    EXPECT_SAME_COLOR(node.color(), {0.5f, 1.0f, 2.0f, 2.0f});
}

TEST_F(ColorCorrectTest, ShiftsTheHueInDegrees)
{
    give("in_color", {1.0f, 0.0f, 0.0f, 1.0f});
    // By the six cases, pure red turned: a third is green, a half is cyan, a whole turn is red.
    const std::pair<float, AColor> turns[] = {
        {60.0f, {1.0f, 1.0f, 0.0f, 1.0f}},  {120.0f, {0.0f, 1.0f, 0.0f, 1.0f}},
        {180.0f, {0.0f, 1.0f, 1.0f, 1.0f}}, {240.0f, {0.0f, 0.0f, 1.0f, 1.0f}},
        {300.0f, {1.0f, 0.0f, 1.0f, 1.0f}}, {360.0f, {1.0f, 0.0f, 0.0f, 1.0f}},
        {480.0f, {0.0f, 1.0f, 0.0f, 1.0f}}, {90.0f, {0.5f, 1.0f, 0.0f, 1.0f}}};
    for (const auto& [shift, expected] : turns) {
        give("hue_shift", shift);
        SCOPED_TRACE(shift);
        EXPECT_SAME_COLOR(node.color(), expected);
    }
}

TEST_F(ColorCorrectTest, ANegativeHueFallsIntoTheFirstSixth)
{
    // 0 - 30 degrees: h = -0.5, floor -1, f = 0.5: (V, (1 - (1 - f)) V, 0).
    give("in_color", {1.0f, 0.0f, 0.0f, 1.0f});
    give("hue_shift", -30.0f);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 0.5f, 0.0f, 1.0f});
}

TEST_F(ColorCorrectTest, EndsForEveryHueShift)
{
    give("in_color", {1.0f, 0.0f, 0.0f, 1.0f});
    give("hue_shift", 36000.0f + 36000.0f + 120.0f);
    EXPECT_SAME_COLOR(node.color(), {0.0f, 1.0f, 0.0f, 1.0f});
    for (float endless : {1e30f, -1e30f}) {
        give("hue_shift", endless);
        EXPECT_SAME_BITS(node.color().a, 1.0f);
    }
    // The first sixth at a fraction that is no number.
    for (float endless : {kInfinity, -kInfinity, kNaN}) {
        give("hue_shift", endless);
        EXPECT_SAME_COLOR(node.color(), {1.0f, kNaN, 0.0f, 1.0f});
    }
}

TEST_F(ColorCorrectTest, AGreyStaysGreyUnderAHueShift)
{
    give("in_color", {0.375f, 0.375f, 0.375f, 1.0f});
    give("hue_shift", 123.0f);
    EXPECT_SAME_COLOR(node.color(), {0.375f, 0.375f, 0.375f, 1.0f});
}

TEST_F(ColorCorrectTest, GainsSaturationAndValue)
{
    // Hue 0, saturation 0.5, value 1.
    give("in_color", {1.0f, 0.5f, 0.5f, 1.0f});
    give("sat_gain", 0.5f);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 0.75f, 0.75f, 1.0f});
    give("sat_gain", 0.0f);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
    give("sat_gain", 2.0f);
    give("val_gain", 0.5f);
    EXPECT_SAME_COLOR(node.color(), {0.5f, 0.0f, 0.0f, 1.0f});
}

TEST_F(ColorCorrectTest, LeavesColorsBitForBitWhileHueSaturationAndValueAreNeutral)
{
    // Values that a conversion and its inverse would not give back.
    const AColor odd{0.1f, -0.7f, 0.3333333f, 1.0f};
    give("in_color", odd);
    give("hue_shift", 0.0f);
    give("sat_gain", 1.0f);
    give("val_gain", 1.0f);
    EXPECT_SAME_COLOR(node.color(), odd);
}

TEST_F(ColorCorrectTest, GainsThenOffsets)
{
    give("in_color", {0.25f, 0.5f, 1.0f, 1.0f});
    give("col_gain", {2.0f, -1.0f, 0.5f, 9.0f});
    give("col_offset", {1.0f, 0.25f, -1.0f, 9.0f});
    EXPECT_SAME_COLOR(node.color(), {1.5f, -0.25f, -0.5f, 1.0f});
}

TEST_F(ColorCorrectTest, GammaIsTheReciprocalExponentOfEachChannel)
{
    give("in_color", {0.25f, 4.0f, 0.125f, 1.0f});
    give("col_gamma", {2.0f, 0.5f, -3.0f, 1.0f});
    const AColor c = node.color();
    EXPECT_SAME_BITS(c.r, 0.5f); // 4 ulp: one power
    EXPECT_SAME_BITS(c.g, 16.0f);
    EXPECT_SAME_BITS(c.b, 2.0f);
}

TEST_F(ColorCorrectTest, AZeroGammaLeavesItsChannelAlone)
{
    give("in_color", {0.3f, 0.4f, 0.5f, 1.0f});
    give("col_gamma", {0.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {0.3f, 0.4f, 0.5f, 1.0f});
}

TEST_F(ColorCorrectTest, APowerThatIsNoFiniteNumberLeavesItsChannelAlone)
{
    give("in_color", {-0.5f, 0.0f, 1e30f, 1.0f}); // NaN, 1 / 0, overflow
    give("col_gamma", {2.0f, -1.0f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {-0.5f, 0.0f, 1e30f, 1.0f});
}

TEST_F(ColorCorrectTest, ClampsTheColorOnlyWhenTold)
{
    give("in_color", {-1.0f, 0.5f, 2.0f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {-1.0f, 0.5f, 2.0f, 1.0f});
    give("col_clamp", 0.5f);
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.5f, 1.0f, 1.0f});
    give("col_clamp_min", {-0.5f, 0.75f, 0.0f, 1.0f});
    give("col_clamp_max", {1.0f, 1.0f, 1.5f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {-0.5f, 0.75f, 1.5f, 1.0f});
}

TEST_F(ColorCorrectTest, TheUpperEndOfACrossedClampWins)
{
    give("in_color", {-1.0f, 0.5f, 2.0f, 1.0f});
    give("col_clamp", 1.0f);
    give("col_clamp_min", {0.75f, 0.75f, 0.75f, 1.0f});
    give("col_clamp_max", {0.25f, 0.25f, 0.25f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.25f, 0.25f, 1.0f});
}

TEST_F(ColorCorrectTest, AnAlphaOffsetOfExactlyOneAddsNothing)
{
    give("in_alpha", 0.25f);
    EXPECT_SAME_BITS(node.color().a, 0.25f);
    give("alpha_offset", 1.0f);
    EXPECT_SAME_BITS(node.color().a, 0.25f);
    give("alpha_offset", 0.5f);
    EXPECT_SAME_BITS(node.color().a, 0.75f);
    give("alpha_offset", 0.0f);
    EXPECT_SAME_BITS(node.color().a, 0.25f);
}

TEST_F(ColorCorrectTest, TheAlphaGainIsAlsoTheAlphaGamma)
{
    give("in_alpha", 0.25f);
    give("alpha_gain", 2.0f);
    EXPECT_SAME_BITS(node.color().a, std::sqrt(0.5f));
    // 0.25 * 0 = 0; an exponent of 0 stays out.
    give("alpha_gain", 0.0f);
    EXPECT_SAME_BITS(node.color().a, 0.0f);
}

TEST_F(ColorCorrectTest, NeverReadsTheAlphaGamma)
{
    connectAll();
    give("alpha_gamma", 3.0f);
    log.clear();
    node.color();
    EXPECT_EQ(std::count(log.begin(), log.end(), "alpha_gamma.evalFloat"), 0);
    EXPECT_EQ(std::count(log.begin(), log.end(), "alpha_gain.evalFloat"), 2);
}

TEST_F(ColorCorrectTest, ClampsAlphaOnlyWhenTold)
{
    give("in_alpha", 1.5f);
    EXPECT_SAME_BITS(node.color().a, 1.5f);
    give("alpha_clamp", 1.0f);
    EXPECT_SAME_BITS(node.color().a, 1.0f);
    give("alpha_clamp_max", 1.25f);
    EXPECT_SAME_BITS(node.color().a, 1.25f);
    give("alpha_clamp_min", 2.0f);
    EXPECT_SAME_BITS(node.color().a, 1.25f);
    give("in_alpha", -1.0f);
    give("alpha_clamp_min", -0.5f);
    EXPECT_SAME_BITS(node.color().a, -0.5f);
}

TEST_F(ColorCorrectTest, AsksItsInputsInTheOrderOfItsSteps)
{
    connectAll();
    for (const char* flag : {"col_clamp", "alpha_clamp"})
        number(flag).value = 1.0f;
    log.clear();
    node.color();
    EXPECT_EQ(log, (CallLog{"in_color.evalColor", "in_alpha.evalFloat", "unpremultiply_input.evalFloat",
                            "hue_shift.evalFloat", "sat_gain.evalFloat", "val_gain.evalFloat",
                            "col_gain.evalColor", "col_offset.evalColor", "col_gamma.evalColor",
                            "col_clamp.evalFloat", "col_clamp_min.evalColor", "col_clamp_max.evalColor",
                            "alpha_gain.evalFloat", "alpha_offset.evalFloat", "alpha_gain.evalFloat",
                            "alpha_clamp.evalFloat", "alpha_clamp_min.evalFloat", "alpha_clamp_max.evalFloat",
                            "premultiply_result.evalFloat"}));
}

TEST_F(ColorCorrectTest, PassesNaNOn)
{
    give("in_color", {kNaN, 0.5f, 0.25f, 1.0f});
    give("in_alpha", kNaN);
    give("col_gamma", {2.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(node.color(), {kNaN, 0.5f, 0.25f, kNaN});
}

TEST_F(ColorCorrectTest, BoundsOfNothingConnected)
{
    // Unset offsets count as (0, 0, 0, 1) too: only the upper alpha moves.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 2.0f});
}

TEST_F(ColorCorrectTest, BoundsTakeGainOffsetAndGamma)
{
    connectAll();
    color("in_color").lowerBound = {0.25f, 0.5f, 1.0f, 0.5f};
    color("in_color").upperBound = {0.5f, 1.0f, 2.0f, 0.75f};
    color("col_gain").lowerBound = {1.0f, 2.0f, -1.0f, 2.0f};
    color("col_gain").upperBound = {2.0f, 3.0f, 1.0f, 4.0f};
    color("col_offset").lowerBound = {0.5f, -1.5f, 0.0f, -0.25f};
    color("col_offset").upperBound = {1.0f, -1.0f, 0.5f, 0.5f};
    color("col_gamma").lowerBound = {1.0f, 0.5f, 1.0f, 5.0f};
    color("col_gamma").upperBound = {2.0f, 0.5f, 1.0f, 5.0f};
    const ColorBounds bounds = colorBounds(node);
    // Lower: x = in * gain = 0.25, 1, -1, 1; min(x, x + offset) = 0.25, -0.5, -1, 0.75. Gamma: red
    // 0.25^(1/2) = 0.5 is larger; green (-0.5)^2 = 0.25 is larger.
    EXPECT_SAME_COLOR(bounds.lower, {0.25f, -0.5f, -1.0f, 0.75f});
    // Upper: y = 1, 3, 2, 3; max(y, y + offset) = 2, 3, 2.5, 3.5. Gamma: red 2^(1/2) is smaller, green
    // 3^2 = 9. Alpha takes no gamma.
    EXPECT_SAME_BITS(bounds.upper.r, 2.0f);
    EXPECT_SAME_BITS(bounds.upper.g, 9.0f);
    EXPECT_SAME_BITS(bounds.upper.b, 2.5f);
    EXPECT_SAME_BITS(bounds.upper.a, 3.5f);
}

TEST_F(ColorCorrectTest, LowerBoundsTakeTheSmallerGamma)
{
    connectAll();
    color("in_color").lowerBound = color("in_color").upperBound = {0.5f, 0.5f, 0.5f, 0.5f};
    color("col_gain").lowerBound = color("col_gain").upperBound = {1.0f, 1.0f, 1.0f, 1.0f};
    color("col_gamma").lowerBound = {0.5f, 2.0f, 0.5f, 1.0f};
    color("col_gamma").upperBound = {1.0f, 0.5f, 2.0f, 1.0f};
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_BITS(bounds.lower.r, 0.25f);
    EXPECT_SAME_BITS(bounds.lower.g, 0.25f);
    EXPECT_SAME_BITS(bounds.lower.b, 0.25f);
    EXPECT_SAME_BITS(bounds.upper.r, 0.5f);
    EXPECT_SAME_BITS(bounds.upper.g, std::sqrt(0.5f));
    EXPECT_SAME_BITS(bounds.upper.b, std::sqrt(0.5f));
}

TEST_F(ColorCorrectTest, BoundsAskNeitherAlphaNorHueNorClamps)
{
    connectAll();
    log.clear();
    colorBounds(node);
    std::sort(log.begin(), log.end());
    EXPECT_EQ(log, (CallLog{"col_gain.evalColorBounds", "col_gamma.evalColorBounds",
                            "col_offset.evalColorBounds", "in_color.evalColorBounds"}));
}

TEST_F(ColorCorrectTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

} // namespace
