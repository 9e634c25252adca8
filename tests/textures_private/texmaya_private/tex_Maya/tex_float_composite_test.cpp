#include "support/utility_draws.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct FloatCompositeTest : testing::Test {
    void connectAll() { node.connect("float_a", a).connect("float_b", b).connect("factor", factor); }
    float composed(int operation, float valueA, float valueB, float f)
    {
        a.value = valueA;
        b.value = valueB;
        factor.value = f;
        node.set("operation", operation);
        return node.value();
    }

    CallLog log;
    TestFloat a{"float_a", &log}, b{"float_b", &log}, factor{"factor", &log};
    TestNode node{descriptor("TexFloatComposite")};
};

TEST_F(FloatCompositeTest, NothingConnectedIsOne)
{
    EXPECT_SAME_BITS(node.value(), 1.0f);
}

TEST_F(FloatCompositeTest, AFactorUpToZeroGivesTheFirstFloatWithoutAskingTheSecond)
{
    connectAll();
    for (float f : {0.0f, -0.0f, -1.0f}) {
        log.clear();
        EXPECT_SAME_BITS(composed(0, 0.25f, 0.5f, f), 0.25f);
        EXPECT_EQ(log, (CallLog{"factor.evalFloat", "float_a.evalFloat"}));
    }
    log.clear();
    composed(0, 0.25f, 0.5f, 0.5f);
    EXPECT_EQ(log, (CallLog{"factor.evalFloat", "float_a.evalFloat", "float_b.evalFloat"}));
}

TEST_F(FloatCompositeTest, ComposesByItsOperation)
{
    connectAll();
    EXPECT_SAME_BITS(composed(0, 0.2f, 0.6f, 0.5f), 0.5f);
    EXPECT_SAME_BITS(composed(1, 0.5f, 0.6f, 0.5f), 0.3f);
    EXPECT_SAME_BITS(composed(2, 0.2f, 0.6f, 0.25f), 0.3f);
    EXPECT_SAME_BITS(composed(3, 0.5f, 0.6f, 0.5f), 0.4f);
    EXPECT_SAME_BITS(composed(4, 0.2f, 0.6f, 0.5f), 0.44f);
    EXPECT_SAME_BITS(composed(5, 0.2f, 0.4f, 0.5f), 0.64f);
    EXPECT_SAME_BITS(composed(5, 0.2f, 0.6f, 0.5f), 0.22f);
    EXPECT_SUM(composed(6, 0.2f, 0.6f, 0.5f), 0.1f);
    EXPECT_SUM(composed(7, 0.2f, 0.6f, 0.5f), 0.35f);
    EXPECT_SUM(composed(8, 0.2f, 0.6f, 0.5f), 0.35f);
}

TEST_F(FloatCompositeTest, AFactorOfTwoStaysTwoButForBlend)
{
    connectAll();
    EXPECT_SAME_BITS(composed(0, 0.25f, 0.5f, 2.0f), 1.25f);
    EXPECT_SAME_BITS(composed(3, 0.25f, 0.5f, 2.0f), 0.0f); // 0.25 (1 - 1)
    EXPECT_SAME_BITS(composed(2, 0.25f, 0.5f, 2.0f), 0.5f);
    EXPECT_SAME_BITS(composed(2, 0.25f, 0.5f, 1.0f), 0.5f);
}

TEST_F(FloatCompositeTest, AFactorThatIsNoNumberPassesOnButForBlend)
{
    connectAll();
    EXPECT_SAME_BITS(composed(0, 0.25f, 0.5f, kNaN), kNaN);
    EXPECT_SAME_BITS(composed(2, 0.25f, 0.5f, kNaN), 0.5f);
}

TEST_F(FloatCompositeTest, PassesNaNOn)
{
    connectAll();
    for (int operation = 0; operation < 7; ++operation)
        EXPECT_SAME_BITS(composed(operation, kNaN, 0.5f, 0.5f), kNaN) << operation;
    EXPECT_SAME_BITS(composed(0, 0.5f, kNaN, 0.5f), kNaN);
}

TEST_F(FloatCompositeTest, AnUnknownOperationIsTheFirstFloat)
{
    connectAll();
    for (int operation : {-1, 9, 12345})
        EXPECT_SAME_BITS(composed(operation, 0.25f, 0.5f, 0.5f), 0.25f) << operation;
}

TEST_F(FloatCompositeTest, BoundsOfNothingConnectedTakeAFactorOfZero)
{
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 1.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
}

TEST_F(FloatCompositeTest, BoundsComposeBoundsAtBothEndsOfTheFactor)
{
    connectAll();
    a.lowerBound = 0.25f;
    a.upperBound = 1.0f;
    b.lowerBound = -1.0f;
    b.upperBound = -0.5f;
    factor.lowerBound = 0.5f;
    factor.upperBound = 2.0f;
    FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, -1.75f);
    EXPECT_SAME_BITS(bounds.upper, 0.75f);
    node.set("operation", 6); // |0.25 + 0.5|, |0.25 + 2|; |1 + 0.25|, |1 + 1|
    bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.75f);
    EXPECT_SAME_BITS(bounds.upper, 2.0f);
}

TEST_F(FloatCompositeTest, BoundsOfAnUnknownOperationAreThoseOfTheFirstFloat)
{
    connectAll();
    a.lowerBound = 0.25f;
    a.upperBound = 0.75f;
    factor.upperBound = 1.0f;
    for (int operation : {-1, 9}) {
        node.set("operation", operation);
        const FloatBounds bounds = floatBounds(node);
        EXPECT_SAME_BITS(bounds.lower, 0.25f);
        EXPECT_SAME_BITS(bounds.upper, 0.75f);
    }
}

TEST_F(FloatCompositeTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatCompositeTest, AgreesWithItsPlainTwinWithoutAllocating)
{
    Draws draws(20170227);
    TestFloat drawnA, drawnB, drawnFactor;
    for (int i = 0; i < 6000; ++i) {
        TestNode drawn(descriptor("TexFloatComposite"));
        plain::FloatComposite twin;
        drawInput(draws, drawn, "float_a", drawnA, twin.float_a, draws.number());
        drawInput(draws, drawn, "float_b", drawnB, twin.float_b, draws.number());
        drawInput(draws, drawn, "factor", drawnFactor, twin.factor, draws.number());
        twin.operation = i % 11 - 1;
        drawn.set("operation", twin.operation);
        const double expected = twin();
        const auto actual = withoutAllocating([&] { return drawn.value(); });
        ASSERT_TRUE(agrees(actual, expected, 10.0)) << i << ", operation " << twin.operation;
    }
}

} // namespace
