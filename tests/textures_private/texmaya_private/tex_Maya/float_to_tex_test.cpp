#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct FloatToTexTest : testing::Test {
    FloatToTexTest() { input.value = 0.75f; }

    TestFloat input{"input", nullptr};
    TestNode node{descriptor("FloatToTex")};
};

TEST_F(FloatToTexTest, UnsetIsZero)
{
    EXPECT_SAME_BITS(node.value(), 0.0f);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 0.0f);
}

TEST_F(FloatToTexTest, PassesValuesOn)
{
    node.connect("input", input);
    for (float value : {0.75f, -3.0f, 1e30f, kNaN}) {
        input.value = value;
        EXPECT_SAME_BITS(node.value(), value);
    }
}

TEST_F(FloatToTexTest, PassesBoundsOn)
{
    input.lowerBound = 2.0f;
    input.upperBound = -1.0f;
    node.connect("input", input);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 2.0f);
    EXPECT_SAME_BITS(bounds.upper, -1.0f);
}

TEST_F(FloatToTexTest, GradientIsZero)
{
    node.connect("input", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatToTexTest, PassesTheSourceAndItsAnswerOn)
{
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
    node.connect("input", input);
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "input theName theTag MaterialDescriptor\n");
    input.hasSource = false;
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
}

TEST_F(FloatToTexTest, IsDeclaredAsAColorTextureButIsNone)
{
    EXPECT_EQ(descriptor("FloatToTex")->supportsInterface(OUtils::EXT_TEXTURE), 1);
    EXPECT_EQ(node.texture(), nullptr);
}

} // namespace
