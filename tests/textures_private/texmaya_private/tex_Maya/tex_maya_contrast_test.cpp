#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

AColor grey(float value, float alpha = 9.0f)
{
    return {value, value, value, alpha};
}

struct ContrastTest : testing::Test {
    void connectAll() { node.connect("value", value).connect("contrast", contrast).connect("bias", bias); }
    AColor result(const AColor& x, const AColor& c, const AColor& b)
    {
        value.value = x;
        contrast.value = c;
        bias.value = b;
        return freshColor(node);
    }

    CallLog log;
    TestColor value{"value", &log}, contrast{"contrast", &log}, bias{"bias", &log};
    TestNode node{descriptor("TexMayaContrast")};
};

TEST_F(ContrastTest, NothingConnectedIsBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(ContrastTest, UnsetContrastAndBiasAreTwoAndAHalf)
{
    node.connect("value", value);
    value.value = {0.25f, 0.5f, 0.75f, 0.3f};
    // t = 0.5, p = 0.5, 0.5 -+ (1 - 0.25) / 2; alpha is the value's.
    EXPECT_SAME_COLOR(node.color(), {0.125f, 0.5f, 0.875f, 0.3f});
}

TEST_F(ContrastTest, PushesAwayFromTheBias)
{
    connectAll();
    // Bias 0.25. Above: t = 0.25, p = 0.75^2 = 0.5625, to the contrast 0.5: 0.75. 0.5 + 0.125.
    // Below: t = 0.5, p = 0.5^(2/3), to the contrast 3: 0.25. 0.5 - 0.375.
    const AColor color = result({0.4375f, 0.125f, 0.25f, 0.0f}, {0.5f, 3.0f, 3.0f, 7.0f}, grey(0.25f));
    EXPECT_SAME_BITS(color.r, 0.625f);
    EXPECT_SAME_BITS(color.g, 0.125f);
    EXPECT_SAME_BITS(color.b, 0.5f);
    EXPECT_SAME_BITS(color.a, 0.0f);
}

TEST_F(ContrastTest, TheBiasItselfGivesAHalfForAnyContrast)
{
    connectAll();
    for (float c : {0.0f, 0.5f, 1.0f, 17.0f, -3.0f, kInfinity, kNaN})
        for (float b : {0.1f, 0.5f, 0.9f, 2.0f, -1.0f})
            EXPECT_SAME_COLOR(result(grey(b), grey(c), grey(b)), {0.5f, 0.5f, 0.5f, 9.0f});
}

TEST_F(ContrastTest, ValuesOutsideAreTheEnds)
{
    connectAll();
    EXPECT_SAME_COLOR(result({-3.0f, 7.0f, 1.0f, 1.0f}, grey(2.0f), grey(0.5f)), {0.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(ContrastTest, BiasesThatDivideByZeroStillGiveANumber)
{
    connectAll();
    // Above a bias of 0: the exponent is infinite, p is 0. At 0 and below it is 0, or the end, too.
    EXPECT_SAME_COLOR(result({0.5f, 0.0f, -1.0f, 1.0f}, grey(2.0f), grey(0.0f)), {1.0f, 0.0f, 0.0f, 1.0f});
    // Below a bias of 1 the exponent is infinite, above it t is; at 1 itself t is 0.
    EXPECT_SAME_COLOR(result({0.5f, 2.0f, 1.0f, 1.0f}, grey(2.0f), grey(1.0f)), {0.0f, 1.0f, 0.5f, 1.0f});
}

TEST_F(ContrastTest, BiasesOutsideBendTheCurveTheOtherWay)
{
    connectAll();
    // Bias 2: t = 0.5, p = 0.5^-0.5, squared 2: 0.5 + 0.5. Bias -1: the same above it, 0.5 - 0.5.
    const AColor color = result({1.0f, 0.0f, 0.0f, 1.0f}, grey(2.0f), {2.0f, -1.0f, 0.5f, 1.0f});
    EXPECT_SUM(color.r, 1.0f);
    EXPECT_SUM(color.g, 0.0f);
}

TEST_F(ContrastTest, NaNCountsAsTheEnd)
{
    connectAll();
    // No comparison holds and max(0, NaN) is 0: the lower end. A NaN contrast stays.
    EXPECT_SAME_COLOR(result({kNaN, 0.25f, 0.25f, kNaN}, {2.0f, kNaN, 2.0f, 0.0f}, {0.5f, 0.5f, kNaN, 0.0f}),
                      {0.0f, kNaN, 0.0f, kNaN});
}

TEST_F(ContrastTest, BoundsWiden)
{
    connectAll();
    value.lowerBound = {0.25f, 0.875f, 0.25f, 0.1f};
    value.upperBound = {0.25f, 0.875f, 0.75f, 0.2f};
    contrast.lowerBound = grey(1.0f);
    contrast.upperBound = grey(2.0f);
    bias.lowerBound = bias.upperBound = grey(0.5f);
    // Red: x stays, below the bias; the lower end takes the upper contrast, 0.5 - (1 - 0.25) / 2, the upper
    // end the lower, which leaves 0.25. Green: above, 0.875 and 0.5 + (1 - 0.0625) / 2. Blue: one each.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.125f, 0.875f, 0.125f, 0.1f});
    EXPECT_SAME_COLOR(bounds.upper, {0.25f, 0.96875f, 0.875f, 0.2f});
}

TEST_F(ContrastTest, BoundsTakeTheOppositeBias)
{
    connectAll();
    value.lowerBound = value.upperBound = grey(0.5f, 1.0f);
    contrast.lowerBound = contrast.upperBound = grey(1.0f);
    bias.lowerBound = grey(0.25f);
    bias.upperBound = grey(0.75f);
    // Lower, bias 0.75: t = 1/3, p = (2/3)^2, 0.5 - (1 - 4/9) / 2. Upper, bias 0.25: the mirror image.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SUM(bounds.lower.r, 0.222222222f);
    EXPECT_SUM(bounds.upper.r, 0.777777778f);
}

TEST_F(ContrastTest, RemembersThePoint)
{
    connectAll();
    const AColor first = result(grey(0.25f), grey(2.0f), grey(0.5f));
    value.value = grey(0.75f);
    EXPECT_SAME_COLOR(node.color(), first);
    node.context.shadeFlags = OUtils::noTexCache;
    EXPECT_SAME_COLOR(node.color(), {0.875f, 0.875f, 0.875f, 9.0f});
    node.context.shadeFlags = 0;
    node.life()->frameBegin(&node.renderer);
    EXPECT_SAME_COLOR(node.color(), {0.875f, 0.875f, 0.875f, 9.0f});
}

TEST_F(ContrastTest, GradientIsZero)
{
    connectAll();
    expectZeroGradient(node);
}

TEST_F(ContrastTest, WritesBiasBeforeContrast)
{
    connectAll();
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, sourceLine("value") + "subtex\n" + sourceLine("bias") + "subtex\n" +
                                sourceLine("contrast") + "subtex\nbitmap -926\n");
}

TEST_F(ContrastTest, WritesTheDefaultsOfInputsWithoutSource)
{
    contrast.hasSource = false;
    node.connect("contrast", contrast);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.000000 0.000000 0.000000 1.000000\nsubtex\n"
                            "color 0.500000 0.500000 0.500000 1.000000\nsubtex\n"
                            "color 2.000000 2.000000 2.000000 1.000000\nsubtex\n"
                            "bitmap -926\n");
}

} // namespace
