#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct GammaTest : testing::Test {
    GammaTest()
    {
        input.value = {0.25f, 9.0f, 0.5f, 0.3f};
        gamma.value = {2.0f, 0.5f, 1.0f, 0.3f};
    }
    void connectBoth() { node.connect("input", input).connect("gamma", gamma); }

    CallLog log;
    TestColor input{"input", &log}, gamma{"gamma", &log};
    TestNode node{descriptor("MayaGamma")};
};

TEST_F(GammaTest, NothingConnectedIsBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(GammaTest, RaisesEachChannelByItsOwnGamma)
{
    connectBoth();
    EXPECT_SAME_COLOR(node.color(), {0.5f, 81.0f, 0.5f, 1.0f});
}

TEST_F(GammaTest, AnUnsetGammaIsOne)
{
    node.connect("input", input);
    EXPECT_SAME_COLOR(node.color(), {0.25f, 9.0f, 0.5f, 1.0f});
}

TEST_F(GammaTest, AGammaBelowTheThresholdGivesZero)
{
    connectBoth();
    gamma.value = {0.0f, -2.0f, 0.9e-6f, 1.0f};
    input.value = {0.5f, kNaN, 2.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    // Just above, a power of about a million.
    gamma.value = {1.1e-6f, 1.1e-6f, 1.1e-6f, 1.0f};
    input.value = {0.5f, 1.0f, 2.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {0.0f, 1.0f, kInfinity, 1.0f});
}

TEST_F(GammaTest, PassesNaNOn)
{
    connectBoth();
    input.value = {kNaN, 0.5f, -0.5f, 1.0f};
    gamma.value = {2.0f, kNaN, 2.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {kNaN, kNaN, kNaN, 1.0f});
}

TEST_F(GammaTest, BoundsAreThoseOfTheFourPairs)
{
    connectBoth();
    input.lowerBound = {0.25f, 0.5f, 4.0f, 9.0f};
    input.upperBound = {4.0f, 0.5f, 9.0f, 9.0f};
    gamma.lowerBound = {0.5f, 0.0f, 0.5f, 9.0f};
    gamma.upperBound = {2.0f, 1.0f, 2.0f, 9.0f};
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0625f, 0.0f, 2.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {16.0f, 0.5f, 81.0f, 1.0f});
}

TEST_F(GammaTest, GradientIsZero)
{
    connectBoth();
    expectZeroGradient(node);
}

TEST_F(GammaTest, OutputIsTheTextureItself)
{
    EXPECT_EQ(outputOf<OUtils::TextureInterface>(node, "color"), node.texture());
}

TEST_F(GammaTest, WritesOneGammaForAllChannels)
{
    connectBoth();
    gamma.lowerBound = {1.0f, 2.0f, 3.0f, 9.0f};
    gamma.upperBound = {2.0f, 3.0f, 4.0f, 9.0f};
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, sourceLine("input") + "gamma 0.400000\n"); // 1 / (15 / 6)
}

TEST_F(GammaTest, WritesNoGammaThatIsUnset)
{
    node.connect("input", input);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, sourceLine("input"));
}

TEST_F(GammaTest, WritesTheGammaOfAnUnsetInputAlone)
{
    gamma.lowerBound = {0.5f, 0.5f, 0.5f, 0.0f};
    gamma.upperBound = {0.5f, 0.5f, 0.5f, 0.0f};
    node.connect("gamma", gamma);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "gamma 2.000000\n");
}

TEST_F(GammaTest, WritesNothingWithNothingConnected)
{
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "");
}

} // namespace
