// A per-thread memo of colours with an entry for each ray depth, so that a result of one depth survives
// the evaluation of a deeper ray, which shades another point in between.
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

// Built and reset outside rendering. While rendering a thread touches its own row alone, and grows it
// itself when it meets a deeper ray than before.
class DepthMemo {
public:
    DepthMemo() = default;
    DepthMemo(const DepthMemo&) = delete;
    DepthMemo& operator=(const DepthMemo&) = delete;
    ~DepthMemo() { clear(); }

    // Frees what there is and makes a row for each thread. Without memory the memo stays empty.
    void build(int threadCount)
    {
        clear();
        if (threadCount <= 0) return;
        const std::size_t size = static_cast<std::size_t>(threadCount) * sizeof(Row);
        block = omalloc(size + alignof(Row));
        if (!block) return;
        void* start = block;
        std::size_t space = size + alignof(Row);
        rows = static_cast<Row*>(std::align(alignof(Row), size, start, space));
        rowCount = threadCount;
        for (int i = 0; i < threadCount; ++i) {
            new (rows + i) Row;
            grow(rows[i], kFirstDepths);
        }
    }
    void clear()
    {
        for (int i = 0; i < rowCount; ++i)
            ofree(rows[i].entries);
        ofree(block);
        block = nullptr;
        rows = nullptr;
        rowCount = 0;
    }
    // Forgets every result.
    void reset()
    {
        for (int i = 0; i < rowCount; ++i)
            for (int depth = 0; depth < rows[i].count; ++depth)
                rows[i].entries[depth].sampleStamp = 0;
    }

    // The colour that was stored for the context's point, or null. Valid until the thread stores another.
    const AColor* find(const OmbrixContext& context) const
    {
        const Row* row = rowFor(context);
        if (!row || context.rayDepth >= row->count) return nullptr;
        const Entry& entry = row->entries[context.rayDepth];
        return entry.sampleStamp == context.sampleStamp ? &entry.color : nullptr;
    }
    // Does nothing where the memo may not be used, or when there is no memory for a deeper row.
    void store(const OmbrixContext& context, const AColor& color)
    {
        Row* row = rowFor(context);
        if (!row || context.rayDepth >= kMaxDepths) return;
        if (context.rayDepth >= row->count && !grow(*row, context.rayDepth + 1)) return;
        row->entries[context.rayDepth] = {context.sampleStamp, color};
    }
    // The colour for the context's point: the one that was stored, or what make() gives, which is stored.
    template <class Make>
    AColor getOr(const OmbrixContext& context, const Make& make)
    {
        if (const AColor* known = find(context)) return *known;
        const AColor made = make();
        store(context, made);
        return made;
    }

private:
    // A stamp of 0 marks an empty entry.
    struct Entry {
        std::int32_t sampleStamp = 0;
        AColor color;
    };
    // The size keeps one thread's row off another's cache lines.
    struct alignas(128) Row {
        Entry* entries = nullptr;
        std::int32_t count = 0;
    };

    static constexpr int kFirstDepths = 16;   // made beforehand: rendering hardly ever has to grow a row
    static constexpr int kMaxDepths = 65'536; // deeper rays go without memo

    // The calling thread's row, or null when the memo may not be used.
    Row* rowFor(const OmbrixContext& context) const
    {
        if (!rows || (context.shadeFlags & noTexCache) != 0 || context.rayDepth < 0) return nullptr;
        const std::int32_t thread = context.threadRecord->threadIndex;
        if (thread < 0 || thread >= rowCount) return nullptr;
        return rows + thread;
    }
    static bool grow(Row& row, int count)
    {
        void* grown = orealloc(row.entries, static_cast<std::size_t>(count) * sizeof(Entry));
        if (!grown) return false;
        row.entries = static_cast<Entry*>(grown);
        for (int depth = row.count; depth < count; ++depth)
            new (row.entries + depth) Entry;
        row.count = count;
        return true;
    }

    Row* rows = nullptr;
    std::int32_t rowCount = 0;
    void* block = nullptr; // what rows were aligned in
};

} // namespace nezaiva
