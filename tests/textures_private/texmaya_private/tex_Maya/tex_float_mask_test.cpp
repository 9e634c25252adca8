#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct FloatMaskTest : testing::Test {
    CallLog log;
    TestFloat in{"in_float", &log}, mask{"mask", &log};
    TestNode node{descriptor("TexFloatMask")};
};

TEST_F(FloatMaskTest, NothingConnectedIsOne)
{
    EXPECT_SAME_BITS(node.value(), 1.0f);
}

TEST_F(FloatMaskTest, AnUnsetMaskTakesNothingAway)
{
    in.value = 0.25f;
    node.connect("in_float", in);
    EXPECT_SAME_BITS(node.value(), 0.25f);
}

TEST_F(FloatMaskTest, TakesTheMaskAwayBelowZeroToo)
{
    in.value = 0.25f;
    mask.value = 0.75f;
    node.connect("mask", mask);
    EXPECT_SAME_BITS(node.value(), 0.25f); // from the unset input's 1
    node.connect("in_float", in);
    EXPECT_SAME_BITS(node.value(), -0.5f);
    EXPECT_EQ(log, (CallLog{"mask.evalFloat", "in_float.evalFloat", "mask.evalFloat"}));
}

TEST_F(FloatMaskTest, AWeakMaskChangesNothing)
{
    node.connect("in_float", in).connect("mask", mask);
    in.value = 0.0f;
    for (float weak : {1e-11f, 1e-10f, 0.0f, -1.0f, kNaN}) {
        mask.value = weak;
        EXPECT_SAME_BITS(node.value(), 0.0f) << weak;
    }
    mask.value = 1.1e-10f;
    EXPECT_SAME_BITS(node.value(), -1.1e-10f);
}

TEST_F(FloatMaskTest, PassesNaNOn)
{
    node.connect("in_float", in);
    in.value = kNaN;
    EXPECT_SAME_BITS(node.value(), kNaN);
}

TEST_F(FloatMaskTest, BoundsTakeTheMaskCrosswise)
{
    FloatBounds bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 1.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
    mask.lowerBound = 0.25f;
    mask.upperBound = 0.5f;
    node.connect("mask", mask);
    bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, 0.5f);
    EXPECT_SAME_BITS(bounds.upper, 0.75f);
    in.lowerBound = -1.0f;
    in.upperBound = 2.0f;
    node.connect("in_float", in);
    bounds = floatBounds(node);
    EXPECT_SAME_BITS(bounds.lower, -1.5f);
    EXPECT_SAME_BITS(bounds.upper, 1.75f);
}

TEST_F(FloatMaskTest, GradientIsZero)
{
    node.connect("in_float", in);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.floatTexture()->evalFloatGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

} // namespace
