// Per-thread memos: one entry for each render thread, keyed by the context's sampleStamp.
//
// One shading point asks the same texture several times; the memo answers all but the first. A thread
// touches its own entry alone. Tables are built and reset outside rendering.
#pragma once

#include <ombrix/context.h>
#include <ombrix/memory.h>
#include <ombrix/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace nezaiva {

using namespace OUtils;

// A thread's value for a stamp; a stamp of 0 marks an empty entry. The size keeps one thread's data off
// another's cache lines.
template <class MemoValue, std::size_t size>
struct alignas(size) MemoEntry {
    using Value = MemoValue;

    std::int32_t sampleStamp = 0;
    Value value;
};

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
    bool empty() const { return !entries; }
    // Forgets every value.
    void reset()
    {
        for (int i = 0; entries && i < count; ++i)
            entries[i].sampleStamp = 0;
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

    // The value for the context's point: the thread's own, or what make() gives, which is kept. Where the
    // memo may not be used it is made in own. make() evaluates all that it needs before it makes its value,
    // because an evaluation within it may use the same entry for another point.
    template <class Make>
    const typename Entry::Value& getOr(const OmbrixContext& context, std::uint32_t barredBy,
                                       typename Entry::Value& own, const Make& make) const
    {
        using Value = typename Entry::Value;
        Entry* entry = entryFor(context, barredBy);
        if (!entry) return *new (&own) Value(make());
        if (entry->sampleStamp == context.sampleStamp) return entry->value;
        new (&entry->value) Value(make()); // made in its place: no copy
        entry->sampleStamp = context.sampleStamp;
        return entry->value;
    }

private:
    void free()
    {
        ofree(block);
        block = nullptr;
        entries = nullptr;
    }

    Entry* entries = nullptr;
    std::int32_t count = 0;
    void* block = nullptr; // what entries were aligned in
};

using TexCacheEntry = MemoEntry<AColor, 128>;
static_assert(sizeof(TexCacheEntry) == 128);
using TexCacheTable = ThreadMemo<TexCacheEntry>;

// A surface's map from positions to coordinates, and whether the surface has it.
struct UVWMap {
    Transform map;
    bool valid = false;
};
using UVWCacheEntry = MemoEntry<UVWMap, 256>;
static_assert(sizeof(UVWCacheEntry) == 256);
using UVWCacheTable = ThreadMemo<UVWCacheEntry>;

} // namespace nezaiva
