#include "support/utility_draws.h"
#include "tex_maya_test.h"

#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;

struct FloatCorrectTest : testing::Test {
    void give(const char* name, TestFloat& input, float value)
    {
        input.value = value;
        node.connect(name, input);
    }
    void connectAll()
    {
        node.connect("in_float", in).connect("gain", gain).connect("offset", offset).connect("gamma", gamma);
    }

    CallLog log;
    TestFloat in{"in_float", &log}, gain{"gain", &log}, offset{"offset", &log}, gamma{"gamma", &log};
    TestNode node{descriptor("TexFloatCorrect")};
};

TEST_F(FloatCorrectTest, NothingConnectedIsTwo)
{
    EXPECT_SAME_BITS(node.value(), 2.0f); // 1 * 1 + 1
}

TEST_F(FloatCorrectTest, AnUnsetOffsetAddsOne)
{
    give("in_float", in, 0.25f);
    EXPECT_SAME_BITS(node.value(), 1.25f);
    give("offset", offset, 0.0f);
    EXPECT_SAME_BITS(node.value(), 0.25f);
    give("offset", offset, 1.0f);
    EXPECT_SAME_BITS(node.value(), 1.25f);
}

TEST_F(FloatCorrectTest, TheGainIsAlsoTheGamma)
{
    give("in_float", in, 1.0f);
    give("offset", offset, 0.0f);
    give("gain", gain, 2.0f);
    EXPECT_SAME_BITS(node.value(), std::sqrt(2.0f));
    give("gain", gain, 0.5f);
    EXPECT_SAME_BITS(node.value(), 0.25f);
}

TEST_F(FloatCorrectTest, AGainOfZeroOrOneIsNoGamma)
{
    give("in_float", in, 0.3f);
    give("offset", offset, 0.7f);
    give("gain", gain, 0.0f);
    EXPECT_SAME_BITS(node.value(), 0.7f);
    give("gain", gain, 1.0f);
    EXPECT_SAME_BITS(node.value(), 0.3f + 0.7f);
}

TEST_F(FloatCorrectTest, APowerThatIsNoFiniteNumberLeavesTheValue)
{
    give("in_float", in, -1.0f);
    give("offset", offset, 0.0f);
    give("gain", gain, 2.0f);
    EXPECT_SAME_BITS(node.value(), -2.0f);
    give("in_float", in, 0.0f);
    give("gain", gain, -1.0f);
    EXPECT_SAME_BITS(node.value(), 0.0f); // -0 + 0
}

TEST_F(FloatCorrectTest, TheGammaPlaysNoPart)
{
    connectAll();
    gamma.value = 2.0f;
    in.value = gain.value = 1.0f;
    offset.value = 3.0f;
    log.clear();
    EXPECT_SAME_BITS(node.value(), 4.0f);
    EXPECT_EQ(log, (CallLog{"in_float.evalFloat", "gain.evalFloat", "offset.evalFloat", "gain.evalFloat"}));
}

TEST_F(FloatCorrectTest, ClampsOnlyWhenTold)
{
    EXPECT_SAME_BITS(node.value(), 2.0f);
    for (int on : {1, -1, 2}) {
        node.set("clamp", on);
        EXPECT_SAME_BITS(node.value(), 1.0f) << on;
    }
    node.set("clamp_max", 1.5f);
    EXPECT_SAME_BITS(node.value(), 1.5f);
    give("offset", offset, -9.0f);
    EXPECT_SAME_BITS(node.value(), 0.0f);
    node.set("clamp_min", -0.5f);
    EXPECT_SAME_BITS(node.value(), -0.5f);
    node.set("clamp_min", 7.0f); // the upper end wins
    EXPECT_SAME_BITS(node.value(), 1.5f);
    node.set("clamp", 0);
    EXPECT_SAME_BITS(node.value(), -8.0f);
}

TEST_F(FloatCorrectTest, PassesNaNOn)
{
    connectAll();
    in.value = kNaN;
    gain.value = 2.0f;
    EXPECT_SAME_BITS(node.value(), kNaN);
    in.value = 1.0f;
    offset.value = kNaN;
    EXPECT_SAME_BITS(node.value(), kNaN);
    offset.value = 0.0f;
    gain.value = kNaN;
    EXPECT_SAME_BITS(node.value(), kNaN);
}

TEST_F(FloatCorrectTest, BoundsOfNothingConnectedAreZero)
{
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.0f); // 1 * 0, and 0 + 0
    EXPECT_SAME_BITS(bounds.upper, 0.0f);
}

TEST_F(FloatCorrectTest, BoundsTakeGainOffsetAndTheParameterGamma)
{
    connectAll();
    in.lowerBound = 0.25f;
    in.upperBound = 1.0f;
    gain.lowerBound = 1.0f;
    gain.upperBound = 4.0f;
    offset.lowerBound = -0.125f;
    offset.upperBound = 5.0f;
    gamma.lowerBound = 1.0f;
    gamma.upperBound = 0.5f;
    node.set("clamp", 1);
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.015625f); // (0.25 - 0.125)^2
    EXPECT_SAME_BITS(bounds.upper, 81.0f);     // (4 + 5)^2
}

TEST_F(FloatCorrectTest, BoundsHoldTheValueWithoutItsOffset)
{
    connectAll();
    in.lowerBound = in.upperBound = 0.5f;
    gain.lowerBound = gain.upperBound = 1.0f;
    offset.lowerBound = 0.25f;
    offset.upperBound = -0.25f;
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.5f);
    EXPECT_SAME_BITS(bounds.upper, 0.5f);
}

TEST_F(FloatCorrectTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatCorrectTest, AgreesWithItsPlainTwinWithoutAllocating)
{
    Draws draws(20170322);
    TestFloat drawnIn, drawnGain, drawnOffset;
    int compared = 0;
    for (int i = 0; i < 4000; ++i) {
        TestNode drawn(descriptor("TexFloatCorrect"));
        plain::FloatCorrect twin;
        drawInput(draws, drawn, "in_float", drawnIn, twin.in_float, draws.number());
        drawInput(draws, drawn, "gain", drawnGain, twin.gain, draws.exponent());
        drawInput(draws, drawn, "offset", drawnOffset, twin.offset, draws.number());
        twin.clamp = draws.chance(0.3);
        drawn.set("clamp", twin.clamp ? 1 : 0);
        const double expected = twin();
        if (twin.margin < 1e-2) continue;
        ++compared;
        const auto actual = withoutAllocating([&] { return drawn.value(); });
        ASSERT_TRUE(agrees(actual, expected, 1.0 / twin.margin)) << i << ": not " << expected;
    }
    EXPECT_GT(compared, 3500);
}

} // namespace
