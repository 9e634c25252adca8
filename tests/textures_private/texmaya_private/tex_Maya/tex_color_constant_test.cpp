#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

TestNode makeNode()
{
    return TestNode(descriptor("TexColorConstant"));
}

TEST(TexColorConstant, NothingConnectedIsOpaqueWhite)
{
    TestNode node = makeNode();
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {1.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST(TexColorConstant, DropsTheColorsOwnAlpha)
{
    TestColor color({0.25f, 0.5f, 0.75f, 0.25f});
    TestNode node = makeNode();
    node.connect("color", color);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 1.0f});
}

TEST(TexColorConstant, TakesAlphaFromItsAlphaInput)
{
    TestColor color({0.25f, 0.5f, 0.75f, 0.25f});
    TestFloat alpha(0.125f);
    TestNode node = makeNode();
    node.connect("alpha", alpha);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 0.125f});
    node.connect("color", color);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.125f});
}

TEST(TexColorConstant, PassesValuesThatAreNoColorsOn)
{
    TestColor color({kNaN, -2.0f, 1e30f, 0.0f});
    TestFloat alpha(kNaN);
    TestNode node = makeNode();
    node.connect("color", color).connect("alpha", alpha);
    EXPECT_SAME_COLOR(node.color(), {kNaN, -2.0f, 1e30f, kNaN});
}

TEST(TexColorConstant, BoundsAreThoseOfItsInputs)
{
    TestColor color;
    color.lowerBound = {0.1f, 0.2f, 0.3f, 0.4f};
    color.upperBound = {0.5f, 0.6f, 0.7f, 0.8f};
    TestFloat alpha;
    alpha.lowerBound = -1.0f;
    alpha.upperBound = 2.0f;

    TestNode node = makeNode();
    node.connect("color", color);
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.1f, 0.2f, 0.3f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.6f, 0.7f, 1.0f});

    node.connect("alpha", alpha);
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.1f, 0.2f, 0.3f, -1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.6f, 0.7f, 2.0f});
}

TEST(TexColorConstant, AlphaBoundsReplaceThoseOfTheDefaultColor)
{
    TestFloat alpha;
    alpha.lowerBound = 0.25f;
    alpha.upperBound = 0.5f;
    TestNode node = makeNode();
    node.connect("alpha", alpha);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {1.0f, 1.0f, 1.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 0.5f});
}

TEST(TexColorConstant, GradientIsZero)
{
    TestColor color({1.0f, 2.0f, 3.0f, 4.0f});
    TestNode node = makeNode();
    node.connect("color", color);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(TexColorConstant, WritesTheSourceOfItsColorAlone)
{
    TestColor color;
    color.label = "color";
    TestFloat alpha;
    alpha.label = "alpha";
    TestNode node = makeNode();
    node.connect("color", color).connect("alpha", alpha);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color theName theTag MaterialDescriptor\n");
}

TEST(TexColorConstant, WritesNothingForAnUnsetColor)
{
    TestNode node = makeNode();
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "");
}

} // namespace
