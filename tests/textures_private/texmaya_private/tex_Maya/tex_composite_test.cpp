#include "support/utility_draws.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct CompositeTest : testing::Test {
    CompositeTest()
    {
        colorA.value = {0.25f, 0.5f, 0.75f, 9.0f};
        colorB.value = {0.75f, 0.5f, 0.25f, 9.0f};
        alphaA.value = 0.5f;
        alphaB.value = 1.0f;
        factor.value = 0.5f;
    }
    void connectAll()
    {
        node.connect("color_a", colorA).connect("alpha_a", alphaA);
        node.connect("color_b", colorB).connect("alpha_b", alphaB);
        node.connect("factor", factor);
    }
    // Greys a and b, alphas too.
    AColor composed(int operation, float a, float b, float f)
    {
        colorA.value = {a, a, a, 9.0f};
        colorB.value = {b, b, b, 9.0f};
        alphaA.value = a;
        alphaB.value = b;
        factor.value = f;
        node.set("operation", operation);
        return node.color();
    }

    CallLog log;
    TestColor colorA{"color_a", &log}, colorB{"color_b", &log};
    TestFloat alphaA{"alpha_a", &log}, alphaB{"alpha_b", &log}, factor{"factor", &log};
    TestNode node{descriptor("TexComposite")};
};

// Compared up to 4 ulp: the literals are the decimal results, not those of the rounded steps.
#define EXPECT_GREY(color, grey)                                                                             \
    do {                                                                                                     \
        const AColor greyColor = (color);                                                                    \
        EXPECT_SUM(greyColor.r, grey);                                                                       \
        EXPECT_SUM(greyColor.g, grey);                                                                       \
        EXPECT_SUM(greyColor.b, grey);                                                                       \
        EXPECT_SUM(greyColor.a, grey);                                                                       \
    } while (false)

TEST_F(CompositeTest, NothingConnectedIsOpaqueWhite)
{
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(CompositeTest, WithoutFactorTheFirstColorShowsAndTheSecondIsAskedAllTheSame)
{
    node.connect("color_a", colorA).connect("alpha_a", alphaA).connect("color_b", colorB);
    log.clear();
    EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.5f});
    EXPECT_EQ(log, (CallLog{"alpha_a.evalFloat", "color_a.evalColor", "color_b.evalColor"}));
}

TEST_F(CompositeTest, AFactorUpToZeroGivesTheFirstColorInEveryOperation)
{
    connectAll();
    for (int operation = -1; operation < 11; ++operation)
        for (float f : {0.0f, -0.0f, -1.0f}) {
            node.set("operation", operation);
            factor.value = f;
            EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.5f});
        }
}

TEST_F(CompositeTest, ComposesEachChannelAndTheAlphaInputs)
{
    connectAll();
    EXPECT_SAME_COLOR(node.color(), {0.625f, 0.75f, 0.875f, 1.0f}); // a + b / 2
}

TEST_F(CompositeTest, ComposesByItsOperation)
{
    connectAll();
    EXPECT_GREY(composed(0, 0.2f, 0.6f, 0.5f), 0.5f);
    EXPECT_GREY(composed(1, 0.5f, 0.6f, 0.5f), 0.3f); // 0.5 - 0.4 0.5
    EXPECT_GREY(composed(2, 0.2f, 0.6f, 0.25f), 0.3f);
    EXPECT_GREY(composed(3, 0.5f, 0.6f, 0.5f), 0.4f);  // 0.5 (0.3 + 0.5)
    EXPECT_GREY(composed(4, 0.2f, 0.6f, 0.5f), 0.44f); // (0.5 - 0.1) 0.6 + 0.2
    EXPECT_GREY(composed(5, 0.2f, 0.4f, 0.5f), 0.64f); // 1 - (0.8 - 0.4 + 0.08) 0.5 1.5
    EXPECT_GREY(composed(5, 0.2f, 0.6f, 0.5f), 0.22f); // 0.1 + 0.12
    EXPECT_GREY(composed(6, 0.2f, 0.6f, 0.5f), 0.1f);
    EXPECT_GREY(composed(7, 0.2f, 0.6f, 0.5f), 0.35f); // 0.1 + 0.5 0.5
    EXPECT_GREY(composed(8, 0.2f, 0.6f, 0.5f), 0.35f); // 0.1 + (1 - 0.5) 0.5
    EXPECT_GREY(composed(8, 0.4f, 0.9f, 0.25f), 0.4f); // 0.3 + (1 - 4) 0.25 is below a
}

