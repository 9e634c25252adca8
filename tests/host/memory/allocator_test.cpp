#include "host/memory/allocator.h"

#include <ombrix/char_string.h>
#include <ombrix/ptr_array.h>

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

// The sanitizers end the process for an impossible size unless they are told otherwise.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace {

using namespace ombrix;

// The counters are the process's; what a test adds is counted from here.
struct Since {
    AllocationCounters start = allocationCounters();
    std::int64_t blocks() const { return allocationCounters().liveBlocks - start.liveBlocks; }
    std::int64_t bytes() const { return allocationCounters().liveBytes - start.liveBytes; }
    std::int64_t total() const { return allocationCounters().totalAllocations - start.totalAllocations; }
};

TEST(Allocator, CountsLiveBlocksBytesAndAllocations)
{
    const Since since;
    void* small = omalloc(100);
    void* large = omalloc(5000);
    EXPECT_EQ(since.blocks(), 2);
    EXPECT_EQ(since.total(), 2);
    EXPECT_GE(since.bytes(), 5100);
    ofree(small);
    EXPECT_EQ(since.blocks(), 1);
    EXPECT_GE(since.bytes(), 5000);
    EXPECT_LT(since.bytes(), 5100);
    ofree(large);
    EXPECT_EQ(since.blocks(), 0);
    EXPECT_EQ(since.bytes(), 0);
    EXPECT_EQ(since.total(), 2);
}

TEST(Allocator, FreesNullAndAllocatesNothing)
{
    const Since since;
    ofree(nullptr);
    EXPECT_EQ(since.blocks(), 0);
    void* empty = omalloc(0);
    EXPECT_NE(empty, nullptr);
    ofree(empty);
    EXPECT_EQ(since.blocks(), 0);
}

TEST(Allocator, BlocksAreAlignedForAnyFundamentalType)
{
    for (std::size_t size : {1u, 3u, 17u, 1000u}) {
        void* block = omalloc(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u);
        ofree(block);
    }
}

TEST(Allocator, ResizingKeepsTheContents)
{
    const Since since;
    auto* text = static_cast<char*>(orealloc(nullptr, 8));
    ASSERT_NE(text, nullptr);
    std::memcpy(text, "ombrix", 7);
    text = static_cast<char*>(orealloc(text, 100000));
    EXPECT_STREQ(text, "ombrix");
    EXPECT_EQ(since.blocks(), 1);
    EXPECT_GE(since.bytes(), 100000);
    ofree(text);
    EXPECT_EQ(since.blocks(), 0);
    EXPECT_EQ(since.bytes(), 0);
}

TEST(Allocator, AnImpossibleSizeGivesNullAndKeepsTheOldBlock)
{
    const Since since;
    // Not a constant: the compiler would warn of it.
    volatile std::size_t impossible = static_cast<std::size_t>(-1) / 2;
    EXPECT_EQ(omalloc(impossible), nullptr);
    auto* block = static_cast<char*>(omalloc(4));
    std::memcpy(block, "abc", 4);
    EXPECT_EQ(orealloc(block, impossible), nullptr);
    EXPECT_STREQ(block, "abc");
    EXPECT_EQ(since.blocks(), 1);
    ofree(block);
    EXPECT_EQ(since.blocks(), 0);
}

