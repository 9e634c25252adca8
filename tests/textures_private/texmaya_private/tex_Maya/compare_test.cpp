#include "kernels/color/compare.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace nezaiva;
using OUtils::AColor;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct ExpectedAnswers {
    float a, b;
    // equal, not equal, less, greater, less or equal, greater or equal
    bool answers[6];
};

TEST(Compare, FloatsAnswerTheirTable)
{
    const ExpectedAnswers table[] = {
        {1.0f, 1.0f, {true, false, false, false, true, true}},
        {1.0f, 2.0f, {false, true, true, false, true, false}},
        {2.0f, 1.0f, {false, true, false, true, false, true}},
        {0.0f, -0.0f, {true, false, false, false, true, true}},
        {kNaN, 1.0f, {false, true, false, false, false, false}},
        {1.0f, kNaN, {false, true, false, false, false, false}},
        {kNaN, kNaN, {false, true, false, false, false, false}},
    };
    for (const ExpectedAnswers& row : table)
        for (int operation = 0; operation < 6; ++operation)
            EXPECT_EQ(compareFloats(row.a, row.b, operation), row.answers[operation])
                << row.a << " and " << row.b << ", operation " << operation;
}

TEST(Compare, NoTestHoldsOutsideTheEnumeration)
{
    for (int operation : {-1, 6, 1000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_FALSE(compareFloats(1.0f, 1.0f, operation)) << operation;
        EXPECT_FALSE(compareFloats(1.0f, 2.0f, operation)) << operation;
        EXPECT_FALSE(compareColors({1, 1, 1, 1}, {1, 1, 1, 1}, operation)) << operation;
    }
}

TEST(Compare, ColorsAreEqualChannelByChannelWithoutAlpha)
{
    const AColor a{0.25f, 0.5f, 0.75f, 1.0f};
    EXPECT_TRUE(compareColors(a, {0.25f, 0.5f, 0.75f, 0.0f}, kEqual));
    EXPECT_FALSE(compareColors(a, {0.25f, 0.5f, 0.75f, 0.0f}, kNotEqual));
    for (const AColor& other : {AColor{0.0f, 0.5f, 0.75f, 1.0f}, AColor{0.25f, 0.0f, 0.75f, 1.0f},
                                AColor{0.25f, 0.5f, 0.0f, 1.0f}}) {
        EXPECT_FALSE(compareColors(a, other, kEqual));
        EXPECT_TRUE(compareColors(a, other, kNotEqual));
    }
}

TEST(Compare, NaNInAnyChannelIsNotEqual)
{
    for (const AColor& color :
         {AColor{kNaN, 0.5f, 0.5f, 1.0f}, AColor{0.5f, kNaN, 0.5f, 1.0f}, AColor{0.5f, 0.5f, kNaN, 1.0f}}) {
        EXPECT_FALSE(compareColors(color, color, kEqual));
        EXPECT_TRUE(compareColors(color, color, kNotEqual));
        for (int operation : {kLess, kGreater, kLessOrEqual, kGreaterOrEqual})
            EXPECT_FALSE(compareColors(color, {0, 0, 0, 0}, operation)) << operation;
    }
}

TEST(Compare, ColorsAreOrderedByTheirSums)
{
    const AColor a{1.0f, 0.0f, 0.0f, 0.0f};
    const AColor b{0.0f, 0.5f, 0.5f, 1.0f};
    EXPECT_FALSE(compareColors(a, b, kEqual));
    EXPECT_TRUE(compareColors(a, b, kLessOrEqual));
    EXPECT_TRUE(compareColors(a, b, kGreaterOrEqual));
    EXPECT_FALSE(compareColors(a, b, kLess));
    EXPECT_FALSE(compareColors(a, b, kGreater));
    EXPECT_TRUE(compareColors({0.1f, 0.1f, 0.1f, 9.0f}, {0.0f, 0.0f, 0.5f, 0.0f}, kLess));
}

// In single precision 1e8 + 1 is 1e8, so (1e8 + 1) - 1e8 is 0 while (1e8 - 1e8) + 1 is 1.
TEST(Compare, SumsAddRedGreenBlueInThisOrder)
{
    const AColor oneIsLost{1e8f, 1.0f, -1e8f, 1.0f};
    const AColor oneIsKept{1e8f, -1e8f, 1.0f, 1.0f};
    EXPECT_TRUE(compareColors(oneIsLost, oneIsKept, kLess));
    EXPECT_TRUE(compareColors(oneIsLost, {0, 0, 0, 0}, kGreaterOrEqual));
    EXPECT_FALSE(compareColors(oneIsLost, {0, 0, 0, 0}, kGreater));
}

} // namespace
