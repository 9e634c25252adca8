// The library's global allocation functions, which this test program has by linking the library's objects.

#include "host/memory/allocator.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

namespace {

using support::ExhaustedHeap;

std::int64_t liveBlocks()
{
    return ombrix::allocationCounters().liveBlocks;
}

// Writes all bytes, so that a sanitizer sees a block that is too small.
void fill(void* block, std::size_t size)
{
    ASSERT_NE(block, nullptr);
    std::memset(block, 0x5A, size);
}

TEST(GlobalNew, EveryPlainFormUsesTheHostsHeap)
{
    const std::int64_t before = liveBlocks();
    void* single = ::operator new(40);
    void* array = ::operator new[](40);
    void* quiet = ::operator new(40, std::nothrow);
    void* quietArray = ::operator new[](40, std::nothrow);
    EXPECT_EQ(liveBlocks(), before + 4);
    for (void* block : {single, array, quiet, quietArray})
        fill(block, 40);
    ::operator delete(single);
    ::operator delete[](array);
    ::operator delete(quiet, std::nothrow);
    ::operator delete[](quietArray, std::nothrow);
    EXPECT_EQ(liveBlocks(), before);
}

#ifdef __cpp_sized_deallocation
TEST(GlobalNew, SizedDeletesGiveBackToTheHostsHeap)
{
    const std::int64_t before = liveBlocks();
    const std::align_val_t aligned{64};
    void* blocks[] = {::operator new(8), ::operator new[](8), ::operator new(8, aligned),
                      ::operator new[](8, aligned)};
    EXPECT_EQ(liveBlocks(), before + 4);
    ::operator delete (blocks[0], std::size_t{8});
    ::operator delete[](blocks[1], std::size_t{8});
    ::operator delete (blocks[2], std::size_t{8}, aligned);
    ::operator delete[](blocks[3], std::size_t{8}, aligned);
    EXPECT_EQ(liveBlocks(), before);
}
#endif

TEST(GlobalNew, DeletesAcceptNull)
{
    const std::int64_t before = liveBlocks();
    ::operator delete(nullptr);
    ::operator delete[](nullptr);
    ::operator delete (nullptr, std::align_val_t{64});
    ::operator delete[](nullptr, std::align_val_t{64});
    EXPECT_EQ(liveBlocks(), before);
}

TEST(GlobalNew, AlignedFormsAlign)
{
    const std::int64_t before = liveBlocks();
    for (std::size_t alignment = 8; alignment <= 8192; alignment *= 2)
        for (std::size_t size : {std::size_t{1}, std::size_t{40}, alignment, 3 * alignment + 1}) {
            const auto aligned = static_cast<std::align_val_t>(alignment);
            void* blocks[] = {::operator new(size, aligned), ::operator new[](size, aligned),
                              ::operator new(size, aligned, std::nothrow),
                              ::operator new[](size, aligned, std::nothrow)};
            EXPECT_EQ(liveBlocks(), before + 4);
            for (void* block : blocks) {
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignment, 0u);
                fill(block, size);
            }
            ::operator delete(blocks[0], aligned);
            ::operator delete[](blocks[1], aligned);
            ::operator delete(blocks[2], aligned, std::nothrow);
            ::operator delete[](blocks[3], aligned, std::nothrow);
            EXPECT_EQ(liveBlocks(), before);
        }
}

TEST(GlobalNew, OverAlignedObjectsAreMadeAndEnded)
{
    struct alignas(256) Cell {
        unsigned char bytes[256];
    };
    const std::int64_t before = liveBlocks();
    auto* cells = new Cell[5];
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(cells) % 256, 0u);
    fill(cells, 5 * sizeof(Cell));
    delete[] cells;
    EXPECT_EQ(liveBlocks(), before);
}

TEST(GlobalNew, ThrowingFormsThrowTheMessage)
{
    constexpr std::size_t kSize = 987654321;
    ExhaustedHeap exhausted(kSize);
    EXPECT_THROW(static_cast<void>(::operator new(kSize)), OUtils::ExceptionMsg);
    EXPECT_THROW(static_cast<void>(::operator new[](kSize)), OUtils::ExceptionMsg);
    EXPECT_THROW(static_cast<void>(::operator new (kSize, std::align_val_t{64})), OUtils::ExceptionMsg);
    EXPECT_THROW(static_cast<void>(::operator new[](kSize, std::align_val_t{64})), OUtils::ExceptionMsg);
}

TEST(GlobalNew, QuietFormsGiveNull)
{
    constexpr std::size_t kSize = 987654321;
    ExhaustedHeap exhausted(kSize);
    EXPECT_EQ(::operator new(kSize, std::nothrow), nullptr);
    EXPECT_EQ(::operator new[](kSize, std::nothrow), nullptr);
    EXPECT_EQ(::operator new (kSize, std::align_val_t{64}, std::nothrow), nullptr);
    EXPECT_EQ(::operator new[](kSize, std::align_val_t{64}, std::nothrow), nullptr);
}

TEST(GlobalNew, AlignedSizeDoesNotWrapAround)
{
    ExhaustedHeap exhausted(std::size_t{1} << 62);
    volatile std::size_t nearlyAll = std::numeric_limits<std::size_t>::max() - 10;
    EXPECT_THROW(static_cast<void>(::operator new (nearlyAll, std::align_val_t{64})), OUtils::ExceptionMsg);
    EXPECT_EQ(::operator new (nearlyAll, std::align_val_t{64}, std::nothrow), nullptr);
}

} // namespace
