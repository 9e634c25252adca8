// The tables of per-thread entries by themselves.

#include "plugin_frame/thread_memo.h"

#include "support/heap_hooks.h"
#include "support/test_textures.h"

#include <gtest/gtest.h>

namespace {

using namespace support;
using nezaiva::TexCacheEntry;
using nezaiva::TexCacheTable;
using nezaiva::UVWCacheEntry;
using nezaiva::UVWCacheTable;

template <class Entry>
std::uintptr_t addressOf(Entry* entry)
{
    return reinterpret_cast<std::uintptr_t>(entry);
}

TEST(ThreadMemo, EntriesDoNotShareCacheLines)
{
    TestContext context;
    TexCacheTable colors;
    colors.build(5);
    UVWCacheTable mappings;
    mappings.build(5);
    for (int thread = 0; thread < 5; ++thread) {
        context.threadRecord->threadIndex = thread;
        TexCacheEntry* color = colors.entryFor(context, 0);
        UVWCacheEntry* mapping = mappings.entryFor(context, 0);
        ASSERT_NE(color, nullptr);
        ASSERT_NE(mapping, nullptr);
        EXPECT_EQ(addressOf(color) % 128, 0u);
        EXPECT_EQ(addressOf(mapping) % 256, 0u);
        context.threadRecord->threadIndex = 0;
        EXPECT_EQ(addressOf(color) - addressOf(colors.entryFor(context, 0)),
                  static_cast<unsigned>(thread) * 128);
        EXPECT_EQ(addressOf(mapping) - addressOf(mappings.entryFor(context, 0)),
                  static_cast<unsigned>(thread) * 256);
    }
}

TEST(ThreadMemo, NewEntriesAreEmpty)
{
    TestContext context;
    TexCacheTable memo;
    EXPECT_TRUE(memo.empty());
    EXPECT_EQ(memo.entryFor(context, 0), nullptr);
    memo.build(1);
    EXPECT_FALSE(memo.empty());
    EXPECT_EQ(memo.entryFor(context, 0)->sampleStamp, 0);
}

TEST(ThreadMemo, ResetEmptiesTheStampAlone)
{
    TestContext context;
    TexCacheTable memo;
    memo.build(2);
    for (int thread = 0; thread < 2; ++thread) {
        context.threadRecord->threadIndex = thread;
        *memo.entryFor(context, 0) = {7, {1.0f, 2.0f, 3.0f, 4.0f}};
    }
    memo.reset();
    for (int thread = 0; thread < 2; ++thread) {
        context.threadRecord->threadIndex = thread;
        const TexCacheEntry* entry = memo.entryFor(context, 0);
        EXPECT_EQ(entry->sampleStamp, 0);
        EXPECT_EQ(entry->value.a, 4.0f);
    }
}

TEST(ThreadMemo, MakesAValueOncePerPoint)
{
    TestContext context;
    TexCacheTable memo;
    memo.build(1);
    int made = 0;
    const auto make = [&] { return OUtils::AColor{static_cast<float>(++made), 0.0f, 0.0f, 0.0f}; };
    OUtils::AColor own;
    EXPECT_EQ(memo.getOr(context, OUtils::noTexCache, own, make).r, 1.0f);
    EXPECT_EQ(memo.getOr(context, OUtils::noTexCache, own, make).r, 1.0f);
    ++context.sampleStamp;
    EXPECT_EQ(memo.getOr(context, OUtils::noTexCache, own, make).r, 2.0f);
    EXPECT_EQ(own.r, 0.0f);
    // Where the memo may not be used, the value is the caller's and nothing is kept.
    context.shadeFlags = OUtils::noTexCache;
    EXPECT_EQ(&memo.getOr(context, OUtils::noTexCache, own, make), &own);
    EXPECT_EQ(own.r, 3.0f);
    context.shadeFlags = 0;
    EXPECT_EQ(memo.getOr(context, OUtils::noTexCache, own, make).r, 2.0f);
}

TEST(ThreadMemo, HasNoEntryOutsideItsThreadsOrUnderItsFlag)
{
    TestContext context;
    TexCacheTable memo;
    memo.build(2);
    for (const auto& [thread, served] : {std::pair(-1, false), {0, true}, {1, true}, {2, false}}) {
        context.threadRecord->threadIndex = thread;
        EXPECT_EQ(memo.entryFor(context, OUtils::noTexCache) != nullptr, served) << thread;
    }
    context.threadRecord->threadIndex = 0;
    context.shadeFlags = OUtils::noTexCache | 1u;
    EXPECT_EQ(memo.entryFor(context, OUtils::noTexCache), nullptr);
    EXPECT_NE(memo.entryFor(context, OUtils::noUVWCache), nullptr);
}

TEST(ThreadMemo, IsEmptyAfterClearAndForNoThreads)
{
    TestContext context;
    TexCacheTable memo;
    memo.build(2);
    memo.clear();
    EXPECT_TRUE(memo.empty());
    EXPECT_EQ(memo.entryFor(context, 0), nullptr);
    memo.build(0);
    EXPECT_TRUE(memo.empty());
    EXPECT_EQ(memo.entryFor(context, 0), nullptr);
    memo.reset();
}

TEST(ThreadMemo, LacksEntriesWithoutMemoryAndCanBeBuiltAgain)
{
    TestContext context;
    UVWCacheTable memo;
    {
        const ExhaustedHeap heap(0);
        memo.build(2);
        EXPECT_EQ(ExhaustedHeap::refusals, 1);
    }
    EXPECT_TRUE(memo.empty());
    EXPECT_EQ(memo.entryFor(context, 0), nullptr);
    memo.reset();
    memo.build(2);
    EXPECT_NE(memo.entryFor(context, 0), nullptr);
}

} // namespace
