#include "host/params/host_parameters.h"
#include "support/utility_draws.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct RgbToHsvTest : testing::Test {
    AColor converted(const AColor& color)
    {
        input.value = color;
        node.connect("inRgb", input);
        return node.color();
    }

    TestColor input{"rgb", nullptr};
    TestNode node{descriptor("TexRGBToHSV")};
};

TEST_F(RgbToHsvTest, UnsetIsZeroInAllChannelsAndInTheBounds)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 0.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(RgbToHsvTest, ConvertsTheSixthsOfTheCircleAndPassesAlpha)
{
    EXPECT_SAME_COLOR(converted({1.0f, 0.0f, 0.0f, 0.5f}), {0.0f, 1.0f, 1.0f, 0.5f});
    EXPECT_SAME_COLOR(converted({1.0f, 1.0f, 0.0f, 0.0f}), {60.0f, 1.0f, 1.0f, 0.0f});
    EXPECT_SAME_COLOR(converted({0.0f, 0.5f, 0.0f, 1.0f}), {120.0f, 1.0f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(converted({0.0f, 1.0f, 1.0f, 1.0f}), {180.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({0.0f, 0.0f, 2.0f, 1.0f}), {240.0f, 1.0f, 2.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({1.0f, 0.0f, 1.0f, 1.0f}), {300.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({1.0f, 0.5f, 0.75f, 1.0f}), {330.0f, 0.5f, 1.0f, 1.0f});
}

TEST_F(RgbToHsvTest, AGreyHasNeitherHueNorSaturation)
{
    EXPECT_SAME_COLOR(converted({0.5f, 0.5f, 0.5f, 1.0f}), {0.0f, 0.0f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(converted({-2.0f, -2.0f, -2.0f, 1.0f}), {0.0f, 0.0f, -2.0f, 1.0f});
}

TEST_F(RgbToHsvTest, ANegativeRedHasAHueAboveZero)
{
    // Largest 1, smallest -1: h = ((-1 - 0.5) / 2 + 4) 60, s = 2.
    EXPECT_SAME_COLOR(converted({-1.0f, 0.5f, 1.0f, 1.0f}), {195.0f, 2.0f, 1.0f, 1.0f});
    // Red is the largest of three negatives: (-1 - -0.5) / 0.75 60 = -40, and 320 after the shift.
    const AColor shifted = converted({-0.25f, -1.0f, -0.5f, 1.0f});
    EXPECT_SAME_BITS(shifted.r, 320.0f);
    EXPECT_SAME_BITS(shifted.g, -3.0f);
    EXPECT_SAME_BITS(shifted.b, -0.25f);
}

TEST_F(RgbToHsvTest, PassesNaNOn)
{
    EXPECT_SAME_COLOR(converted({kNaN, kNaN, kNaN, kNaN}), {kNaN, kNaN, kNaN, kNaN});
}

TEST_F(RgbToHsvTest, BoundsAreEachConvertedByThemselves)
{
    input.lowerBound = {0.0f, 0.0f, 0.5f, 0.25f};
    input.upperBound = {1.0f, 0.5f, 0.5f, 0.75f};
    node.connect("inRgb", input);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {240.0f, 1.0f, 0.5f, 0.25f}); // above the upper hue
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.5f, 1.0f, 0.75f});
}

TEST_F(RgbToHsvTest, BoundsThatTheInputLeavesUnwrittenAreConvertedAsTheyStand)
{
    struct Silent : TestColor {
        void evalColorBounds(AColor*, AColor*) override {}
    } silent;
    node.connect("inRgb", silent);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, kUnwritten, kUnwritten});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, kUnwritten, kUnwritten});
}

TEST_F(RgbToHsvTest, GradientIsZero)
{
    node.connect("inRgb", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(RgbToHsvTest, AnswersItsOutputItself)
{
    EXPECT_EQ(ombrix::boundOutput(*node.life()->paramList, "color"), node.texture());
}

TEST_F(RgbToHsvTest, WritesItsInputAndTheOperator)
{
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.0 0.0 0.0 0.0\nsubtex\nbitmap -987\n");
    node.connect("inRgb", input);
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "rgb theName theTag MaterialDescriptor\nsubtex\nbitmap -987\n");
    input.hasSource = false;
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "subtex\nbitmap -987\n");
}

TEST_F(RgbToHsvTest, AgreesWithItsPlainTwin)
{
    Draws draws(2008061301);
    node.connect("inRgb", input);
    for (int i = 0; i < 20000; ++i) {
        input.value = draws.color();
        ASSERT_TRUE(agrees(node.color(), plain::toHsv(widened(input.value)))) << i;
    }
}

} // namespace
