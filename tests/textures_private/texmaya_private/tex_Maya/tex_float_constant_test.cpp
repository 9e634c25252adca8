#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

TestNode makeNode()
{
    return TestNode(descriptor("TexFloatConstant"));
}

TEST(TexFloatConstant, NothingConnectedIsOne)
{
    TestNode node = makeNode();
    EXPECT_SAME_BITS(node.value(), 1.0f);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 1.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
}

TEST(TexFloatConstant, PassesItsInputOn)
{
    TestFloat input;
    input.lowerBound = -3.0f;
    input.upperBound = 5.0f;
    TestNode node = makeNode();
    node.connect("in_float", input);
    for (float value : {0.25f, -0.0f, 1e38f, kNaN}) {
        input.value = value;
        EXPECT_SAME_BITS(node.value(), value);
    }
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, -3.0f);
    EXPECT_SAME_BITS(bounds.upper, 5.0f);
}

TEST(TexFloatConstant, GradientIsZero)
{
    TestFloat input(2.0f);
    TestNode node = makeNode();
    node.connect("in_float", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

} // namespace
