#include "support/gpu_slots.h"
#include "support/utility_draws.h"
#include "tex_maya_test.h"

#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;

struct ColorMaskTest : testing::Test {
    ColorMaskTest()
    {
        color.value = {0.25f, 0.5f, 1.0f, 0.125f};
        alpha.value = 0.75f;
        mask.value = {1.0f, 0.0f, 0.5f, 0.125f};
        maskAlpha.value = 0.5f;
    }
    void connectAll()
    {
        node.connect("in_color", color).connect("in_alpha", alpha).connect("preserve_color", preserve);
        node.connect("mask", mask).connect("mask_alpha", maskAlpha);
    }

    CallLog log;
    TestColor color{"in_color", &log}, mask{"mask", &log};
    TestFloat alpha{"in_alpha", &log}, preserve{"preserve_color", &log}, maskAlpha{"mask_alpha", &log};
    TestNode node{descriptor("TexColorMask")};
};

TEST_F(ColorMaskTest, NothingConnectedIsTransparentWhite)
{
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 0.0f});
}

TEST_F(ColorMaskTest, BlendsTowardsTheMaskAndTakesAlphaAway)
{
    connectAll();
    EXPECT_SAME_COLOR(node.color(), {0.625f, 0.25f, 0.75f, 0.25f});
}

TEST_F(ColorMaskTest, AlphaMayBecomeNegativeAndStrengthsBeyondOneExtrapolate)
{
    connectAll();
    maskAlpha.value = 2.0f;
    EXPECT_SAME_COLOR(node.color(), {1.75f, -0.5f, 0.0f, -1.25f});
}

TEST_F(ColorMaskTest, PreservesTheColorButNotTheAlpha)
{
    connectAll();
    for (float on : {1.0f, -1.0f, kNaN}) {
        preserve.value = on;
        EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 1.0f, 0.25f});
    }
    preserve.value = -0.0f;
    EXPECT_SAME_COLOR(node.color(), {0.625f, 0.25f, 0.75f, 0.25f});
}

TEST_F(ColorMaskTest, AWeakMaskChangesNothing)
{
    connectAll();
    for (float weak : {-1.0f, 0.0f, 1e-10f, kNaN}) { // max(0, NaN) is 0
        maskAlpha.value = weak;
        EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 1.0f, 0.75f});
    }
    maskAlpha.value = 0.5f;
    preserve.value = 1.0f;
    EXPECT_SAME_BITS(node.color().a, 0.25f);
}

TEST_F(ColorMaskTest, TakesTheStrengthFromTheLuminanceOfTheMask)
{
    connectAll();
    node.set("mask_alpha_is_luminance", 1.0f);
    mask.value = {0.5f, 0.5f, 0.5f, 1.0f};
    const AColor c = node.color();
    EXPECT_SAME_BITS(c.r, 0.375f);
    EXPECT_SAME_BITS(c.g, 0.5f);
    EXPECT_SAME_BITS(c.b, 0.75f);
    EXPECT_SAME_BITS(c.a, 0.25f);
    mask.value = {1.0f, 0.0f, 0.0f, 1.0f};
    EXPECT_SAME_BITS(node.color().a, 0.45f);
    mask.value = {0.0f, 1.0f, 0.0f, 1.0f};
    EXPECT_FLOAT_EQ(node.color().a, 0.16f);
    mask.value = {0.0f, 0.0f, 1.0f, 1.0f};
    EXPECT_SAME_BITS(node.color().a, 0.64f);
    mask.value = {-1.0f, 0.0f, 0.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 1.0f, 0.75f});
}

TEST_F(ColorMaskTest, EverySettingButZeroTakesTheLuminance)
{
    connectAll();
    mask.value = {0.0f, 0.0f, 0.0f, 1.0f};
    for (float on : {0.001f, -1.0f, kNaN}) {
        node.set("mask_alpha_is_luminance", on);
        EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 1.0f, 0.75f});
    }
    node.set("mask_alpha_is_luminance", -0.0f);
    EXPECT_SAME_BITS(node.color().a, 0.25f);
}

TEST_F(ColorMaskTest, AsksPreserveColorOnlyBehindAMaskThatCounts)
{
    connectAll();
    log.clear();
    node.color();
    EXPECT_EQ(log, (CallLog{"in_color.evalColor", "in_alpha.evalFloat", "mask.evalColor",
                            "mask_alpha.evalFloat", "preserve_color.evalFloat"}));
    maskAlpha.value = 0.0f;
    log.clear();
    node.color();
    EXPECT_EQ(
        log, (CallLog{"in_color.evalColor", "in_alpha.evalFloat", "mask.evalColor", "mask_alpha.evalFloat"}));
    node.set("mask_alpha_is_luminance", 1.0f);
    log.clear();
    node.color();
    EXPECT_EQ(log, (CallLog{"in_color.evalColor", "in_alpha.evalFloat", "mask.evalColor",
                            "preserve_color.evalFloat"}));
}

TEST_F(ColorMaskTest, PassesNaNOn)
{
    connectAll();
    node.set("mask_alpha_is_luminance", 1.0f);
    mask.value = {kNaN, 0.0f, 0.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {kNaN, kNaN, kNaN, kNaN});
}

