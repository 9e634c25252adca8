// The host's allocator. A plug-in library takes all its heap memory from here.
//
// All functions are thread-safe. A block may be freed on another thread than the one that allocated it.
#pragma once

#include <ombrix/api.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <vector>

extern "C" {

// size bytes aligned for any fundamental type, or null when there is no memory. A size of 0 gives a
// block that can be freed.
OMBRIX_API void* omalloc(std::size_t size);
// Frees a block of omalloc or orealloc; null does nothing.
OMBRIX_API void ofree(void* block);
// Resizes a block and keeps its contents up to the smaller size. Null on failure: the old block stays.
// A null block allocates.
OMBRIX_API void* orealloc(void* block, std::size_t size);

// The calling thread's allocation tag, which a worker thread copies from its creator.
OMBRIX_API int oallocGetTag();
OMBRIX_API void oallocSetTag(int tag);
// Prepares and ends the calling thread's use of the allocator. Threads that do neither may allocate too.
OMBRIX_API void oallocInitializeForCurrentThread();
OMBRIX_API void oallocTerminateForCurrentThread();
// The record that the calling thread's allocations are counted in, null when none is bound.
OMBRIX_API void* oallocGetMemoryDataForCurrentThread();
OMBRIX_API void oallocSetMemoryDataForCurrentThread(void* record);
// Whether the calling thread's allocations are counted in its record; 1 on a new thread.
OMBRIX_API int oallocGetDefaultAllocationsEnable();
OMBRIX_API void oallocSetDefaultAllocations(int enable);

// Hands a line of diagnostics, UTF-16 and zero-terminated, to the debugger channel. Takes no lock and
// allocates nothing.
OMBRIX_API void oDebugOutput(const char16_t* text);

} // extern "C"

namespace OUtils {

// Standard containers of a plug-in library allocate through this one. std::string and std::vector with
// the default allocator are partly compiled into the language's own runtime library, whose heap need
// not be the host's.
template <class T>
struct HostAllocator {
    using value_type = T;

    HostAllocator() = default;
    template <class U>
    HostAllocator(const HostAllocator<U>& /*other*/) noexcept
    {
    }

    // Throws what the library's global operator new throws.
    T* allocate(std::size_t count)
    {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T))
            return static_cast<T*>(::operator new(std::numeric_limits<std::size_t>::max() / 2));
        return static_cast<T*>(::operator new(count * sizeof(T)));
    }
    void deallocate(T* block, std::size_t /*count*/) noexcept { ::operator delete(block); }

    template <class U>
    bool operator==(const HostAllocator<U>& /*other*/) const noexcept
    {
        return true;
    }
};

template <class T>
using HostVector = std::vector<T, HostAllocator<T>>;
using HostString = std::basic_string<char, std::char_traits<char>, HostAllocator<char>>;

} // namespace OUtils
