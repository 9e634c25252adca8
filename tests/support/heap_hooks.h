// Heaps behind omalloc for tests: one that runs out of memory, and one that is not malloc and notices
// blocks that are not its own.
#pragma once

#include "host/memory/allocator.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace support {

// While it lives, allocations of at least smallestRefused bytes fail; 0 refuses all.
class ExhaustedHeap {
public:
    explicit ExhaustedHeap(std::size_t smallestRefused) : previous(ombrix::setAllocatorHooks(hooks()))
    {
        limit = smallestRefused;
        refusals = 0;
    }
    ExhaustedHeap(const ExhaustedHeap&) = delete;
    ExhaustedHeap& operator=(const ExhaustedHeap&) = delete;
    ~ExhaustedHeap() { ombrix::setAllocatorHooks(previous); }

    static inline int refusals = 0;

private:
    static ombrix::AllocatorHooks hooks()
    {
        ombrix::AllocatorHooks refusing = ombrix::defaultAllocatorHooks();
        refusing.alloc = refusingAlloc;
        refusing.realloc = refusingRealloc;
        return refusing;
    }
    static bool refuses(std::size_t size)
    {
        if (size < limit) return false;
        ++refusals;
        return true;
    }
    static void* refusingAlloc(std::size_t size) { return refuses(size) ? nullptr : std::malloc(size); }
    static void* refusingRealloc(void* block, std::size_t size)
    {
        return refuses(size) ? nullptr : std::realloc(block, size);
    }

    static inline std::size_t limit = 0;
    ombrix::AllocatorHooks previous;
};

// An arena that hands out its bytes once. A freed block must lie in it and must not have been freed
// before; anything else counts as foreign and is left alone. Not thread-safe.
class ArenaHeap {
public:
    ArenaHeap() : previous(ombrix::setAllocatorHooks({alloc, release, resize, sizeOf}))
    {
        used = 0;
        live = 0;
        foreign = 0;
    }
    ArenaHeap(const ArenaHeap&) = delete;
    ArenaHeap& operator=(const ArenaHeap&) = delete;
    ~ArenaHeap() { ombrix::setAllocatorHooks(previous); }

    static inline std::size_t used = 0;
    static inline int live = 0;    // blocks that were not freed yet
    static inline int foreign = 0; // blocks freed or resized that the arena never gave out

private:
    static constexpr std::size_t kSize = std::size_t{64} << 20;
    static constexpr std::uint64_t kLive = 0x4C495645;
    struct alignas(16) Header {
        std::uint64_t mark;
        std::size_t size;
    };

    static Header* headerOf(void* block)
    {
        auto* bytes = static_cast<unsigned char*>(block);
        if (bytes < arena + sizeof(Header) || bytes >= arena + kSize) return nullptr;
        auto* header = reinterpret_cast<Header*>(bytes) - 1;
        return header->mark == kLive ? header : nullptr;
    }
    static void* alloc(std::size_t size)
    {
        const std::size_t needed = sizeof(Header) + ((size + 15) & ~std::size_t{15});
        if (needed < size || needed > kSize - used) return nullptr;
        auto* header = reinterpret_cast<Header*>(arena + used);
        used += needed;
        ++live;
        *header = {kLive, size};
        return header + 1;
    }
    static void release(void* block)
    {
        Header* header = headerOf(block);
        if (!header) {
            ++foreign;
            return;
        }
        header->mark = 0;
        std::memset(block, 0xDD, header->size);
        --live;
    }
    static void* resize(void* block, std::size_t size)
    {
        Header* header = headerOf(block);
        void* moved = header ? alloc(size) : nullptr;
        if (!header) ++foreign;
        if (!moved) return nullptr;
        std::memcpy(moved, block, header->size < size ? header->size : size);
        release(block);
        return moved;
    }
    static std::size_t sizeOf(void* block)
    {
        const Header* header = headerOf(block);
        return header ? header->size : 0;
    }

    alignas(64) static inline unsigned char arena[kSize];
    ombrix::AllocatorHooks previous;
};

} // namespace support
