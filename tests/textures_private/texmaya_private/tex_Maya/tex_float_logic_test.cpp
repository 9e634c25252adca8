#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct FloatLogicTest : testing::Test {
    void connectAll() { node.connect("float_a", a).connect("float_b", b); }
    // The results of the operations 0 to 5.
    void expectResults(float valueA, float valueB, const float (&expected)[6])
    {
        a.value = valueA;
        b.value = valueB;
        for (int operation = 0; operation < 6; ++operation) {
            node.set("operation", operation);
            EXPECT_SAME_BITS(node.value(), expected[operation]) << "operation " << operation;
        }
    }

    CallLog log;
    TestFloat a{"float_a", &log}, b{"float_b", &log};
    TestNode node{descriptor("TexFloatLogic")};
};

TEST_F(FloatLogicTest, UnsetInputsAreBothOne)
{
    expectResults(0.0f, 0.0f, {1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f});
    a.value = 1.0f;
    node.set("operation", 0).connect("float_a", a);
    EXPECT_SAME_BITS(node.value(), 1.0f);
    a.value = 0.0f;
    EXPECT_SAME_BITS(node.value(), 0.0f);
}

TEST_F(FloatLogicTest, Compares)
{
    connectAll();
    expectResults(0.5f, 0.5f, {1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f});
    expectResults(0.25f, 0.5f, {0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 0.0f});
    expectResults(0.5f, -0.5f, {0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f});
}

TEST_F(FloatLogicTest, NaNIsUnequalAndUnordered)
{
    connectAll();
    expectResults(kNaN, kNaN, {0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f});
    expectResults(kNaN, 0.5f, {0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatLogicTest, UnknownOperationIsZero)
{
    for (int operation : {-1, 6, 12345}) {
        node.set("operation", operation);
        EXPECT_SAME_BITS(node.value(), 0.0f) << operation;
    }
}

TEST_F(FloatLogicTest, EvaluatesABeforeB)
{
    connectAll();
    node.value();
    EXPECT_EQ(log, (CallLog{"float_a.evalFloat", "float_b.evalFloat"}));
}

TEST_F(FloatLogicTest, BoundsAreZeroToOneWithoutLookingAtTheInputs)
{
    connectAll();
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
    EXPECT_TRUE(log.empty());
}

TEST_F(FloatLogicTest, GradientIsZero)
{
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatLogicTest, WritesTwoSlotsAndTheOperation)
{
    connectAll();
    node.set("operation", 5);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text,
              "float_a theName theTag MaterialDescriptor\nsubtex\n"
              "float_b theName theTag MaterialDescriptor\nsubtex\n"
              "bitmap -947\n"
              "uvw_transform 5.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
              "0.000000,0.000000,0.000000,0.000000\n");
}

} // namespace
