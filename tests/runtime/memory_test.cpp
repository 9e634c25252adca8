#include "runtime/memory.h"

#include "support/debug_lines.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>
#include <ombrix/memory.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

// Present in a sanitized program only.
extern "C" __attribute__((weak)) void __asan_init();
extern "C" __attribute__((weak)) void __tsan_init();

namespace {

using namespace nezaiva;
using support::DebugLines;
using support::ExhaustedHeap;

// A heap of 1000 used and 234 free bytes in 7 blocks.
HeapWalk walkKnownHeap()
{
    return {HeapStatus::End, 1000, 234, 7};
}
HeapWalk walkEmptyHeap()
{
    return {HeapStatus::Empty, 5, 6, 0};
}
HeapWalk walkBrokenHeap()
{
    return {HeapStatus::BadNode, 1000, 234, 3};
}
HeapStatus allWell()
{
    return HeapStatus::AllWell;
}
HeapStatus damaged()
{
    return HeapStatus::BadNode;
}

class KnownHeap {
public:
    explicit KnownHeap(const RuntimeHeap& heap) : previous(replaceRuntimeHeap(heap)) {}
    KnownHeap(const KnownHeap&) = delete;
    KnownHeap& operator=(const KnownHeap&) = delete;
    ~KnownHeap() { replaceRuntimeHeap(previous); }

private:
    RuntimeHeap previous;
};

// What a refused allocation throws.
std::string messageOfRefused(std::size_t size)
{
    try {
        allocate(size);
    } catch (OUtils::ExceptionMsg& message) {
        return message.what();
    }
    return "nothing was thrown";
}

TEST(FailedAllocation, ThrowsTheSizesAndTellsItsSteps)
{
    KnownHeap heap({walkKnownHeap, allWell});
    DebugLines heard;
    std::string message;
    {
        ExhaustedHeap exhausted(987654321);
        message = messageOfRefused(987654321);
    }
    EXPECT_EQ(message, "Memory allocation failure; 987654321 bytes requested; 1234 bytes already in heap; "
                       "234 bytes free heap space.");
    EXPECT_EQ(heard.lines(), (std::vector<std::u16string>{
                                 u"[operator new] failed (size is 987654321)\n",
                                 u"[getFreeHeapMemory] Getting free heap memory.\n",
                                 u"[getFreeHeapMemory] heapstatus=-5\n",
                                 u"[getFreeHeapMemory] Number of blocks visited: 7\n",
                             }));
}

TEST(FailedAllocation, PrintsSizesBeyond32BitsInFull)
{
    KnownHeap heap({walkKnownHeap, allWell});
    DebugLines heard;
    ExhaustedHeap exhausted(5000000000);
    EXPECT_EQ(messageOfRefused(5000000000).rfind("Memory allocation failure; 5000000000 bytes requested;", 0),
              0u);
    EXPECT_EQ(heard.lines()[0], u"[operator new] failed (size is 5000000000)\n");
}

TEST(FailedAllocation, DamagedHeapReplacesTheMessage)
{
    KnownHeap heap({walkKnownHeap, damaged});
    ExhaustedHeap exhausted(987654321);
    EXPECT_EQ(messageOfRefused(987654321), " Heap is reported damaged.\n");
}

TEST(FailedAllocation, AllocatesNothingOnItsWay)
{
    DebugLines heard;
    bool thrown = false;
    {
        ExhaustedHeap exhausted(0);
        try {
            allocate(16);
        } catch (OUtils::ExceptionMsg&) {
            thrown = true;
        }
        EXPECT_EQ(ExhaustedHeap::refusals, 1);
    }
    EXPECT_TRUE(thrown);
}

TEST(FailedAllocation, SucceedsAgainWhenThereIsMemory)
{
    {
        ExhaustedHeap exhausted(987654321);
        messageOfRefused(987654321);
    }
    void* block = allocate(32);
    ASSERT_NE(block, nullptr);
    ofree(block);
}

TEST(HeapSize, IsTheSumOfAllBlocksWithoutALine)
{
    KnownHeap heap({walkKnownHeap, allWell});
    DebugLines heard;
    EXPECT_EQ(getHeapSize(), 1234u);
    EXPECT_TRUE(heard.lines().empty());
}

TEST(HeapSize, IsZeroForAnEmptyOrFailingWalk)
{
    {
        KnownHeap heap({walkEmptyHeap, allWell});
        EXPECT_EQ(getHeapSize(), 0u);
    }
    KnownHeap heap({walkBrokenHeap, allWell});
    EXPECT_EQ(getHeapSize(), 0u);
}

TEST(FreeHeapMemory, ReturnsWhatIsNotInUse)
{
    KnownHeap heap({walkBrokenHeap, allWell});
    DebugLines heard;
    EXPECT_EQ(getFreeHeapMemory(), 234u);
    EXPECT_EQ(heard.lines(), (std::vector<std::u16string>{
                                 u"[getFreeHeapMemory] Getting free heap memory.\n",
                                 u"[getFreeHeapMemory] heapstatus=-4\n",
                                 u"[getFreeHeapMemory] Number of blocks visited: 3\n",
                             }));
}

// The tests of the real heap; a sanitizer's heap is not the C library's.
struct RuntimeHeapTest : testing::Test {
    void SetUp() override
    {
        if (__asan_init || __tsan_init) GTEST_SKIP() << "the heap belongs to a sanitizer";
    }
};

TEST_F(RuntimeHeapTest, GrowsByWhatIsAllocated)
{
    constexpr std::size_t kLarge = std::size_t{8} << 20;
    const std::size_t before = getHeapSize();
    void* block = std::malloc(kLarge);
    ASSERT_NE(block, nullptr);
    EXPECT_GE(getHeapSize(), before + kLarge);
    std::free(block);
    EXPECT_LT(getHeapSize(), before + kLarge);
}

TEST_F(RuntimeHeapTest, GainsFreeMemoryWhenBlocksAreFreed)
{
    constexpr int kBlocks = 200;
    constexpr std::size_t kSize = 4096; // too large to be kept aside, too small to be given back
    void* blocks[kBlocks];
    for (void*& block : blocks)
        block = std::malloc(kSize);
    void* last = std::malloc(kSize);
    const std::size_t before = getFreeHeapMemory();
    for (void* block : blocks)
        std::free(block);
    EXPECT_GE(getFreeHeapMemory(), before + kBlocks * kSize / 2);
    std::free(last);
}

TEST_F(RuntimeHeapTest, IsReportedWell)
{
    const RuntimeHeap real = replaceRuntimeHeap({walkKnownHeap, damaged});
    replaceRuntimeHeap(real);
    EXPECT_EQ(real.check(), HeapStatus::AllWell);
    EXPECT_EQ(real.walk().status, HeapStatus::End);
    EXPECT_GT(real.walk().visitedBlocks, 0u);
}

} // namespace
