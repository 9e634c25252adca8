#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

// A node with everything connected.
struct ConditionTest : testing::Test {
    ConditionTest()
    {
        colorA.value = {0.1f, 0.2f, 0.3f, 0.9f};
        colorB.value = {0.4f, 0.5f, 0.6f, 0.9f};
        alphaA.value = 0.25f;
        alphaB.value = 0.75f;
    }
    void connectAll()
    {
        node.connect("color_a", colorA).connect("alpha_a", alphaA);
        node.connect("color_b", colorB).connect("alpha_b", alphaB);
        node.connect("condition", condition);
    }

    CallLog log;
    TestColor colorA{"color_a", &log}, colorB{"color_b", &log};
    TestFloat alphaA{"alpha_a", &log}, alphaB{"alpha_b", &log}, condition{"condition", &log};
    TestNode node{descriptor("TexColorCondition")};
};

TEST_F(ConditionTest, ColorConditionWithNothingConnectedIsOpaqueWhite)
{
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(ConditionTest, ColorConditionTakesBWhenUnset)
{
    node.connect("color_a", colorA).connect("color_b", colorB);
    EXPECT_SAME_COLOR(node.color(), {0.4f, 0.5f, 0.6f, 1.0f});
    EXPECT_EQ(log, (CallLog{"color_b.evalColor"}));
}

TEST_F(ConditionTest, ColorConditionTakesBAtZeroOfEitherSign)
{
    connectAll();
    for (float zero : {0.0f, -0.0f}) {
        condition.value = zero;
        EXPECT_SAME_COLOR(node.color(), {0.4f, 0.5f, 0.6f, 0.75f});
    }
}

TEST_F(ConditionTest, ColorConditionTakesAAtEverythingElse)
{
    connectAll();
    for (float value : {-1.0f, 1.0f, 1e-45f, 1e30f, kNaN}) {
        condition.value = value;
        EXPECT_SAME_COLOR(node.color(), {0.1f, 0.2f, 0.3f, 0.25f});
    }
}

TEST_F(ConditionTest, ColorConditionEvaluatesTheConditionFirstAndTheOtherInputNever)
{
    connectAll();
    condition.value = 1.0f;
    node.color();
    EXPECT_EQ(log, (CallLog{"condition.evalFloat", "color_a.evalColor", "alpha_a.evalFloat"}));
    log.clear();
    condition.value = 0.0f;
    node.color();
    EXPECT_EQ(log, (CallLog{"condition.evalFloat", "color_b.evalColor", "alpha_b.evalFloat"}));
}

TEST_F(ConditionTest, ColorConditionFallsBackOnEachUnsetInput)
{
    condition.value = 1.0f;
    node.connect("condition", condition).connect("alpha_a", alphaA).connect("color_b", colorB);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 0.25f});
    condition.value = 0.0f;
    EXPECT_SAME_COLOR(node.color(), {0.4f, 0.5f, 0.6f, 1.0f});
}

TEST_F(ConditionTest, ColorConditionPassesNaNOn)
{
    connectAll();
    colorB.value = {kNaN, 0.0f, 1.0f, 0.0f};
    alphaB.value = kNaN;
    EXPECT_SAME_COLOR(node.color(), {kNaN, 0.0f, 1.0f, kNaN});
}

TEST_F(ConditionTest, ColorConditionBoundsWithAnUnsetColorAreZeroToOne)
{
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});

    for (const char* connected : {"color_a", "color_b"}) {
        TestNode other(descriptor("TexColorCondition"));
        other.connect(connected, colorA);
        bounds = colorBounds(other);
        EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
    }
}

TEST_F(ConditionTest, ColorConditionBoundsPutUpperBoundsIntoTheLowerResultOnly)
{
    connectAll();
    colorA.upperBound = {0.1f, 0.6f, -3.0f, 9.0f};
    colorB.upperBound = {0.2f, 0.5f, -2.0f, 9.0f};
    alphaA.upperBound = 0.75f;
    alphaB.upperBound = 0.5f;
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.2f, 0.6f, -2.0f, 0.75f});
    EXPECT_SAME_COLOR(bounds.upper, kUnwrittenColor);
}

TEST_F(ConditionTest, ColorConditionBoundsHaveAlphaOneUnlessBothAlphasAreSet)
{
    colorA.upperBound = {0.1f, 0.1f, 0.1f, 9.0f};
    colorB.upperBound = {0.2f, 0.2f, 0.2f, 9.0f};
    alphaA.upperBound = 5.0f;
    node.connect("color_a", colorA).connect("color_b", colorB).connect("alpha_a", alphaA);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.2f, 0.2f, 0.2f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, kUnwrittenColor);
}

TEST_F(ConditionTest, ColorConditionBoundsTakeAlphaFromBothAlphasAlsoWithoutColors)
{
    alphaA.upperBound = 0.25f;
    alphaB.upperBound = 3.0f;
    node.connect("alpha_a", alphaA).connect("alpha_b", alphaB);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 3.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(ConditionTest, ColorConditionGradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(ConditionTest, ColorConditionWritesItsFiveSlots)
{
    connectAll();
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "condition theName theTag MaterialDescriptor\nsubtex\n"
                            "color_b theName theTag MaterialDescriptor\nsubtex\n"
                            "alpha_b theName theTag MaterialDescriptor\nsubtex\n"
                            "color_a theName theTag MaterialDescriptor\nsubtex\n"
                            "alpha_a theName theTag MaterialDescriptor\nsubtex\n"
                            "bitmap -948\n");
}

TEST_F(ConditionTest, ColorConditionWritesConstantsForUnsetInputs)
{
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.000000 0.000000 0.000000 0.000000\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "bitmap -948\n");
}

TEST_F(ConditionTest, ColorConditionLeavesTheSlotOfAnInputWithoutGpuFormEmpty)
{
    connectAll();
    colorB.hasSource = false;
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "condition theName theTag MaterialDescriptor\nsubtex\n"
                                               "subtex\n"
                                               "alpha_b theName theTag MaterialDescriptor\nsubtex\n"
                                               "color_a theName theTag MaterialDescriptor\nsubtex\n"
                                               "alpha_a theName theTag MaterialDescriptor\nsubtex\n"
                                               "bitmap -948\n");
}

} // namespace
