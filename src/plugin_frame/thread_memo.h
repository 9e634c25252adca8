// Per-thread memos: one entry for each render thread, keyed by the context's sampleStamp.
//
// One shading point asks the same texture several times; the memo answers all but the first. A thread
// touches its own entry alone. Tables are built and reset outside rendering.
#pragma once

#include <ombrix/context.h>
#include <ombrix/memory.h>
#include <ombrix/types.h>

#include <cstdint>
#include <memory>
#include <new>

namespace nezaiva {

using namespace OUtils;

// A stamp of 0 marks an empty entry. The entry's size keeps one thread's data off another's cache lines.
struct alignas(128) TexCacheEntry {
    std::int32_t sampleStamp = 0;
    AColor color;
    std::uint32_t word = 0; // only ever reset
};
static_assert(sizeof(TexCacheEntry) == 128);

struct alignas(256) UVWCacheEntry {
    std::int32_t sampleStamp = 0;
    Vector4 columns[4]; // the surface's transform; the last column is its offset
    bool valid = false;
    std::uint32_t word = 0;
};
static_assert(sizeof(UVWCacheEntry) == 256);

template <class Entry>
class ThreadMemo {
public:
    ThreadMemo() = default;
    ThreadMemo(const ThreadMemo&) = delete;
    ThreadMemo& operator=(const ThreadMemo&) = delete;
    ~ThreadMemo() { free(); }

    // Frees the old entries and makes new ones. Without memory there are no entries and the memo is not
    // usable; the count stays.
    void build(int threadCount)
    {
        free();
        reserved = 0;
        count = threadCount;
        if (threadCount <= 0) return;
        const std::size_t size = static_cast<std::size_t>(threadCount) * sizeof(Entry);
        block = omalloc(size + alignof(Entry));
        if (!block) return;
        void* start = block;
        std::size_t space = size + alignof(Entry);
        entries = static_cast<Entry*>(std::align(alignof(Entry), size, start, space));
        for (int i = 0; i < threadCount; ++i)
            new (entries + i) Entry;
    }
    void clear()
    {
        free();
        count = 0;
    }
    bool empty() const { return reserved == 0 && !entries; }
    void reset()
    {
        for (int i = 0; entries && i < count; ++i) {
            entries[i].sampleStamp = 0;
            entries[i].word = 0;
        }
    }

    // The calling thread's entry, or null when the memo may not be used: there are no entries, the
    // context bars memos by this bit of ShadeFlags, or its thread lies outside the table.
    Entry* entryFor(const OmbrixContext& context, std::uint32_t barredBy) const
    {
        if (!entries || (context.shadeFlags & barredBy) != 0) return nullptr;
        const std::int32_t thread = context.threadRecord->threadIndex;
        if (thread < 0 || thread >= count) return nullptr;
        return entries + thread;
    }

private:
    void free()
    {
        ofree(block);
        block = nullptr;
        entries = nullptr;
    }

    std::int64_t reserved = 0; // tested for zero, never set to anything else
    Entry* entries = nullptr;
    std::int32_t count = 0;
    void* block = nullptr; // what entries were aligned in
};

using TexCacheTable = ThreadMemo<TexCacheEntry>;
using UVWCacheTable = ThreadMemo<UVWCacheEntry>;

} // namespace nezaiva
