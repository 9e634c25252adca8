#include "plugin_frame/lib_desc.h"

#include "host/memory/allocator.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace nezaiva;

// Stops after a number of descriptors.
struct Walker final : EnumPluginsCallback {
    explicit Walker(int callsBeforeStop = -1) : remaining(callsBeforeStop) {}
    int processPlugin(PluginDesc* desc) override
    {
        seen.push_back(desc);
        return --remaining != 0;
    }
    int remaining;
    std::vector<PluginDesc*> seen;
};

class NamedDesc final : public PluginDesc {
public:
    PluginId getPluginID() override { return 1; }
    PluginBase* newPlugin(OmbrixPluginHost*) override { return nullptr; }
    void deletePlugin(PluginBase*) override {}
    int supportsInterface(InterfaceId) override { return 0; }
    const char* getName() override { return "NamedDesc"; }
    const char* getDescription() override { return ""; }
};

// The test's own list in place of the library's.
struct OwnListTest : testing::Test {
    OwnListTest() : libraryHead(descriptorListHead), libraryCount(descriptorCount)
    {
        descriptorListHead = nullptr;
        descriptorCount = 0;
    }
    ~OwnListTest() override
    {
        while (DescriptorEntry* entry = descriptorListHead) {
            descriptorListHead = entry->next;
            delete entry;
        }
        descriptorListHead = libraryHead;
        descriptorCount = libraryCount;
    }

    DescriptorEntry* libraryHead;
    std::uint32_t libraryCount;
    NamedDesc first, second, third;
    LibDesc library;
};

TEST(LibDesc, NamesTheLibrary)
{
    EXPECT_STREQ(getLibDesc()->getName(), "Nezaiva");
    EXPECT_STREQ(getLibDesc()->getDescription(), "Maya-specific shaders");
    EXPECT_EQ(getLibDesc(), getLibDesc());
}

TEST(LibDesc, CountsWhatItHandsOut)
{
    Walker all;
    EXPECT_EQ(getLibDesc()->enumPlugins(&all), getLibDesc()->enumPlugins(nullptr));
    EXPECT_EQ(static_cast<int>(all.seen.size()), getLibDesc()->enumPlugins(nullptr));
}

TEST_F(OwnListTest, EmptyListYieldsZero)
{
    Walker walker;
    EXPECT_EQ(library.enumPlugins(&walker), 0);
    EXPECT_EQ(library.enumPlugins(nullptr), 0);
}

TEST_F(OwnListTest, HandsOutTheLatestFirst)
{
    for (PluginDesc* desc : {&first, &second, &third})
        linkDescriptor(desc);
    Walker walker;
    EXPECT_EQ(library.enumPlugins(&walker), 3);
    EXPECT_EQ(walker.seen, (std::vector<PluginDesc*>{&third, &second, &first}));
    EXPECT_EQ(library.enumPlugins(nullptr), 3);
}

TEST_F(OwnListTest, CountsTheDescriptorThatStopsTheWalk)
{
    for (PluginDesc* desc : {&first, &second, &third})
        linkDescriptor(desc);
    Walker stopsAtOnce(1);
    EXPECT_EQ(library.enumPlugins(&stopsAtOnce), 1);
    Walker stopsAtSecond(2);
    EXPECT_EQ(library.enumPlugins(&stopsAtSecond), 2);
    EXPECT_EQ(stopsAtSecond.seen.size(), 2u);
}

TEST_F(OwnListTest, NullCallbackYieldsTheCounterNotTheLength)
{
    linkDescriptor(&first);
    descriptorCount = 9;
    EXPECT_EQ(library.enumPlugins(nullptr), 9);
}

TEST_F(OwnListTest, DestructorFreesTheEntriesAndKeepsTheCounter)
{
    const std::int64_t before = ombrix::allocationCounters().liveBlocks;
    {
        LibDesc ending;
        for (PluginDesc* desc : {&first, &second, &third})
            linkDescriptor(desc);
        EXPECT_EQ(ombrix::allocationCounters().liveBlocks, before + 3);
    }
    EXPECT_EQ(ombrix::allocationCounters().liveBlocks, before);
    EXPECT_EQ(descriptorListHead, nullptr);
    EXPECT_EQ(descriptorCount, 3u);
    EXPECT_STREQ(first.getName(), "NamedDesc"); // the descriptors live on
}

} // namespace