TEST_F(CompositeTest, OverlayAtExactlyHalfTakesTheDarkBranch)
{
    connectAll();
    // 1 - ((0.75 - 0.5) + 0.125) 0.5 1.5, not 0.125 + 0.125.
    EXPECT_SAME_BITS(composed(5, 0.25f, 0.5f, 0.5f).r, 0.71875f);
}

TEST_F(CompositeTest, DodgeAndBurnEndAtTheSecondColor)
{
    connectAll();
    // A divisor of 0 is 0.00001: the quotient is huge and the clamp leaves b.
    EXPECT_SAME_BITS(composed(7, 0.25f, 1.0f, 0.5f).r, 1.0f);
    EXPECT_SAME_BITS(composed(7, 0.25f, 3.0f, 0.5f).r, 3.0f);
    // b below a: the minimum is taken last.
    EXPECT_SAME_BITS(composed(8, 0.75f, 0.25f, 0.5f).r, 0.25f);
    EXPECT_SAME_BITS(composed(7, 0.75f, 0.25f, 0.5f).r, 0.25f);
}

TEST_F(CompositeTest, AFactorAboveOneOrNoNumberCountsAsOne)
{
    connectAll();
    for (float f : {1.0f, 1.5f, 1e30f, kNaN}) {
        EXPECT_SAME_COLOR(composed(0, 0.25f, 0.5f, f), {0.75f, 0.75f, 0.75f, 0.75f});
        EXPECT_SAME_COLOR(composed(2, 0.25f, 0.5f, f), {0.5f, 0.5f, 0.5f, 0.5f});
    }
}

TEST_F(CompositeTest, BlendAtAFactorAboveOneIsTheSecondColorWithItsAlpha)
{
    connectAll();
    node.set("operation", 2);
    factor.value = 1.5f;
    EXPECT_SAME_COLOR(node.color(), {0.75f, 0.5f, 0.25f, 1.0f});
}

TEST_F(CompositeTest, AnUnknownOperationIsOpaqueWhite)
{
    connectAll();
    for (int operation : {-1, 9, 12345}) {
        node.set("operation", operation);
        factor.value = 0.5f;
        EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
        factor.value = 0.0f;
        EXPECT_SAME_COLOR(node.color(), {0.25f, 0.5f, 0.75f, 0.5f});
    }
}

TEST_F(CompositeTest, AsksItsInputsInOrder)
{
    connectAll();
    log.clear();
    node.color();
    EXPECT_EQ(log, (CallLog{"alpha_a.evalFloat", "alpha_b.evalFloat", "factor.evalFloat", "color_a.evalColor",
                            "color_b.evalColor"}));
}

TEST_F(CompositeTest, PassesNaNOnInItsChannel)
{
    connectAll();
    colorA.value = {kNaN, 0.5f, 0.5f, 1.0f};
    colorB.value = {0.5f, kNaN, 0.5f, 1.0f};
    for (int operation = 0; operation < 7; ++operation) {
        node.set("operation", operation);
        const AColor c = node.color();
        EXPECT_SAME_BITS(c.r, kNaN) << operation;
        EXPECT_SAME_BITS(c.g, kNaN) << operation;
        EXPECT_FALSE(std::isnan(c.b)) << operation;
    }
}

TEST_F(CompositeTest, BoundsOfNothingConnectedTakeAFactorOfOne)
{
    // a + b 1 on white.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {2.0f, 2.0f, 2.0f, 2.0f});
    EXPECT_SAME_COLOR(bounds.upper, {2.0f, 2.0f, 2.0f, 2.0f});
}

