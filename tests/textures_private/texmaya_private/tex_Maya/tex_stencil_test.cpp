#include "stencil_fixture.h"

namespace {

using namespace support;
using OUtils::AColor;

TEST_F(StencilTest, StencilWithNothingConnectedHasNoCoordinatesAndIsGrey)
{
    TestNode bare(descriptor("TexStencil"));
    EXPECT_SAME_COLOR(bare.color(), {0.5f, 0.5f, 0.5f, 1.0f});
}

TEST_F(StencilTest, StencilWithCoordinatesAloneIsOpaqueWhite)
{
    TestNode bare(descriptor("TexStencil"));
    bare.connect("uvwgen", generator);
    EXPECT_SAME_COLOR(bare.color(), {1.0f, 1.0f, 1.0f, 1.0f});
    TestFloat full(1.0f);
    bare.connect("mask", full);
    EXPECT_SAME_COLOR(bare.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(StencilTest, StencilWithoutCoordinatesIsItsNoUVWColorAsItStands)
{
    TestColor noUVW({2.0f, 3.0f, 4.0f, 5.0f});
    generator.valid = 0;
    node.connect("nouvw_color", noUVW).set("compatibility_with", 1).set("invert", 1);
    node.set("alpha_from_intensity", 1);
    EXPECT_SAME_COLOR(color(), {2.0f, 3.0f, 4.0f, 5.0f});
    EXPECT_EQ(log, CallLog());
}

TEST_F(StencilTest, StencilTakesTheLowestChannelOfASurface)
{
    TestSurface surface; // at (1, 2), a corner of the square
    TestNode mapped(descriptor("TexStencil"));
    mapped.connect("image", image).connect("default_color", background);
    mapped.context.surfaceObject = &surface;
    EXPECT_SAME_COLOR(mapped.color(), {0.2f, 0.4f, 0.6f, 0.8f});
    EXPECT_EQ(surface.sampledChannels, (std::vector<int>{-1}));
    mapped.set("edge_blend", 0.2f);
    EXPECT_SAME_COLOR(mapped.color(), {0.9f, 0.7f, 0.5f, 0.3f});
    surface.mapped = false;
    ++mapped.context.sampleStamp;
    EXPECT_SAME_COLOR(mapped.color(), {0.5f, 0.5f, 0.5f, 1.0f});
}

struct RefusingSurface : TestSurface {
    int getLocalUVW(const OUtils::OmbrixContext&, int, OUtils::UVWSample*) override { return 0; }
};

TEST_F(StencilTest, StencilCountsARefusingSurfaceAsTheOrigin)
{
    RefusingSurface surface;
    TestNode mapped(descriptor("TexStencil"));
    mapped.connect("image", image).connect("default_color", background);
    mapped.context.surfaceObject = &surface;
    EXPECT_SAME_COLOR(mapped.color(), {0.2f, 0.4f, 0.6f, 0.8f});
}

TEST_F(StencilTest, StencilPrefersItsGeneratorAndIgnoresOneThatIsNone)
{
    TestSurface surface;
    node.context.surfaceObject = &surface;
    node.set("edge_blend", 0.2f);
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    EXPECT_TRUE(surface.sampledChannels.empty());
    generator.generates = false;
    node.set("edge_blend", 0.2f);
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
    EXPECT_EQ(surface.sampledChannels.size(), 1u);
}

TEST_F(StencilTest, StencilWithoutEdgeBlendShowsItsImageWithPostProcessing)
{
    TestColor factor({2.0f, 3.0f, 4.0f, 5.0f});
    at(0.0f, 0.0f);
    node.connect("color_mult", factor);
    EXPECT_SAME_COLOR(color(), {0.2f * 2.0f, 0.4f * 3.0f, 0.6f * 4.0f, 0.8f});
    EXPECT_EQ(log, CallLog{"image.evalColor"});
}

TEST_F(StencilTest, StencilShowsItsBackgroundWithoutPostProcessing)
{
    TestColor factor({2.0f, 3.0f, 4.0f, 5.0f});
    at(0.01f, 0.01f);
    node.set("edge_blend", 0.2f).set("invert", 1).set("alpha_from_intensity", 2);
    node.connect("color_mult", factor);
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
    EXPECT_EQ(log, CallLog{"background.evalColor"});
}

TEST_F(StencilTest, StencilBlendsAllFourChannelsAndPostProcessesTheBlend)
{
    mask.value = 0.5f;
    node.connect("mask", mask);
    AColor blend = color();
    EXPECT_SAME_BITS(blend.r, 0.55);
    EXPECT_SAME_BITS(blend.g, 0.55);
    EXPECT_SAME_BITS(blend.b, 0.55);
    EXPECT_SAME_BITS(blend.a, 0.55);
    TestColor factor({2.0f, 3.0f, 4.0f, 5.0f});
    node.connect("color_mult", factor);
    blend = color();
    EXPECT_SAME_BITS(blend.r, 1.1);
    EXPECT_SAME_BITS(blend.b, 2.2);
    EXPECT_SAME_BITS(blend.a, 0.55);
}

TEST_F(StencilTest, StencilMasksFromAMillionthOn)
{
    node.connect("mask", mask);
    mask.value = 9.9e-7f;
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    mask.value = -5.0f;
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    mask.value = kNaN;
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    mask.value = 1.0f;
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
    mask.value = 7.0f;
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
}

TEST_F(StencilTest, StencilTakesOutTheKeyedColor)
{
    key.value = image.value;
    node.connect("color_key", key).set("key_masking", 1).set("invert", 1);
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
    key.value.r = 0.25f;
    EXPECT_SAME_BITS(color().a, 1.0f - 0.8f);
}

TEST_F(StencilTest, StencilWithAPositiveKeyTakesOutAllOtherColors)
{
    key.value = image.value;
    node.connect("color_key", key).set("key_masking", 1).set("positive_key", 1);
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    key.value.r = 0.25f;
    EXPECT_SAME_COLOR(color(), {0.9f, 0.7f, 0.5f, 0.3f});
}

TEST_F(StencilTest, StencilIgnoresAPositiveKeyWithoutKeyMasking)
{
    node.connect("color_key", key).set("positive_key", 1);
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    EXPECT_EQ(log, CallLog{"image.evalColor"});
}

TEST_F(StencilTest, StencilKeysWhiteByDefault)
{
    TestNode bare(descriptor("TexStencil"));
    bare.connect("uvwgen", generator).set("key_masking", 1);
    EXPECT_SAME_COLOR(bare.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(StencilTest, StencilDoesNotAskForTheMaskWhereTheKeyTakesOut)
{
    key.value = image.value;
    mask.value = 0.25f;
    node.connect("color_key", key).connect("mask", mask).set("key_masking", 1);
    node.connect("hue_range", hue).connect("sat_range", saturation).connect("val_range", value);
    log.clear();
    color();
    EXPECT_EQ(log, (CallLog{"hue.evalFloat", "sat.evalFloat", "val.evalFloat", "image.evalColor",
                            "key.evalColor", "background.evalColor"}));
    key.value.r = 0.25f;
    log.clear();
    EXPECT_SAME_BITS(color().r, 0.2 * 0.75 + 0.9 * 0.25);
    EXPECT_EQ(log, (CallLog{"hue.evalFloat", "sat.evalFloat", "val.evalFloat", "image.evalColor",
                            "key.evalColor", "mask.evalFloat", "image.evalColor", "background.evalColor"}));
}

TEST_F(StencilTest, StencilInvertsBeforeItTakesAlphaAndGain)
{
    TestColor factor({0.5f, 0.5f, 0.5f, 9.0f}), offset({1.0f, 2.0f, 3.0f, 9.0f});
    TestFloat alphaFactor(0.5f), alphaOffset(4.0f);
    node.set("invert", 1).set("alpha_from_intensity", 1).connect("color_mult", factor);
    node.connect("color_offset", offset).connect("alpha_mult", alphaFactor);
    node.connect("alpha_offset", alphaOffset);
    // Inverted 0.8, 0.6, 0.4: luminance 0.24 + 0.354 + 0.044.
    for (int compatibility : {0, 1, 7}) {
        node.set("compatibility_with", compatibility);
        const AColor shown = color();
        EXPECT_SAME_BITS(shown.r, 1.4);
        EXPECT_SAME_BITS(shown.g, 2.3);
        EXPECT_SAME_BITS(shown.b, 3.2);
        EXPECT_SAME_BITS(shown.a, 0.638 * 0.5 + 4.0);
    }
}

TEST_F(StencilTest, StencilTakesTheLuminanceForItsAlphaInEveryModeButZero)
{
    // 0.06 + 0.236 + 0.066
    for (int mode : {1, 2, 3, -1}) {
        node.set("alpha_from_intensity", mode);
        EXPECT_SAME_BITS(color().a, 0.362) << mode;
    }
    node.set("alpha_from_intensity", 0);
    EXPECT_SAME_BITS(color().a, 0.8f);
}

TEST_F(StencilTest, StencilInvertsToZeroAtMostAndAlphaOnlyWhenAsked)
{
    image.value = {1.5f, 0.25f, kNaN, 2.0f};
    node.set("invert", 1);
    EXPECT_SAME_COLOR(color(), {0.0f, 0.75f, 0.0f, 0.0f});
    node.set("invert_alpha", 0);
    EXPECT_SAME_COLOR(color(), {0.0f, 0.75f, 0.0f, 2.0f});
}

TEST_F(StencilTest, StencilNegatesInARawLookUpAndDoesNothingElse)
{
    TestColor factor({2.0f, 3.0f, 4.0f, 5.0f});
    node.connect("color_mult", factor).set("alpha_from_intensity", 1);
    node.context.shadeFlags = OUtils::rawTextureLookup;
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.8f});
    node.set("invert", 1);
    EXPECT_SAME_COLOR(color(), {-0.2f, -0.4f, -0.6f, 0.8f});
}

TEST_F(StencilTest, StencilAsksOnceAPointWhateverItEndsIn)
{
    const auto asksOnce = [&](const AColor& expected) {
        log.clear();
        EXPECT_SAME_COLOR(color(), expected);
        const std::size_t asked = log.size();
        const AColor before = image.value;
        image.value.r = background.value.r = 0.125f;
        EXPECT_SAME_COLOR(node.color(), expected);
        EXPECT_EQ(log.size(), asked);
        image.value = before;
        background.value.r = 0.9f;
    };
    asksOnce({0.2f, 0.4f, 0.6f, 0.8f});
    node.context.shadeFlags = OUtils::rawTextureLookup;
    asksOnce({0.2f, 0.4f, 0.6f, 0.8f});
    mask.value = 1.0f;
    node.connect("mask", mask);
    asksOnce({0.9f, 0.7f, 0.5f, 0.3f});
    generator.valid = 0;
    asksOnce({0.5f, 0.5f, 0.5f, 1.0f});
    generator.valid = 1;
    EXPECT_SAME_COLOR(node.color(), {0.5f, 0.5f, 0.5f, 1.0f});
}

TEST_F(StencilTest, StencilAsksAnewWithoutMemo)
{
    node.context.shadeFlags = OUtils::noTexCache;
    EXPECT_SAME_COLOR(node.color(), {0.2f, 0.4f, 0.6f, 0.8f});
    image.value.r = 0.5f;
    EXPECT_SAME_COLOR(node.color(), {0.5f, 0.4f, 0.6f, 0.8f});
    node.context.shadeFlags = 0;
    node.context.threadRecord->threadIndex = 1;
    EXPECT_SAME_COLOR(node.color(), {0.5f, 0.4f, 0.6f, 0.8f});
    image.value.r = 0.75f;
    EXPECT_SAME_COLOR(node.color(), {0.75f, 0.4f, 0.6f, 0.8f});
}

TEST_F(StencilTest, StencilBoundsAreThoseOfTheImageLimitedByTheBackgroundOnBothSides)
{
    image.lowerBound = {0.1f, 0.5f, -1.0f, 0.9f};
    image.upperBound = {0.6f, 0.7f, 2.0f, 1.0f};
    background.lowerBound = {0.2f, 0.3f, 0.0f, 0.0f};
    background.upperBound = {0.5f, 0.9f, 1.0f, 0.5f};
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.1f, 0.3f, -1.0f, 0.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.7f, 1.0f, 0.5f});
}

TEST_F(StencilTest, StencilBoundsAreLimitedAgainAfterThePostProcessing)
{
    TestColor factor;
    factor.lowerBound = factor.upperBound = {4.0f, 4.0f, 4.0f, 4.0f};
    image.lowerBound = {0.1f, 0.1f, 0.1f, 0.1f};
    image.upperBound = {0.5f, 0.5f, 0.5f, 0.5f};
    background.lowerBound = {0.2f, 0.3f, 0.4f, 0.5f};
    background.upperBound = {0.9f, 2.5f, 1.0f, 0.75f};
    node.connect("color_mult", factor);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.2f, 0.3f, 0.4f, 0.1f});
    EXPECT_SAME_COLOR(bounds.upper, {0.9f, 2.0f, 1.0f, 0.5f});
}

