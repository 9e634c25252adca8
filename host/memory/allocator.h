// What stands behind omalloc: counters of all allocations, and the heap itself, which can be replaced.
#pragma once

#include <ombrix/memory.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ombrix {

// Sums over all threads. While other threads allocate they are a snapshot that need not be consistent.
struct AllocationCounters {
    std::int64_t liveBlocks = 0;
    std::int64_t liveBytes = 0; // as large as the blocks are, which can be more than was asked for
    std::int64_t totalAllocations = 0;
};
AllocationCounters allocationCounters();

// What a record counts that oallocSetMemoryDataForCurrentThread binds to threads: the allocations and
// releases of those threads while their switch is on. A record must outlive its binding.
struct MemoryRecord {
    std::atomic<std::int64_t> allocations{0};
    std::atomic<std::int64_t> releases{0};
    std::atomic<std::int64_t> bytesAllocated{0};
    std::atomic<std::int64_t> bytesReleased{0};
};

// The heap. The operations keep the promises of omalloc, ofree (never called with null) and orealloc
// (never called with null). size tells how large a block is; null when the heap cannot tell: its blocks
// then count as 0 bytes.
struct AllocatorHooks {
    void* (*alloc)(std::size_t size) = nullptr;
    void (*free)(void* block) = nullptr;
    void* (*realloc)(void* block, std::size_t size) = nullptr;
    std::size_t (*size)(void* block) = nullptr;
};
// The heap of the C library, which is in use at the start.
const AllocatorHooks& defaultAllocatorHooks();
// Replaces the heap and returns the one before. Blocks of the old heap that still live are given to the
// new one's operations, so a replacement must know its own blocks and hand others on. Not thread-safe.
AllocatorHooks setAllocatorHooks(const AllocatorHooks& hooks);

// Receives what plugins say on the debugger channel, whatever the verbosity, in place of standard error.
using DebugOutputHook = void (*)(const char16_t* text, void* user);
// A null hook gives the channel back to standard error, where it shows with Verbosity::Verbose alone. Not
// thread-safe.
void setDebugOutputHook(DebugOutputHook hook, void* user);

// Says a line of UTF-8 on the debugger channel. A text of over 1023 bytes is cut.
void debugOutput(std::string_view text);

} // namespace ombrix
