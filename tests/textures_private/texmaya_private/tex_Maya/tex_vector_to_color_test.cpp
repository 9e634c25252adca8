#include "host/params/host_parameters.h"
#include "support/test_vector_inputs.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct VectorToColorTest : testing::Test {
    VectorToColorTest() { input.label = "input"; }

    TestVector input{{0.25f, -2.0f, 3.0f}};
    TestNode node{descriptor("TexVectorToColor")};
};

TEST_F(VectorToColorTest, UnsetIsOpaqueBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(VectorToColorTest, ComponentsAreChannels)
{
    node.connect("input", input);
    EXPECT_SAME_COLOR(node.color(), {0.25f, -2.0f, 3.0f, 1.0f});
    input.value = {kNaN, 0.0f, 1e30f};
    EXPECT_SAME_COLOR(node.color(), {kNaN, 0.0f, 1e30f, 1.0f});
}

TEST_F(VectorToColorTest, BoundsAreThoseOfTheVector)
{
    input.lowerBound = {-1.0f, -2.0f, -3.0f};
    input.upperBound = {1.0f, 2.0f, 3.0f};
    node.connect("input", input);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-1.0f, -2.0f, -3.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 2.0f, 3.0f, 1.0f});
}

TEST_F(VectorToColorTest, GradientIsZero)
{
    node.connect("input", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(VectorToColorTest, AnswersItsOutputItself)
{
    EXPECT_EQ(ombrix::boundOutput(*node.life()->paramList, "color"), node.texture());
}

TEST_F(VectorToColorTest, PassesTheSourceAndItsAnswerOn)
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

} // namespace
