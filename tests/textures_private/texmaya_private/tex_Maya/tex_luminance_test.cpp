#include "host/params/host_parameters.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct LuminanceTest : testing::Test {
    float of(const AColor& color)
    {
        input.value = color;
        node.connect("input", input);
        return node.value();
    }

    TestColor input{"input", nullptr};
    TestNode node{descriptor("TexLuminance")};
};

TEST_F(LuminanceTest, UnsetIsZero)
{
    EXPECT_SAME_BITS(node.value(), 0.0f);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 0.0f);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(LuminanceTest, WeighsTheChannels)
{
    EXPECT_SAME_BITS(of({1.0f, 1.0f, 1.0f, 0.0f}), 1.0f);
    EXPECT_SAME_BITS(of({1.0f, 0.0f, 0.0f, 1.0f}), 0.3f);
    EXPECT_SAME_BITS(of({0.0f, 1.0f, 0.0f, 1.0f}), 0.59f);
    EXPECT_SAME_BITS(of({0.0f, 0.0f, 1.0f, 1.0f}), 0.11f);
    EXPECT_FLOAT_EQ(of({-1.0f, 2.0f, 4.0f, 1.0f}), 1.32f);
}

TEST_F(LuminanceTest, PassesNaNOn)
{
    EXPECT_SAME_BITS(of({kNaN, 0.0f, 0.0f, 0.0f}), kNaN);
    EXPECT_SAME_BITS(of({0.0f, 0.0f, 0.0f, kNaN}), 0.0f);
}

TEST_F(LuminanceTest, BoundsAreTheLuminanceOfBoth)
{
    input.lowerBound = {-1.0f, 0.0f, 0.0f, 5.0f};
    input.upperBound = {0.0f, 1.0f, 0.0f, 5.0f};
    node.connect("input", input);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, -0.3f);
    EXPECT_SAME_BITS(bounds.upper, 0.59f);
}

TEST_F(LuminanceTest, GradientIsThatOfTheInputAsItStands)
{
    node.connect("input", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {3.0f, 4.0f, 5.0f, 6.0f});
}

TEST_F(LuminanceTest, AnswersItsOutputItself)
{
    EXPECT_EQ(ombrix::boundOutput(*node.life()->paramList, "luminance"), node.floatTexture());
}

constexpr const char* kTail = "subtex\n"
                              "uvw_transform 0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1\n"
                              "bitmap -936\n";

TEST_F(LuminanceTest, WritesItsInputUnderTheNameColor)
{
    node.connect("input", input);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, std::string("input color theTag MaterialDescriptor\n") + kTail);
}

} // namespace