TEST_F(ColorMaskTest, BoundsOfNothingConnected)
{
    const ColorBounds bounds = colorBounds(node);
    // The luminance of white is 1 up to rounding.
    EXPECT_SAME_BITS(bounds.lower.r, 1.0f);
    EXPECT_SAME_BITS(bounds.lower.g, 1.0f);
    EXPECT_SAME_BITS(bounds.lower.b, 1.0f);
    EXPECT_NEAR(bounds.lower.a, 0.0f, tolerance::kSum);
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(ColorMaskTest, BoundsTakeTheWeakestAndTheStrongestMask)
{
    connectAll();
    color.lowerBound = {0.0f, 0.5f, 0.25f, 0.5f};
    color.upperBound = {1.0f, 0.5f, 0.75f, 0.875f};
    mask.lowerBound = {0.0f, 0.0f, 0.0f, 9.0f}; // luminance 0
    mask.upperBound = {1.0f, 0.0f, 0.0f, 9.0f}; // luminance 0.3
    maskAlpha.lowerBound = 0.25f;
    maskAlpha.upperBound = 0.5f;
    preserve.lowerBound = preserve.upperBound = 1.0f;
    const ColorBounds bounds = colorBounds(node);
    // From 0 to 0.5: min(x, x / 2 + m / 2), max(x, x / 2 + m / 2).
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.25f, 0.125f, 0.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 0.5f, 0.75f, 0.875f});
}

TEST_F(ColorMaskTest, BoundsOfAlphaIgnoreAStrengthBelowZero)
{
    connectAll();
    color.lowerBound = {0.5f, 0.5f, 0.5f, 0.5f};
    color.upperBound = {0.5f, 0.5f, 0.5f, 0.75f};
    mask.lowerBound = mask.upperBound = {-1.0f, -1.0f, -1.0f, 1.0f};
    maskAlpha.lowerBound = -3.0f;
    maskAlpha.upperBound = -2.0f;
    const ColorBounds bounds = colorBounds(node);
    // Strengths -3 and -1 (the luminance of -1): 0.5 * 4 + 3 = 5, and 0.5 * 2 + 1 = 2.
    EXPECT_SAME_BITS(bounds.lower.r, 2.0f);
    EXPECT_SAME_BITS(bounds.upper.g, 5.0f);
    EXPECT_SAME_BITS(bounds.lower.a, 0.5f);
    EXPECT_SAME_BITS(bounds.upper.a, 0.75f);
}

TEST_F(ColorMaskTest, BoundsDropThoseOfTheAlphaInput)
{
    alpha.lowerBound = -5.0f;
    alpha.upperBound = 5.0f;
    node.connect("in_alpha", alpha);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_NEAR(bounds.lower.a, 0.0f, tolerance::kSum);
    EXPECT_SAME_BITS(bounds.upper.a, 1.0f);
    EXPECT_EQ(log, (CallLog{"in_alpha.evalFloatBounds"}));
}

TEST_F(ColorMaskTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(ColorMaskTest, WritesTheBlendWhilePreserveColorIsUnset)
{
    node.connect("in_color", color).connect("mask", mask).connect("mask_alpha", maskAlpha);
    // "alpha" is used twice and hoisted into slot 0.
    SlotLines expected;
    expected.texture("mask_alpha");
    expected.texture("in_color").grey("1.000000").reference(2).operation(-979).operation(-980);
    expected.texture("mask").reference(2).operation(-980);
    expected.operation(-979, {1}).finish(1);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, expected.text);
}

TEST_F(ColorMaskTest, WritesTheColorAloneWhereItIsAlwaysPreserved)
{
    connectAll();
    preserve.lowerBound = preserve.upperBound = 1.0f;
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "in_color theName theTag MaterialDescriptor\n");
}

TEST_F(ColorMaskTest, WritesBothBranchesAndTheLuminance)
{
    connectAll();
    node.set("mask_alpha_is_luminance", 1.0f);
    preserve.upperBound = 1.0f;
    // The colour and "alpha" are used twice and hoisted into the slots 0 and 1.
    SlotLines expected;
    expected.texture("in_color");
    expected.texture("mask").operation(-973, {2});
    expected.texture("preserve_color").reference(2);
    expected.reference(3).grey("1.000000").reference(4).operation(-979).operation(-980);
    expected.texture("mask").reference(4).operation(-980);
    expected.operation(-979, {1});
    expected.operation(-948).finish(2);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, expected.text);
}

TEST_F(ColorMaskTest, AgreesWithItsPlainTwinWithoutAllocating)
{
    Draws draws(20151017);
    TestColor drawnColor, drawnMask;
    TestFloat drawnAlpha, drawnPreserve, drawnMaskAlpha;
    for (int i = 0; i < 4000; ++i) {
        TestNode drawn(descriptor("TexColorMask"));
        plain::ColorMask twin;
        drawInput(draws, drawn, "in_color", drawnColor, twin.in_color, draws.color());
        drawInput(draws, drawn, "in_alpha", drawnAlpha, twin.in_alpha, draws.number());
        drawInput(draws, drawn, "preserve_color", drawnPreserve, twin.preserve_color,
                  draws.chance(0.7) ? 0.0f : draws.number());
        drawInput(draws, drawn, "mask", drawnMask, twin.mask, draws.color());
        drawInput(draws, drawn, "mask_alpha", drawnMaskAlpha, twin.mask_alpha, draws.number());
        const float byLuminance = draws.chance(0.5) ? 1.0f : 0.0f;
        drawn.set("mask_alpha_is_luminance", byLuminance);
        twin.mask_alpha_is_luminance = static_cast<double>(byLuminance);
        const plain::Rgba expected = twin();
        // A luminance of 1 up to rounding: an infinite colour times nearly 0 is infinite or no number.
        if (twin.rest != 0.0 && std::fabs(twin.rest) < 1e-6) continue;
        const auto actual = withoutAllocating([&] { return drawn.color(); });
        ASSERT_TRUE(agrees(actual, expected)) << i;
    }
}

} // namespace
