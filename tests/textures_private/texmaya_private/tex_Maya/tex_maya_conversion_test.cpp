#include "host/params/host_parameters.h"
#include "tex_maya_test.h"

#include <limits>

namespace {

using namespace support;
using OUtils::AColor;

struct MayaConversionTest : testing::Test {
    TestFloat input{0.75f};
    TestNode node{descriptor("TexMayaConversion")};
};

TEST_F(MayaConversionTest, UnsetIsZeroWhateverTheFactor)
{
    for (float factor : {1.0f, -3.0f, kNaN, std::numeric_limits<float>::infinity()}) {
        node.set("conversion_factor", factor);
        EXPECT_SAME_BITS(node.value(), 0.0f);
        const FloatBounds bounds = floatBounds(node);
        EXPECT_SAME_BITS(bounds.lower, 0.0f);
        EXPECT_SAME_BITS(bounds.upper, 0.0f);
    }
}

TEST_F(MayaConversionTest, MultipliesByTheFactorWhichIsOneAtFirst)
{
    node.connect("input", input);
    EXPECT_SAME_BITS(node.value(), 0.75f);
    node.set("conversion_factor", -2.0f);
    EXPECT_SAME_BITS(node.value(), -1.5f);
    node.set("conversion_factor", 0.0f);
    EXPECT_SAME_BITS(node.value(), 0.0f);
}

TEST_F(MayaConversionTest, PassesNaNOn)
{
    node.connect("input", input);
    input.value = kNaN;
    EXPECT_SAME_BITS(node.value(), kNaN);
    input.value = 1.0f;
    node.set("conversion_factor", kNaN);
    EXPECT_SAME_BITS(node.value(), kNaN);
}

TEST_F(MayaConversionTest, ANegativeFactorLeavesTheBoundsInTheWrongOrder)
{
    input.lowerBound = 0.0f;
    input.upperBound = 1.0f;
    node.connect("input", input).set("conversion_factor", -1.0f);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_EQ(bounds.lower, 0.0f); // a zero of either sign
    EXPECT_SAME_BITS(bounds.upper, -1.0f);
}

TEST_F(MayaConversionTest, BoundsAreMultiplied)
{
    input.lowerBound = -0.5f;
    input.upperBound = 0.25f;
    node.connect("input", input).set("conversion_factor", 4.0f);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, -2.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
}

TEST_F(MayaConversionTest, GradientIsZero)
{
    node.connect("input", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(MayaConversionTest, AnswersItsOutputItself)
{
    EXPECT_EQ(ombrix::boundOutput(*node.life()->paramList, "output"), node.floatTexture());
}

} // namespace
