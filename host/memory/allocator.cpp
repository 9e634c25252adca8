#include "host/memory/allocator.h"

#include <cstdlib>
#include <malloc.h>

namespace ombrix {
namespace {

// Each thread counts in the slot of its number, so that render threads do not share a cache line.
constexpr unsigned kSlots = 64;

struct alignas(64) CounterSlot {
    std::atomic<std::int64_t> allocations{0};
    std::atomic<std::int64_t> releases{0};
    std::atomic<std::int64_t> bytes{0};
};
constinit CounterSlot slots[kSlots];
constinit std::atomic<unsigned> nextSlot{0};

struct ThreadState {
    int tag = 0;
    int counted = 1;
    int slot = -1;
    MemoryRecord* record = nullptr;
};
constinit thread_local ThreadState thread;

constexpr AllocatorHooks kDefaultHooks{std::malloc, std::free, std::realloc, malloc_usable_size};
constinit AllocatorHooks heap = kDefaultHooks;

CounterSlot& ownSlot()
{
    if (thread.slot < 0)
        thread.slot = static_cast<int>(nextSlot.fetch_add(1, std::memory_order_relaxed) % kSlots);
    return slots[thread.slot];
}

std::int64_t sizeOf(void* block)
{
    return heap.size ? static_cast<std::int64_t>(heap.size(block)) : 0;
}

void add(std::atomic<std::int64_t>& counter, std::int64_t amount)
{
    counter.fetch_add(amount, std::memory_order_relaxed);
}

void countAllocation(void* block)
{
    const std::int64_t bytes = sizeOf(block);
    CounterSlot& slot = ownSlot();
    add(slot.allocations, 1);
    add(slot.bytes, bytes);
    if (!thread.record || !thread.counted) return;
    add(thread.record->allocations, 1);
    add(thread.record->bytesAllocated, bytes);
}

void countRelease(std::int64_t bytes)
{
    CounterSlot& slot = ownSlot();
    add(slot.releases, 1);
    add(slot.bytes, -bytes);
    if (!thread.record || !thread.counted) return;
    add(thread.record->releases, 1);
    add(thread.record->bytesReleased, bytes);
}

} // namespace

AllocationCounters allocationCounters()
{
    AllocationCounters sum;
    for (const CounterSlot& slot : slots) {
        const std::int64_t allocations = slot.allocations.load(std::memory_order_relaxed);
        sum.totalAllocations += allocations;
        sum.liveBlocks += allocations - slot.releases.load(std::memory_order_relaxed);
        sum.liveBytes += slot.bytes.load(std::memory_order_relaxed);
    }
    return sum;
}

const AllocatorHooks& defaultAllocatorHooks()
{
    return kDefaultHooks;
}

AllocatorHooks setAllocatorHooks(const AllocatorHooks& hooks)
{
    const AllocatorHooks before = heap;
    heap = hooks;
    return before;
}

} // namespace ombrix

extern "C" {

using namespace ombrix;

void* omalloc(std::size_t size)
{
    void* block = heap.alloc(size ? size : 1);
    if (block) countAllocation(block);
    return block;
}

void ofree(void* block)
{
    if (!block) return;
    countRelease(sizeOf(block));
    heap.free(block);
}

void* orealloc(void* block, std::size_t size)
{
    if (!block) return omalloc(size);
    const std::int64_t bytesBefore = sizeOf(block);
    void* resized = heap.realloc(block, size ? size : 1);
    if (!resized) return nullptr;
    countRelease(bytesBefore);
    countAllocation(resized);
    return resized;
}

int oallocGetTag()
{
    return thread.tag;
}

void oallocSetTag(int tag)
{
    thread.tag = tag;
}

void oallocInitializeForCurrentThread()
{
    ownSlot();
}

void oallocTerminateForCurrentThread()
{
    thread.tag = 0;
    thread.counted = 1;
    thread.record = nullptr;
}

void* oallocGetMemoryDataForCurrentThread()
{
    return thread.record;
}

void oallocSetMemoryDataForCurrentThread(void* record)
{
    thread.record = static_cast<MemoryRecord*>(record);
}

int oallocGetDefaultAllocationsEnable()
{
    return thread.counted;
}

void oallocSetDefaultAllocations(int enable)
{
    thread.counted = enable ? 1 : 0;
}

} // extern "C"
