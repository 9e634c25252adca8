#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct ColorAndAlphaTest : testing::Test {
    TestColor color{AColor{0.25f, 0.5f, 0.75f, 0.125f}};
    TestFloat alpha{0.375f};
    TestNode node{descriptor("TexColorAndAlpha")};
};

TEST_F(ColorAndAlphaTest, NothingConnectedIsOpaqueBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(ColorAndAlphaTest, TakesAlphaFromItsAlphaInputAlone)
{
    node.connect("color_input", color);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 1.0f});
    node.connect("alpha_input", alpha);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.375f});
}

TEST_F(ColorAndAlphaTest, AlphaAloneIsOnBlack)
{
    node.connect("alpha_input", alpha);
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 0.375f});
}

TEST_F(ColorAndAlphaTest, PassesNaNOn)
{
    color.value.g = kNaN;
    alpha.value = kNaN;
    node.connect("color_input", color).connect("alpha_input", alpha);
    EXPECT_SAME_COLOR(node.color(), {0.25f, kNaN, 0.75f, kNaN});
}

TEST_F(ColorAndAlphaTest, BoundsAreThoseOfItsInputs)
{
    color.lowerBound = {0.1f, 0.2f, 0.3f, 0.4f};
    color.upperBound = {0.5f, 0.6f, 0.7f, 0.8f};
    alpha.lowerBound = -1.0f;
    alpha.upperBound = 2.0f;
    node.connect("color_input", color);
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.1f, 0.2f, 0.3f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.6f, 0.7f, 1.0f});
    node.connect("alpha_input", alpha);
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.1f, 0.2f, 0.3f, -1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.6f, 0.7f, 2.0f});
}

TEST_F(ColorAndAlphaTest, GradientIsZero)
{
    node.connect("color_input", color);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

} // namespace
