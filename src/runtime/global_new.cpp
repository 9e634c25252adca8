// The library's global allocation functions. They are local to the library: those of the host and of the
// language's own runtime library stay as they are.
//
// The host's allocator aligns for fundamental types. A larger alignment takes a larger block and keeps
// the block's address in front of what it hands out.

#include "runtime/memory.h"

#include <ombrix/memory.h>

#include <cstdint>
#include <limits>
#include <new>

namespace {

using nezaiva::allocate;

// Room for the block's address and for moving up to the alignment; more than any allocator has when the
// sum does not fit.
std::size_t paddedSize(std::size_t size, std::size_t alignment)
{
    const std::size_t padding = alignment + sizeof(void*);
    const std::size_t largest = std::numeric_limits<std::size_t>::max();
    return size <= largest - padding ? size + padding : largest;
}

void* alignWithin(void* block, std::size_t alignment)
{
    const auto start = reinterpret_cast<std::uintptr_t>(block) + sizeof(void*);
    void** aligned = reinterpret_cast<void**>((start + alignment - 1) & ~(alignment - 1));
    aligned[-1] = block;
    return aligned;
}

void* allocateAligned(std::size_t size, std::align_val_t alignment)
{
    const auto bytes = static_cast<std::size_t>(alignment);
    return alignWithin(allocate(paddedSize(size, bytes)), bytes);
}

void* allocateAlignedOrNull(std::size_t size, std::align_val_t alignment) noexcept
{
    const auto bytes = static_cast<std::size_t>(alignment);
    void* block = omalloc(paddedSize(size, bytes));
    return block ? alignWithin(block, bytes) : nullptr;
}

void freeAligned(void* aligned) noexcept
{
    if (aligned) ofree(static_cast<void**>(aligned)[-1]);
}

} // namespace

// clang-format off
void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return omalloc(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return omalloc(size); }

void operator delete(void* block) noexcept { ofree(block); }
void operator delete[](void* block) noexcept { ofree(block); }
void operator delete(void* block, std::size_t) noexcept { ofree(block); }
void operator delete[](void* block, std::size_t) noexcept { ofree(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { ofree(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { ofree(block); }

void* operator new(std::size_t size, std::align_val_t alignment) { return allocateAligned(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return allocateAligned(size, alignment); }
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept { return allocateAlignedOrNull(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept { return allocateAlignedOrNull(size, alignment); }

void operator delete(void* block, std::align_val_t) noexcept { freeAligned(block); }
void operator delete[](void* block, std::align_val_t) noexcept { freeAligned(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { freeAligned(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { freeAligned(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept { freeAligned(block); }
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept { freeAligned(block); }
// clang-format on
