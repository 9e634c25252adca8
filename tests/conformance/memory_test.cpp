// What the library leaves behind, and what it does when memory is short.

#include "loaded_library.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>

#include <cstdlib>

namespace {

using namespace conformance;
using namespace OUtils;

std::int64_t liveBlocks()
{
    return ombrix::allocationCounters().liveBlocks;
}

TEST(LibraryMemory, NothingIsLeftBehindByLoadingAndUnloading)
{
    ASSERT_FALSE(isMapped());
    const std::int64_t before = liveBlocks();
    for (int life = 0; life < 3; ++life) {
        {
            LoadedLibrary library;
            EXPECT_TRUE(isMapped());
            EXPECT_GT(liveBlocks(), before);
            useLibrary(library.desc());
        }
        EXPECT_FALSE(isMapped()) << "life " << life;
        EXPECT_EQ(liveBlocks(), before) << "life " << life;
    }
}

TEST(LibraryMemory, InstancesGiveEverythingBack)
{
    LoadedLibrary library;
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        liveOnce(desc);
        const std::int64_t before = liveBlocks();
        liveOnce(desc);
        EXPECT_EQ(liveBlocks(), before) << desc->getName();
    }
}

TEST(LibraryMemory, WorksOnAHeapThatIsNotMalloc)
{
    ASSERT_FALSE(isMapped());
    support::ArenaHeap arena;
    {
        LoadedLibrary library;
        EXPECT_GT(support::ArenaHeap::live, 0);
        useLibrary(library.desc());
    }
    EXPECT_FALSE(isMapped());
    EXPECT_EQ(support::ArenaHeap::foreign, 0);
    EXPECT_EQ(support::ArenaHeap::live, 0);
}

// Refuses one allocation, counted from 0.
class RefusingHeap {
public:
    explicit RefusingHeap(int refused) : previous(ombrix::setAllocatorHooks(hooks()))
    {
        remaining = refused;
        reached = false;
    }
    RefusingHeap(const RefusingHeap&) = delete;
    RefusingHeap& operator=(const RefusingHeap&) = delete;
    ~RefusingHeap() { ombrix::setAllocatorHooks(previous); }

    static inline bool reached = false;

private:
    static ombrix::AllocatorHooks hooks()
    {
        ombrix::AllocatorHooks refusing = ombrix::defaultAllocatorHooks();
        refusing.alloc = alloc;
        return refusing;
    }
    static void* alloc(std::size_t size)
    {
        if (remaining-- != 0) return std::malloc(size);
        reached = true;
        return nullptr;
    }

    static inline int remaining = 0;
    ombrix::AllocatorHooks previous;
};

// Makes, names and deletes an instance; whatever it meets on the way, the host can go on.
void makeAndDelete(PluginDesc* desc)
{
    PluginBase* plugin = nullptr;
    try {
        plugin = desc->newPlugin(nullptr);
        if (plugin) static_cast<Plugin*>(plugin)->setPluginName("named");
    } catch (const ExceptionMsg& message) {
        EXPECT_EQ(std::string(message.what()).rfind("Memory allocation failure; ", 0), 0u) << message.what();
    }
    desc->deletePlugin(plugin);
}

TEST(LibraryMemory, AnyAllocationOfANewInstanceMayFail)
{
    LoadedLibrary library;
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        makeAndDelete(desc);
        const std::int64_t before = liveBlocks();
        bool reached = true;
        for (int refused = 0; reached; ++refused) {
            {
                RefusingHeap heap(refused);
                makeAndDelete(desc);
                reached = RefusingHeap::reached;
            }
            EXPECT_EQ(liveBlocks(), before) << desc->getName() << ", allocation " << refused;
        }
    }
}

TEST(LibraryMemory, NewPluginIsNullWithoutMemory)
{
    LoadedLibrary library;
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        const support::ExhaustedHeap exhausted(0);
        EXPECT_EQ(desc->newPlugin(nullptr), nullptr) << desc->getName();
    }
}

TEST(LibraryMemory, HostCatchesTheMessageByItsType)
{
    constexpr std::size_t kNameLength = 1 << 20;
    LoadedLibrary library;
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        PluginBase* base = desc->newPlugin(nullptr);
        auto* plugin = static_cast<Plugin*>(base);
        const std::string name(kNameLength, 'n');
        std::string caught;
        {
            const support::ExhaustedHeap exhausted(kNameLength);
            try {
                plugin->setPluginName(name.c_str());
            } catch (const ExceptionMsg& message) {
                caught = message.what();
            }
        }
        EXPECT_EQ(caught.rfind("Memory allocation failure; 1048577 bytes requested; ", 0), 0u) << caught;
        EXPECT_EQ(plugin->getPluginName(), nullptr);
        desc->deletePlugin(base);
    }
}

} // namespace
