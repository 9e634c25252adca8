#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct FloatConditionTest : testing::Test {
    FloatConditionTest()
    {
        a.value = 0.25f;
        b.value = 0.75f;
    }
    void connectAll() { node.connect("float_a", a).connect("float_b", b).connect("condition", condition); }

    CallLog log;
    TestFloat a{"float_a", &log}, b{"float_b", &log}, condition{"condition", &log};
    TestNode node{descriptor("TexFloatCondition")};
};

TEST_F(FloatConditionTest, NothingConnectedIsOne)
{
    EXPECT_SAME_BITS(node.value(), 1.0f);
}

TEST_F(FloatConditionTest, TakesBWhenUnset)
{
    node.connect("float_a", a).connect("float_b", b);
    EXPECT_SAME_BITS(node.value(), 0.75f);
    EXPECT_EQ(log, (CallLog{"float_b.evalFloat"}));
}

TEST_F(FloatConditionTest, TakesBAtZeroAndAAtEverythingElse)
{
    connectAll();
    for (float zero : {0.0f, -0.0f}) {
        condition.value = zero;
        EXPECT_SAME_BITS(node.value(), 0.75f);
    }
    for (float value : {-1.0f, 1.0f, 1e-45f, 1e30f, kNaN}) {
        condition.value = value;
        EXPECT_SAME_BITS(node.value(), 0.25f);
    }
}

TEST_F(FloatConditionTest, EvaluatesTheConditionFirstAndTheOtherInputNever)
{
    connectAll();
    condition.value = 1.0f;
    node.value();
    EXPECT_EQ(log, (CallLog{"condition.evalFloat", "float_a.evalFloat"}));
    log.clear();
    condition.value = 0.0f;
    node.value();
    EXPECT_EQ(log, (CallLog{"condition.evalFloat", "float_b.evalFloat"}));
}

TEST_F(FloatConditionTest, FallsBackOnAnUnsetInput)
{
    condition.value = 1.0f;
    node.connect("condition", condition).connect("float_b", b);
    EXPECT_SAME_BITS(node.value(), 1.0f);
    condition.value = 0.0f;
    EXPECT_SAME_BITS(node.value(), 0.75f);
}

TEST_F(FloatConditionTest, PassesNaNOn)
{
    connectAll();
    b.value = kNaN;
    EXPECT_SAME_BITS(node.value(), kNaN);
}

TEST_F(FloatConditionTest, BoundsWithAnUnsetInputAreZeroToOne)
{
    for (const char* connected : {"condition", "float_a", "float_b"}) {
        TestNode other(descriptor("TexFloatCondition"));
        other.connect(connected, a);
        const FloatBounds bounds = floatBounds(other);
        EXPECT_SAME_BITS(bounds.lower, 0.0f);
        EXPECT_SAME_BITS(bounds.upper, 1.0f);
    }
}

TEST_F(FloatConditionTest, BoundsOfSetInputsAreAskedForAndDropped)
{
    connectAll();
    const FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, kUnwritten);
    EXPECT_SAME_BITS(bounds.upper, kUnwritten);
    EXPECT_EQ(log, (CallLog{"float_a.evalFloatBounds", "float_b.evalFloatBounds"}));
}

TEST_F(FloatConditionTest, GradientIsZero)
{
    connectAll();
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(FloatConditionTest, WritesConstantsInThePlacesOfAlphas)
{
    connectAll();
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "condition theName theTag MaterialDescriptor\nsubtex\n"
                            "float_b theName theTag MaterialDescriptor\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "float_a theName theTag MaterialDescriptor\nsubtex\n"
                            "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                            "bitmap -948\n");
}

TEST_F(FloatConditionTest, WritesConstantsForUnsetInputs)
{
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "color 0.000000 0.000000 0.000000 0.000000\nsubtex\n"
                                               "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                                               "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                                               "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                                               "color 1.000000 1.000000 1.000000 1.000000\nsubtex\n"
                                               "bitmap -948\n");
}

} // namespace
