#include "plugin_frame/depth_memo.h"

#include "support/test_node.h"
#include "support/tolerances.h"

namespace {

using namespace support;
using nezaiva::DepthMemo;
using OUtils::AColor;

constexpr AColor kRed{1.0f, 0.0f, 0.0f, 0.5f};
constexpr AColor kBlue{0.0f, 0.0f, 1.0f, 0.25f};

struct DepthMemoTest : testing::Test {
    DepthMemoTest() { memo.build(2); }

    const AColor* findAt(int depth, int stamp)
    {
        context.rayDepth = depth;
        context.sampleStamp = stamp;
        return memo.find(context);
    }
    void storeAt(int depth, int stamp, const AColor& color)
    {
        context.rayDepth = depth;
        context.sampleStamp = stamp;
        memo.store(context, color);
    }

    DepthMemo memo;
    TestContext context;
};

TEST_F(DepthMemoTest, KnowsNothingAtFirst)
{
    EXPECT_EQ(findAt(0, 1), nullptr);
}

TEST_F(DepthMemoTest, FindsWhatWasStoredForThePoint)
{
    storeAt(0, 7, kRed);
    ASSERT_NE(findAt(0, 7), nullptr);
    EXPECT_SAME_COLOR(*findAt(0, 7), kRed);
    EXPECT_EQ(findAt(0, 8), nullptr);
    EXPECT_EQ(findAt(1, 7), nullptr);
}

TEST_F(DepthMemoTest, KeepsAResultWhileDeeperRaysStoreTheirs)
{
    storeAt(0, 7, kRed);
    for (int depth = 1; depth < 200; ++depth)
        storeAt(depth, 100 + depth, kBlue);
    ASSERT_NE(findAt(0, 7), nullptr);
    EXPECT_SAME_COLOR(*findAt(0, 7), kRed);
    ASSERT_NE(findAt(199, 299), nullptr);
    EXPECT_SAME_COLOR(*findAt(199, 299), kBlue);
    EXPECT_EQ(findAt(200, 299), nullptr);
}

TEST_F(DepthMemoTest, GrownEntriesAreEmpty)
{
    storeAt(100, 5, kRed);
    for (int depth = 0; depth < 100; ++depth)
        EXPECT_EQ(findAt(depth, 5), nullptr) << depth;
}

TEST_F(DepthMemoTest, ResetForgetsEveryDepth)
{
    storeAt(0, 5, kRed);
    storeAt(50, 6, kRed);
    memo.reset();
    EXPECT_EQ(findAt(0, 5), nullptr);
    EXPECT_EQ(findAt(50, 6), nullptr);
}

TEST_F(DepthMemoTest, ThreadsHaveRowsOfTheirOwn)
{
    storeAt(0, 5, kRed);
    context.threadRecord->threadIndex = 1;
    EXPECT_EQ(findAt(0, 5), nullptr);
    storeAt(0, 5, kBlue);
    context.threadRecord->threadIndex = 0;
    ASSERT_NE(findAt(0, 5), nullptr);
    EXPECT_SAME_COLOR(*findAt(0, 5), kRed);
}

TEST_F(DepthMemoTest, GoesUnusedOutsideItsTablesAndWhereItIsBarred)
{
    for (int thread : {-1, 2, 1'000'000}) {
        context.threadRecord->threadIndex = thread;
        storeAt(0, 5, kRed);
        EXPECT_EQ(findAt(0, 5), nullptr) << thread;
    }
    context.threadRecord->threadIndex = 0;
    for (int depth : {-1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        storeAt(depth, 5, kRed);
        EXPECT_EQ(findAt(depth, 5), nullptr) << depth;
    }
    storeAt(0, 5, kRed);
    context.shadeFlags = OUtils::noTexCache;
    EXPECT_EQ(findAt(0, 5), nullptr);
    storeAt(0, 6, kBlue);
    context.shadeFlags = 0;
    EXPECT_EQ(findAt(0, 6), nullptr);
    EXPECT_NE(findAt(0, 5), nullptr);
}

TEST_F(DepthMemoTest, IsUnusableBeforeBuildAndAfterClear)
{
    storeAt(0, 5, kRed);
    memo.clear();
    EXPECT_EQ(findAt(0, 5), nullptr);
    storeAt(0, 5, kRed);
    EXPECT_EQ(findAt(0, 5), nullptr);
    memo.build(0);
    storeAt(0, 5, kRed);
    EXPECT_EQ(findAt(0, 5), nullptr);
    memo.build(1);
    EXPECT_EQ(findAt(0, 5), nullptr);
}

TEST_F(DepthMemoTest, MakesAColorOncePerPointAndDepth)
{
    int made = 0;
    const auto make = [&] {
        ++made;
        return kRed;
    };
    for (const int depth : {0, 1, 0, 1}) {
        context.rayDepth = depth;
        context.sampleStamp = 5;
        EXPECT_SAME_COLOR(memo.getOr(context, make), kRed);
    }
    EXPECT_EQ(made, 2);
}

} // namespace