TEST(Allocator, BlocksMayBeFreedOnAnotherThread)
{
    const Since since;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([] {
            for (int n = 0; n < 1000; ++n)
                ofree(omalloc(64));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(since.blocks(), 0);
    EXPECT_EQ(since.bytes(), 0);
    EXPECT_EQ(since.total(), 8000);
    void* block = omalloc(10);
    std::thread([block] { ofree(block); }).join();
    EXPECT_EQ(since.blocks(), 0);
    EXPECT_EQ(since.bytes(), 0);
}

TEST(Allocator, StringsAndArraysLiveInIt)
{
    const Since since;
    {
        OUtils::CharString text("hello");
        OUtils::PtrArray<int> numbers(10);
        OUtils::PtrArray<int> shared = numbers;
        EXPECT_EQ(since.blocks(), 2);
    }
    EXPECT_EQ(since.blocks(), 0);
}

// An arena that is not the C library's heap, and counts what passes through it.
struct Arena {
    static constexpr std::size_t kSize = 1 << 16;
    alignas(16) static inline char bytes[kSize];
    static inline std::size_t used = 0;
    static inline int live = 0;

    static bool owns(void* block)
    {
        return block >= static_cast<void*>(bytes) && block < static_cast<void*>(bytes + kSize);
    }
    static void* alloc(std::size_t size)
    {
        const std::size_t whole = (size + 31) / 16 * 16; // 16 bytes in front hold the size
        if (whole > kSize - used) return nullptr;
        char* block = bytes + used;
        used += whole;
        std::memcpy(block, &size, sizeof size);
        ++live;
        return block + 16;
    }
    static std::size_t size(void* block)
    {
        if (!owns(block)) return defaultAllocatorHooks().size(block);
        std::size_t held = 0;
        std::memcpy(&held, static_cast<char*>(block) - 16, sizeof held);
        return held;
    }
    static void free(void* block)
    {
        if (owns(block))
            --live;
        else
            defaultAllocatorHooks().free(block);
    }
    static void* realloc(void* block, std::size_t wanted)
    {
        void* moved = alloc(wanted);
        if (!moved) return nullptr;
        std::memcpy(moved, block, size(block) < wanted ? size(block) : wanted);
        free(block);
        return moved;
    }
};

TEST(AllocatorHooks, AnArenaServesEveryAllocation)
{
    const Since since;
    void* before = omalloc(10);
    const AllocatorHooks old = setAllocatorHooks({Arena::alloc, Arena::free, Arena::realloc, Arena::size});
    EXPECT_EQ(old.alloc, defaultAllocatorHooks().alloc);
    {
        OUtils::CharString text("in the arena");
        EXPECT_TRUE(Arena::owns(const_cast<char*>(text.ptr())));
        void* block = orealloc(omalloc(8), 500);
        EXPECT_TRUE(Arena::owns(block));
        EXPECT_EQ(Arena::live, 2);
        ofree(block);
    }
    EXPECT_EQ(Arena::live, 0);
    ofree(before); // handed on
    setAllocatorHooks(old);
    EXPECT_EQ(since.blocks(), 0);
    EXPECT_EQ(since.bytes(), 0);
}

TEST(AllocatorHooks, AFailingHeapGivesNullAndCountsNothing)
{
    const Since since;
    AllocatorHooks failing = defaultAllocatorHooks();
    failing.alloc = [](std::size_t) -> void* { return nullptr; };
    failing.realloc = [](void*, std::size_t) -> void* { return nullptr; };
    void* before = omalloc(10);
    const AllocatorHooks old = setAllocatorHooks(failing);
    EXPECT_EQ(omalloc(1), nullptr);
    EXPECT_EQ(orealloc(before, 100), nullptr);
    OUtils::PtrArray<int> numbers;
    EXPECT_EQ(numbers.alloc(3), 0);
    EXPECT_EQ(numbers.count(), 0);
    OUtils::CharString text("lost");
    EXPECT_EQ(text.ptr(), nullptr);
    setAllocatorHooks(old);
    EXPECT_EQ(since.blocks(), 1);
    ofree(before);
}

TEST(AllocatorHooks, AHeapThatCannotTellSizesCountsBlocksAlone)
{
    AllocatorHooks blind = defaultAllocatorHooks();
    blind.size = nullptr;
    const Since since;
    const AllocatorHooks old = setAllocatorHooks(blind);
    void* block = omalloc(100);
    EXPECT_EQ(since.blocks(), 1);
    EXPECT_EQ(since.bytes(), 0);
    ofree(block);
    setAllocatorHooks(old);
    EXPECT_EQ(since.bytes(), 0);
}

TEST(ThreadState, TagsAreTheThreadsOwn)
{
    oallocSetTag(5);
    EXPECT_EQ(oallocGetTag(), 5);
    std::thread([] {
        EXPECT_EQ(oallocGetTag(), 0);
        oallocSetTag(9);
    }).join();
    EXPECT_EQ(oallocGetTag(), 5);
    oallocSetTag(0);
}

TEST(ThreadState, ABoundRecordCountsItsThread)
{
    EXPECT_EQ(oallocGetMemoryDataForCurrentThread(), nullptr);
    EXPECT_EQ(oallocGetDefaultAllocationsEnable(), 1);
    MemoryRecord record;
    oallocInitializeForCurrentThread();
    oallocSetMemoryDataForCurrentThread(&record);
    EXPECT_EQ(oallocGetMemoryDataForCurrentThread(), &record);
    void* counted = omalloc(50);
    std::thread([] { ofree(omalloc(50)); }).join();
    oallocSetDefaultAllocations(0);
    void* uncounted = omalloc(50);
    EXPECT_EQ(oallocGetDefaultAllocationsEnable(), 0);
    oallocSetDefaultAllocations(1);
    EXPECT_EQ(record.allocations, 1);
    EXPECT_GE(record.bytesAllocated, 50);
    ofree(counted);
    EXPECT_EQ(record.releases, 1);
    EXPECT_EQ(record.bytesReleased, record.bytesAllocated);
    oallocSetMemoryDataForCurrentThread(nullptr);
    ofree(uncounted);
    EXPECT_EQ(record.releases, 1);
}

TEST(ThreadState, EndingAThreadsUseForgetsItsState)
{
    std::thread([] {
        MemoryRecord record;
        oallocInitializeForCurrentThread();
        oallocSetTag(3);
        oallocSetMemoryDataForCurrentThread(&record);
        oallocSetDefaultAllocations(0);
        oallocTerminateForCurrentThread();
        EXPECT_EQ(oallocGetTag(), 0);
        EXPECT_EQ(oallocGetMemoryDataForCurrentThread(), nullptr);
        EXPECT_EQ(oallocGetDefaultAllocationsEnable(), 1);
        ofree(omalloc(8));
        EXPECT_EQ(record.allocations, 0);
    }).join();
}

} // namespace
