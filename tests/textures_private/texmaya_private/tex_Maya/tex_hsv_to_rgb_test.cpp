#include "host/params/host_parameters.h"
#include "support/utility_draws.h"
#include "tex_maya_test.h"

#include <limits>

namespace {

using namespace support;
using OUtils::AColor;

struct HsvToRgbTest : testing::Test {
    AColor converted(const AColor& color)
    {
        input.value = color;
        node.connect("inHsv", input);
        return node.color();
    }

    TestColor input{"hsv", nullptr};
    TestNode node{descriptor("TexHSVToRGB")};
};

TEST_F(HsvToRgbTest, UnsetIsZeroInAllChannelsAndInTheBounds)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 0.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(HsvToRgbTest, ConvertsTheSixthsOfTheCircleAndPassesAlpha)
{
    // s 0.5 and v 1: p = 0.5, and half way through a sixth q = t = 0.75.
    EXPECT_SAME_COLOR(converted({30.0f, 0.5f, 1.0f, 0.25f}), {1.0f, 0.75f, 0.5f, 0.25f});
    EXPECT_SAME_COLOR(converted({90.0f, 0.5f, 1.0f, 1.0f}), {0.75f, 1.0f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(converted({150.0f, 0.5f, 1.0f, 1.0f}), {0.5f, 1.0f, 0.75f, 1.0f});
    EXPECT_SAME_COLOR(converted({210.0f, 0.5f, 1.0f, 1.0f}), {0.5f, 0.75f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({270.0f, 0.5f, 1.0f, 1.0f}), {0.75f, 0.5f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({330.0f, 0.5f, 1.0f, 1.0f}), {1.0f, 0.5f, 0.75f, 1.0f});
}

TEST_F(HsvToRgbTest, AHueAbove360IsBlack)
{
    EXPECT_SAME_COLOR(converted({361.0f, 1.0f, 1.0f, 1.0f}), {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({361.0f, 0.0f, 1.0f, 0.5f}), {0.0f, 0.0f, 0.0f, 0.5f});
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    EXPECT_SAME_COLOR(converted({kInfinity, 1.0f, 1.0f, 1.0f}), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(HsvToRgbTest, AHueOf360IsRed)
{
    EXPECT_SAME_COLOR(converted({360.0f, 1.0f, 1.0f, 1.0f}), {1.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(HsvToRgbTest, ANegativeHueFallsIntoTheFirstSixth)
{
    EXPECT_SAME_COLOR(converted({-90.0f, 0.5f, 1.0f, 1.0f}), {1.0f, 0.75f, 0.5f, 1.0f});
}

TEST_F(HsvToRgbTest, SaturationIsAtMostOneAndMayBeNegative)
{
    EXPECT_SAME_COLOR(converted({0.0f, 2.0f, 1.0f, 1.0f}), {1.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(converted({0.0f, -1.0f, 1.0f, 1.0f}), {1.0f, 2.0f, 2.0f, 1.0f});
}

TEST_F(HsvToRgbTest, WithoutSaturationAllChannelsAreTheValue)
{
    EXPECT_SAME_COLOR(converted({200.0f, 0.0f, 0.375f, 1.0f}), {0.375f, 0.375f, 0.375f, 1.0f});
    EXPECT_SAME_COLOR(converted({kNaN, 0.0f, 0.375f, 1.0f}), {0.375f, 0.375f, 0.375f, 1.0f});
}

TEST_F(HsvToRgbTest, AHueThatIsNoNumberFallsIntoTheFirstSixth)
{
    EXPECT_SAME_COLOR(converted({kNaN, 0.5f, 1.0f, 1.0f}), {1.0f, kNaN, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(converted({60.0f, kNaN, 1.0f, kNaN}), {kNaN, 1.0f, kNaN, kNaN});
}

TEST_F(HsvToRgbTest, BoundsAreEachConvertedByThemselves)
{
    input.lowerBound = {0.0f, 1.0f, 1.0f, 0.25f};
    input.upperBound = {240.0f, 1.0f, 1.0f, 0.75f};
    node.connect("inHsv", input);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {1.0f, 0.0f, 0.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 1.0f, 0.75f});
}

TEST_F(HsvToRgbTest, GradientIsZero)
{
    node.connect("inHsv", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(HsvToRgbTest, AnswersItsOutputItself)
{
    EXPECT_EQ(ombrix::boundOutput(*node.life()->paramList, "color"), node.texture());
}

TEST_F(HsvToRgbTest, WritesItsInputAndTheOperator)
{
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.0 0.0 0.0 0.0\nsubtex\nbitmap -965\n");
    node.connect("inHsv", input);
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "hsv theName theTag MaterialDescriptor\nsubtex\nbitmap -965\n");
}

TEST_F(HsvToRgbTest, AgreesWithItsPlainTwin)
{
    Draws draws(2008061302);
    node.connect("inHsv", input);
    for (int i = 0; i < 20000; ++i) {
        input.value = draws.color();
        input.value.r *= 150.0f;
        const AColor& in = input.value;
        // The fraction of a sixth that starts just below 0 rounds to another sixth than the twin's.
        if (in.r < 0.0f && in.r > -1e-3f) continue;
        plain::Rgba expected{0, 0, 0, static_cast<double>(in.a)};
        if (!(in.r > 360.0f)) {
            plain::Rgba hsv = widened(in);
            hsv.g = plain::least(hsv.g, 1.0);
            expected = plain::fromHueSixth(hsv);
        }
        // Six sixths a circle grow the error of the hue's fraction.
        ASSERT_TRUE(agrees(node.color(), expected, 10.0)) << i;
    }
}

} // namespace
