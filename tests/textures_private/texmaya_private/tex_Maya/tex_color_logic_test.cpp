#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct ColorLogicTest : testing::Test {
    void connectAll() { node.connect("color_a", a).connect("color_b", b); }
    // The results of the operations 0 to 5.
    void expectResults(const float (&expected)[6])
    {
        for (int operation = 0; operation < 6; ++operation) {
            node.set("operation", operation);
            EXPECT_SAME_BITS(node.value(), expected[operation]) << "operation " << operation;
        }
    }

    CallLog log;
    TestColor a{"color_a", &log}, b{"color_b", &log};
    TestNode node{descriptor("TexColorLogic")};
};

TEST_F(ColorLogicTest, UnsetColorsAreEqual)
{
    EXPECT_SAME_BITS(node.value(), 1.0f);
    expectResults({1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f});
}

TEST_F(ColorLogicTest, UnsetColorIsNeitherWhiteNorBlack)
{
    a.value = {1.0f, 0.0f, 0.5f, 0.0f};
    node.connect("color_a", a);
    EXPECT_SAME_BITS(node.value(), 1.0f);
    a.value = {1.0f, 1.0f, 1.0f, 1.0f};
    EXPECT_SAME_BITS(node.value(), 0.0f);
    a.value = {0.0f, 0.0f, 0.0f, 1.0f};
    EXPECT_SAME_BITS(node.value(), 0.0f);
}

TEST_F(ColorLogicTest, OrdersBySums)
{
    a.value = {1.0f, 0.0f, 0.0f, 1.0f};
    b.value = {0.0f, 0.5f, 0.5f, 1.0f};
    connectAll();
    expectResults({0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 1.0f});
    b.value = {0.0f, 0.5f, 1.0f, 1.0f};
    expectResults({0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 0.0f});
    b.value = {0.0f, 0.5f, 0.0f, 1.0f};
    expectResults({0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f});
}

TEST_F(ColorLogicTest, AlphaTakesNoPart)
{
    a.value = {0.5f, 0.5f, 0.5f, 0.0f};
    b.value = {0.5f, 0.5f, 0.5f, 1.0f};
    connectAll();
    expectResults({1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f});
}

TEST_F(ColorLogicTest, NaNIsUnequalAndUnordered)
{
    a.value = b.value = {0.5f, kNaN, 0.5f, 1.0f};
    connectAll();
    expectResults({0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(ColorLogicTest, UnknownOperationIsZero)
{
    for (int operation : {-1, 6, 12345}) {
        node.set("operation", operation);
        EXPECT_SAME_BITS(node.value(), 0.0f) << operation;
    }
}

TEST_F(ColorLogicTest, EvaluatesABeforeB)
{
    connectAll();
    node.set("operation", 6);
    node.value();
    EXPECT_EQ(log, (CallLog{"color_a.evalColor", "color_b.evalColor"}));
}

TEST_F(ColorLogicTest, BoundsAreZeroToOneWithoutLookingAtTheInputs)
{
    connectAll();
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
    EXPECT_TRUE(log.empty());
}

TEST_F(ColorLogicTest, GradientIsZero)
{
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(ColorLogicTest, IsAFloatTextureInSpiteOfItsName)
{
    EXPECT_NE(node.floatTexture(), nullptr);
    EXPECT_EQ(node.texture(), nullptr);
    EXPECT_NE(node.rtTexture(), nullptr);
}

TEST_F(ColorLogicTest, WritesTwoSlotsAndTheOperation)
{
    connectAll();
    node.set("operation", 4);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text,
              "color_a theName theTag MaterialDescriptor\nsubtex\n"
              "color_b theName theTag MaterialDescriptor\nsubtex\n"
              "bitmap -947\n"
              "uvw_transform 4.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
              "0.000000,0.000000,0.000000,0.000000\n");
}

TEST_F(ColorLogicTest, LeavesTheSlotsOfUnsetInputsEmpty)
{
    EXPECT_EQ(sourceOf(node.rtTexture()).text,
              "subtex\nsubtex\nbitmap -947\n"
              "uvw_transform 0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
              "0.000000,0.000000,0.000000,0.000000\n");
}

} // namespace