TEST_F(CompositeTest, BoundsComposeBoundsAtBothEndsOfTheFactor)
{
    connectAll();
    colorA.lowerBound = {0.0f, 0.25f, 1.0f, 9.0f};
    colorA.upperBound = {1.0f, 0.5f, 1.0f, 9.0f};
    colorB.lowerBound = {-1.0f, 0.5f, 0.5f, 9.0f};
    colorB.upperBound = {-0.5f, 1.0f, 0.5f, 9.0f};
    alphaA.lowerBound = 0.25f;
    alphaA.upperBound = 0.75f;
    alphaB.lowerBound = 0.5f;
    alphaB.upperBound = 1.0f;
    factor.lowerBound = 0.5f;
    factor.upperBound = 2.0f; // not limited to 1
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-2.0f, 0.5f, 1.25f, 0.5f});
    EXPECT_SAME_COLOR(bounds.upper, {0.75f, 2.5f, 2.0f, 2.75f});
}

TEST_F(CompositeTest, BoundsTakeUnsetAlphasAsOneInsteadOfTheColorsOwn)
{
    colorA.lowerBound = colorA.upperBound = {0.5f, 0.5f, 0.5f, 9.0f};
    colorB.lowerBound = colorB.upperBound = {0.25f, 0.25f, 0.25f, 9.0f};
    node.connect("color_a", colorA).connect("color_b", colorB);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.75f, 0.75f, 0.75f, 2.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.75f, 0.75f, 0.75f, 2.0f});
}

TEST_F(CompositeTest, BoundsOfEveryOperationAreItsValuesOnConstantInputs)
{
    connectAll();
    for (int operation = 0; operation < 9; ++operation) {
        const AColor value = composed(operation, 0.25f, 0.625f, 0.75f);
        colorA.lowerBound = colorA.upperBound = colorA.value;
        colorB.lowerBound = colorB.upperBound = colorB.value;
        alphaA.lowerBound = alphaA.upperBound = alphaA.value;
        alphaB.lowerBound = alphaB.upperBound = alphaB.value;
        factor.lowerBound = factor.upperBound = factor.value;
        const ColorBounds bounds = colorBounds(node);
        SCOPED_TRACE(operation);
        EXPECT_SAME_COLOR(bounds.lower, value);
        EXPECT_SAME_COLOR(bounds.upper, value);
    }
}

TEST_F(CompositeTest, BoundsOfAnUnknownOperationAreZeroToOne)
{
    connectAll();
    for (int operation : {-1, 9}) {
        node.set("operation", operation);
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 0.0f});
        EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
    }
}

TEST_F(CompositeTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(CompositeTest, AgreesWithItsPlainTwinWithoutAllocating)
{
    Draws draws(20151012);
    TestColor drawnA, drawnB;
    TestFloat drawnAlphaA, drawnAlphaB, drawnFactor;
    for (int i = 0; i < 6000; ++i) {
        TestNode drawn(descriptor("TexComposite"));
        plain::Composite twin;
        drawInput(draws, drawn, "color_a", drawnA, twin.color_a, draws.color());
        drawInput(draws, drawn, "alpha_a", drawnAlphaA, twin.alpha_a, draws.number());
        drawInput(draws, drawn, "color_b", drawnB, twin.color_b, draws.color());
        drawInput(draws, drawn, "alpha_b", drawnAlphaB, twin.alpha_b, draws.number());
        drawInput(draws, drawn, "factor", drawnFactor, twin.factor, draws.number());
        twin.operation = i % 11 - 1;
        drawn.set("operation", twin.operation);
        const plain::Rgba expected = twin();
        const auto actual = withoutAllocating([&] { return drawn.color(); });
        ASSERT_TRUE(agrees(actual, expected, 10.0)) << i << ", operation " << twin.operation;
    }
}

} // namespace
