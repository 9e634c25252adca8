#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

AColor grey(float value)
{
    return {value, value, value, 9.0f};
}

struct SetRangeTest : testing::Test {
    void connectAll()
    {
        node.connect("value", value).connect("oldMin", oldMin).connect("oldMax", oldMax);
        node.connect("newMin", newMin).connect("newMax", newMax);
    }
    static void bound(TestColor& input, float lower, float upper)
    {
        input.lowerBound = grey(lower);
        input.upperBound = grey(upper);
    }

    TestColor value{"value", nullptr}, oldMin{"oldMin", nullptr}, oldMax{"oldMax", nullptr},
        newMin{"newMin", nullptr}, newMax{"newMax", nullptr};
    TestNode node{descriptor("TexSetRange")};
};

TEST_F(SetRangeTest, NothingConnectedIsBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(SetRangeTest, MovesEachChannelBetweenItsRanges)
{
    connectAll();
    value.value = {0.25f, 3.0f, -1.0f, 9.0f};
    oldMin.value = {0.0f, 2.0f, 0.0f, 9.0f};
    oldMax.value = {1.0f, 4.0f, 2.0f, 9.0f};
    newMin.value = {10.0f, 0.0f, 0.0f, 9.0f};
    newMax.value = {20.0f, -8.0f, 4.0f, 9.0f};
    // A quarter, a half, and a half below the old range: nothing is clamped.
    EXPECT_SAME_COLOR(node.color(), {12.5f, -4.0f, -2.0f, 1.0f});
}

TEST_F(SetRangeTest, AnOldRangeOfNoWidthIsWidened)
{
    connectAll();
    value.value = grey(0.5f);
    newMin.value = grey(0.25f);
    newMax.value = grey(1e6f);
    // 0.25 + (0.5 / 1e6) (1e6 - 0.25) = 0.749999875
    const AColor color = node.color();
    EXPECT_SAME_BITS(color.r, 0.749999875f);
    EXPECT_SAME_BITS(color.g, 0.749999875f);
    // The ends need not be 0: 0.5 above 2, in units of a million.
    oldMin.value = oldMax.value = grey(2.0f);
    value.value = grey(2.5f);
    EXPECT_SAME_BITS(node.color().b, 0.749999875f);
}

TEST_F(SetRangeTest, PassesNaNOn)
{
    connectAll();
    value.value = {kNaN, 0.5f, 0.5f, 9.0f};
    oldMax.value = {1.0f, kNaN, 1.0f, 9.0f};
    newMax.value = {1.0f, 1.0f, 1.0f, kNaN};
    EXPECT_SAME_COLOR(node.color(), {kNaN, kNaN, 0.5f, 1.0f});
}

TEST_F(SetRangeTest, BoundsHoldAllCombinations)
{
    connectAll();
    bound(value, 0.0f, 2.0f);
    bound(oldMin, 0.0f, 0.0f);
    bound(oldMax, 1.0f, 2.0f);
    bound(newMin, 0.0f, 1.0f);
    bound(newMax, 3.0f, 4.0f);
    // The value is at 0, 1 or 2 old widths: least 0 of newMin 0, greatest 2 of 0 to 4.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {8.0f, 8.0f, 8.0f, 1.0f});
}

TEST_F(SetRangeTest, BoundsTreatChannelsApart)
{
    connectAll();
    value.lowerBound = {0.0f, 0.5f, 1.0f, 9.0f};
    value.upperBound = {0.5f, 1.0f, 2.0f, 9.0f};
    oldMax.lowerBound = oldMax.upperBound = grey(1.0f);
    newMax.lowerBound = newMax.upperBound = {2.0f, 4.0f, -8.0f, 9.0f};
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 2.0f, -16.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 4.0f, -8.0f, 1.0f});
}

TEST_F(SetRangeTest, BoundsWidenEveryOldMaximumThatMeetsAnOldMinimum)
{
    connectAll();
    bound(value, 0.0f, 1.0f);
    bound(newMax, 1e6f, 1e6f);
    // The lower maximum, 1, meets the upper minimum and becomes 1000001; the upper one, 0, the lower, 1e6.
    bound(oldMin, 0.0f, 1.0f);
    bound(oldMax, 1.0f, 0.0f);
    const ColorBounds bounds = colorBounds(node);
    // Least: value 0, minimum 1, width 999999. Greatest: value 1, minimum 0, width 1e6.
    EXPECT_FLOAT_EQ(bounds.lower.r, -1e6f / 999999.0f);
    EXPECT_SAME_BITS(bounds.upper.r, 1.0f);
}

TEST_F(SetRangeTest, BoundsWidenTwiceWhereTheFirstTimeMeetsTheOtherMinimum)
{
    connectAll();
    bound(value, 0.0f, 1e6f);
    bound(newMax, 1.0f, 1.0f);
    bound(oldMin, 0.0f, 1e6f);
    bound(oldMax, 0.0f, 4e6f);
    // The lower maximum goes from 0 to 1e6 and from there to 2e6: widths 2e6 and 4e6 from 0, 1e6 and 3e6
    // from 1e6. Least: 0 of 1e6 to 2e6, -1. Greatest: 1e6 of 0 to 2e6, a half.
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-1.0f, -1.0f, -1.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.5f, 0.5f, 1.0f});
}

TEST_F(SetRangeTest, BoundsOfNoNumbersKeepTheirStart)
{
    node.connect("value", value);
    bound(value, kNaN, kNaN);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {1e18f, 1e18f, 1e18f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {-1e18f, -1e18f, -1e18f, 1.0f});
}

TEST_F(SetRangeTest, GradientIsZero)
{
    connectAll();
    expectZeroGradient(node);
}

TEST_F(SetRangeTest, OutputIsTheTextureItself)
{
    EXPECT_EQ(outputOf<OUtils::TextureInterface>(node, "color"), node.texture());
}

TEST_F(SetRangeTest, WritesItsFiveSlots)
{
    connectAll();
    oldMax.hasSource = false;
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, sourceLine("value") + "subtex\n" + sourceLine("oldMin") +
                                "subtex\ncolor 0 0 0 0\nsubtex\n" + sourceLine("newMin") + "subtex\n" +
                                sourceLine("newMax") + "subtex\nbitmap -955\n");
}

TEST_F(SetRangeTest, WritesBlackForUnsetInputs)
{
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0 0 0 0\nsubtex\ncolor 0 0 0 0\nsubtex\ncolor 0 0 0 0\nsubtex\n"
                            "color 0 0 0 0\nsubtex\ncolor 0 0 0 0\nsubtex\nbitmap -955\n");
}

} // namespace
