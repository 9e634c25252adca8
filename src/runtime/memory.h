// How the library allocates, and what it tells when memory is short.
//
// The library's global operator new and delete, in all their forms, take and give back memory of the
// host's allocator. A form that may throw throws ExceptionMsg, not std::bad_alloc: a global allocation
// never yields null. The forms with std::nothrow give null and tell nothing.
#pragma once

#include <cstddef>

namespace nezaiva {

// What the language runtime answers about its heap.
enum class HeapStatus : int {
    Empty = -1,
    AllWell = -2,
    BadNode = -4,
    End = -5, // a walk came to its end
};

// The sum of a walk over the heap of the language runtime.
struct HeapWalk {
    HeapStatus status;         // what ended the walk
    std::size_t usedBytes;     // in entries that are in use
    std::size_t freeBytes;     // in entries that are not
    std::size_t visitedBlocks; // as far as the runtime counts them
};

// The language runtime's heap, as the failure path sees it. Neither function allocates.
struct RuntimeHeap {
    HeapWalk (*walk)();
    HeapStatus (*check)();
};

// Replaces what the failure path sees, and returns what it saw before. For tests; not guarded.
RuntimeHeap replaceRuntimeHeap(const RuntimeHeap& replacement);

// The bytes that are not in use in the language runtime's heap. Tells its steps through debugPrint. An
// estimate: other threads may change the heap meanwhile.
std::size_t getFreeHeapMemory();
// All bytes of that heap, used or not; 0 when it is empty or the walk failed.
std::size_t getHeapSize();

// size bytes of the host's allocator. When there are none, tells so and throws ExceptionMsg.
void* allocate(std::size_t size);

} // namespace nezaiva
