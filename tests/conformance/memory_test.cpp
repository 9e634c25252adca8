// What the library leaves behind, and what it does when memory is short.

#include "kind_life.h"
#include "loaded_library.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>

#include <cstdlib>
#include <memory>

namespace {

using namespace conformance;
using namespace OUtils;

std::int64_t liveBlocks()
{
    return ombrix::allocationCounters().liveBlocks;
}

// What an instance shows that is made, connected, rendered and deleted.
std::string liveOnce(PluginDesc* desc)
{
    KindLife life(desc);
    static_cast<Plugin*>(life.base())->setPluginName("an instance");
    life.connectAll(0.5f);
    return life.render(ordinaryPoints(nullptr));
}

// Everything that a host does with a library between opening and closing it.
void useLibrary(PluginLibDesc& library)
{
    AcceptingHost host;
    const auto descriptors = support::descriptorsOf(library);
    for (PluginDesc* desc : descriptors)
        desc->registerPlugin(&host);
    for (PluginDesc* desc : descriptors)
        liveOnce(desc);
    for (PluginDesc* desc : descriptors)
        desc->unregisterPlugin(&host);
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

// How long memory is short: for one allocation, or for all that follow too.
enum class Shortage { One, AllFromThere };

// Refuses an allocation, counted from 0.
class RefusingHeap {
public:
    RefusingHeap(int refused, Shortage length) : previous(ombrix::setAllocatorHooks(hooks()))
    {
        remaining = refused;
        shortage = length;
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
        refusing.realloc = realloc;
        return refusing;
    }
    static bool refuses()
    {
        const int place = remaining--;
        const bool refused = place == 0 || (place < 0 && shortage == Shortage::AllFromThere);
        reached = reached || refused;
        return refused;
    }
    static void* alloc(std::size_t size) { return refuses() ? nullptr : std::malloc(size); }
    static void* realloc(void* block, std::size_t size)
    {
        return refuses() ? nullptr : std::realloc(block, size);
    }

    static inline int remaining = 0;
    static inline Shortage shortage = Shortage::One;
    ombrix::AllocatorHooks previous;
};

// Takes a step that may meet the shortage. False when it was left by the message of an allocation.
template <class Step>
bool survives(Step step)
{
    try {
        step();
    } catch (const ExceptionMsg& message) {
        EXPECT_EQ(std::string(message.what()).rfind("Memory allocation failure; ", 0), 0u) << message.what();
        return false;
    }
    return true;
}

// A whole life in which an allocation fails, led on as far as a host does. The same instance then renders
// as if nothing had been.
void liveShort(PluginDesc* desc, int refused, Shortage shortage, const std::string& expected)
{
    const std::vector<ShadedPoint> points = ordinaryPoints(nullptr);
    std::unique_ptr<KindLife> life;
    {
        const RefusingHeap heap(refused, shortage);
        if (!survives([&] { life = std::make_unique<KindLife>(desc); }) || !life->made()) return;
        survives([&] { static_cast<Plugin*>(life->base())->setPluginName("an instance"); });
        survives([&] { life->connectAll(0.5f); });
        if (survives([&] { life->begin(); })) {
            if (survives([&] { life->life()->frameBegin(&life->renderer); })) life->evaluations(points);
            life->life()->frameEnd(&life->renderer);
        }
        life->end();
    }
    life->connectAll(0.5f);
    EXPECT_EQ(life->render(points), expected);
}

TEST(LibraryMemory, AnyAllocationOfALifeMayFail)
{
    LoadedLibrary library;
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        const std::string expected = liveOnce(desc);
        const std::int64_t before = liveBlocks();
        for (Shortage shortage : {Shortage::One, Shortage::AllFromThere}) {
            bool reached = true;
            for (int refused = 0; reached; ++refused) {
                liveShort(desc, refused, shortage, expected);
                reached = RefusingHeap::reached;
                EXPECT_EQ(liveBlocks(), before) << desc->getName() << ", allocation " << refused;
            }
        }
        EXPECT_EQ(liveOnce(desc), expected) << desc->getName();
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
