#include "runtime/memory.h"

#include "runtime/debug_print.h"

#include <ombrix/exception_msg.h>
#include <ombrix/memory.h>

#include <malloc.h>

namespace nezaiva {

namespace {

// The C library offers no walk over its blocks; its own bookkeeping gives the same sums.
HeapWalk walkRuntimeHeap()
{
    const struct mallinfo2 info = mallinfo2();
    HeapWalk walk{};
    walk.usedBytes = info.uordblks + info.hblkhd;
    walk.freeBytes = info.fordblks;
    walk.visitedBlocks = info.ordblks + info.smblks + info.hblks;
    walk.status = info.arena + info.hblkhd == 0 ? HeapStatus::Empty : HeapStatus::End;
    return walk;
}

// Free lists that hold more than the heap has are the damage that the bookkeeping shows.
HeapStatus checkRuntimeHeap()
{
    const struct mallinfo2 info = mallinfo2();
    return info.fordblks <= info.arena ? HeapStatus::AllWell : HeapStatus::BadNode;
}

constinit RuntimeHeap runtimeHeap{walkRuntimeHeap, checkRuntimeHeap};

[[noreturn]] void failAllocation(std::size_t size)
{
    debugPrint("[operator new] failed (size is %zu)\n", size);
    const std::size_t heapSize = getHeapSize();
    const std::size_t freeSize = getFreeHeapMemory();
    OUtils::ExceptionMsg message("Memory allocation failure; %zu bytes requested; %zu bytes already in heap; "
                                 "%zu bytes free heap space.",
                                 size, heapSize, freeSize);
    // Kept as is: the report of a damaged heap replaces the message, despite its leading blank.
    if (runtimeHeap.check() != HeapStatus::AllWell)
        message = OUtils::ExceptionMsg(" Heap is reported damaged.\n");
    throw message;
}

} // namespace

RuntimeHeap replaceRuntimeHeap(const RuntimeHeap& replacement)
{
    const RuntimeHeap previous = runtimeHeap;
    runtimeHeap = replacement;
    return previous;
}

std::size_t getFreeHeapMemory()
{
    debugPrint("[getFreeHeapMemory] Getting free heap memory.\n");
    const HeapWalk walk = runtimeHeap.walk();
    debugPrint("[getFreeHeapMemory] heapstatus=%i\n", static_cast<int>(walk.status));
    debugPrint("[getFreeHeapMemory] Number of blocks visited: %zu\n", walk.visitedBlocks);
    return walk.freeBytes;
}

std::size_t getHeapSize()
{
    const HeapWalk walk = runtimeHeap.walk();
    return walk.status == HeapStatus::End ? walk.usedBytes + walk.freeBytes : 0;
}

void* allocate(std::size_t size)
{
    void* block = omalloc(size);
    if (!block) failAllocation(size);
    return block;
}

} // namespace nezaiva