TEST_F(StencilTest, StencilBoundsWithNothingConnectedAreTheUnsetBackground)
{
    TestNode bare(descriptor("TexStencil"));
    const ColorBounds bounds = colorBounds(bare);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(StencilTest, StencilGradientIsThatOfWhatShows)
{
    image.gradient = {1.0f, 2.0f, 3.0f, 4.0f};
    background.gradient = {10.0f, 20.0f, 30.0f, 40.0f};
    EXPECT_SAME_COLOR(gradient(), {1.0f, 2.0f, 3.0f, 4.0f});
    mask.value = 0.25f;
    node.connect("mask", mask);
    EXPECT_SAME_COLOR(gradient(), {3.25f, 6.5f, 9.75f, 13.0f});
    mask.value = 1.0f;
    node.set("invert", 1);
    EXPECT_SAME_COLOR(gradient(), {10.0f, 20.0f, 30.0f, 40.0f});
    mask.value = 0.25f;
    EXPECT_SAME_COLOR(gradient(), {-3.25f, -6.5f, -9.75f, -13.0f});
}

TEST_F(StencilTest, StencilGradientWithoutCoordinatesOrInputsIsZero)
{
    generator.valid = 0;
    EXPECT_SAME_COLOR(gradient(), AColor{});
    generator.valid = 1;
    TestNode bare(descriptor("TexStencil"));
    bare.connect("uvwgen", generator).connect("mask", mask);
    for (float strength : {0.0f, 0.5f, 1.0f}) {
        mask.value = strength;
        AColor result = kUnwrittenColor;
        bare.texture()->evalColorGradient(&result, bare.context);
        EXPECT_SAME_COLOR(result, AColor{});
    }
}

TEST_F(StencilTest, StencilGradientOfAProductCountsTheImageAlsoInABlend)
{
    TestColor factor({0.5f, 0.5f, 2.0f, 9.0f}); // intensity 1
    factor.gradient = {10.0f, 20.0f, 30.0f, 40.0f};
    image.value = {0.25f, 0.25f, 1.0f, 9.0f}; // intensity 0.5
    image.gradient = {1.0f, 2.0f, 3.0f, 4.0f};
    background.gradient = {3.0f, 4.0f, 5.0f, 6.0f};
    mask.value = 0.5f;
    node.connect("color_mult", factor).connect("mask", mask);
    const AColor product = gradient();
    EXPECT_SAME_BITS(product.r, 2.0f + 5.0f);
    EXPECT_SAME_BITS(product.g, 3.0f + 10.0f);
    EXPECT_SAME_BITS(product.b, 4.0f + 15.0f);
    EXPECT_SAME_BITS(product.a, 5.0f + 20.0f);
    TestNode bare(descriptor("TexStencil"));
    bare.connect("uvwgen", generator).connect("color_mult", factor);
    AColor result = kUnwrittenColor;
    bare.texture()->evalColorGradient(&result, bare.context);
    EXPECT_SAME_BITS(result.a, 40.0f);
}

TEST_F(StencilTest, StencilOutputsFollowItsColor)
{
    auto* output = ombrix::boundOutput(*node.life()->paramList, "out_transparency");
    AColor transparency = kUnwrittenColor;
    static_cast<OUtils::TextureInterface*>(output)->evalColor(&transparency, node.context);
    EXPECT_SAME_COLOR(transparency, {1.0f - 0.8f, 1.0f - 0.8f, 1.0f - 0.8f, 1.0f});
}

} // namespace
