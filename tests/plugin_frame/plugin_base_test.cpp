// The roots of all plugins: the list of added interfaces, names, and what an instance answers by itself.

#include "host/memory/allocator.h"

#include <ombrix/plugin.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace OUtils;

constexpr InterfaceId kFirstId = 0x1001;
constexpr InterfaceId kSecondId = 0x1002;

// Writes down which interfaces are let go.
class Holder : public PluginBase {
public:
    explicit Holder(std::vector<PluginInterface*>* log) : released(log) {}
    void releaseInterface(PluginInterface* letGo) override { released->push_back(letGo); }

private:
    std::vector<PluginInterface*>* released;
};

class Added : public PluginInterface {
public:
    Added(InterfaceId interfaceId, PluginBase* plugin) : id(interfaceId), holder(plugin) {}
    InterfaceId getInterfaceID() override { return id; }
    PluginBase* getPlugin() override { return holder; }

private:
    InterfaceId id;
    PluginBase* holder;
};

class FloatTexture : public OmbrixTextureFloat {
public:
    FloatTexture() : OmbrixTextureFloat(nullptr) {}
    float evalFloat(const OmbrixContext&) override { return 0.0f; }
    void evalFloatBounds(float*, float*) override {}
};

class Material : public OmbrixMaterial {
public:
    Material() : OmbrixMaterial(nullptr) {}
    void shade(ShadeRequest&, const OmbrixContext&) override {}
    BSDFSampler* getBSDF(const OmbrixContext&) override { return nullptr; }
    void releaseBSDF(BSDFSampler*, const OmbrixContext&) override {}
};

TEST(PluginBase, FindsNothingWhileNothingIsAdded)
{
    PluginBase plugin;
    EXPECT_EQ(plugin.getInterface(kFirstId), nullptr);
    EXPECT_EQ(plugin.getInterface(0), nullptr);
}

TEST(PluginBase, FindsTheLatestAddedFirst)
{
    PluginBase plugin;
    Added older(kFirstId, nullptr), newer(kFirstId, nullptr), other(kSecondId, nullptr);
    EXPECT_EQ(plugin.addInterface(&older, 0), 1);
    EXPECT_EQ(plugin.getInterface(kFirstId), &older);
    plugin.addInterface(&newer, 0);
    plugin.addInterface(&other, 0);
    EXPECT_EQ(plugin.getInterface(kFirstId), &newer);
    EXPECT_EQ(plugin.getInterface(kSecondId), &other);
    EXPECT_EQ(plugin.getInterface(0x1003), nullptr);
}

TEST(PluginBase, SkipsEntriesWithoutInterface)
{
    PluginBase plugin;
    Added interface(kFirstId, nullptr);
    plugin.addInterface(&interface, 0);
    plugin.addInterface(nullptr, 1);
    EXPECT_EQ(plugin.getInterface(kFirstId), &interface);
}

TEST(PluginBase, RemovesByPointerWithoutReleasing)
{
    std::vector<PluginInterface*> released;
    Holder holder(&released);
    Added first(kFirstId, &holder), second(kSecondId, &holder), third(kFirstId, &holder);
    for (Added* added : {&first, &second, &third})
        holder.addInterface(added, 1);
    EXPECT_EQ(holder.removeInterface(&second), 1);
    EXPECT_EQ(holder.getInterface(kSecondId), nullptr);
    EXPECT_EQ(holder.removeInterface(&second), 0);
    EXPECT_EQ(holder.removeInterface(&third), 1);
    EXPECT_EQ(holder.getInterface(kFirstId), &first);
    EXPECT_EQ(holder.removeInterface(&first), 1);
    EXPECT_EQ(holder.getInterface(kFirstId), nullptr);
    EXPECT_TRUE(released.empty());
}

TEST(PluginBase, ReleasesOwnedInterfacesAtItsEndFirstAddedFirst)
{
    std::vector<PluginInterface*> released;
    Holder holder(&released);
    Added first(kFirstId, &holder), second(kFirstId, &holder), third(kFirstId, &holder),
        fourth(kFirstId, &holder);
    const std::int64_t before = ombrix::allocationCounters().liveBlocks;
    {
        PluginBase plugin;
        plugin.addInterface(&first, 1);
        plugin.addInterface(&second, 0);
        plugin.addInterface(nullptr, 1);
        plugin.addInterface(&third, 2); // owned by the letter of the flag: only 1 counts
        plugin.addInterface(&fourth, 1);
    }
    EXPECT_EQ(released, (std::vector<PluginInterface*>{&first, &fourth}));
    released.clear();
    released.shrink_to_fit();
    EXPECT_EQ(ombrix::allocationCounters().liveBlocks, before);
}

TEST(PluginBase, EndsALongListWithoutDeepRecursion)
{
    std::vector<PluginInterface*> released;
    Holder holder(&released);
    Added added(kFirstId, &holder);
    constexpr int kMany = 1000000;
    {
        PluginBase plugin;
        for (int i = 0; i < kMany; ++i)
            plugin.addInterface(&added, 1);
    }
    EXPECT_EQ(released.size(), static_cast<std::size_t>(kMany));
}

TEST(PluginInterface, HasNoNameByItself)
{
    Added added(kFirstId, nullptr);
    EXPECT_EQ(added.getInterfaceName(), nullptr);
    added.releaseInterface(); // no holder: nothing happens
}

TEST(PluginInterface, TellsItsHolderThatItIsLetGo)
{
    std::vector<PluginInterface*> released;
    Holder holder(&released);
    Added added(kFirstId, &holder);
    added.releaseInterface();
    EXPECT_EQ(released, (std::vector<PluginInterface*>{&added}));
}

TEST(Plugin, KeepsACopyOfItsName)
{
    FloatTexture plugin;
    EXPECT_EQ(plugin.getPluginName(), nullptr);
    char name[] = "first";
    plugin.setPluginName(name);
    name[0] = 'x';
    EXPECT_STREQ(plugin.getPluginName(), "first");
    plugin.setPluginName("another one");
    EXPECT_STREQ(plugin.getPluginName(), "another one");
    plugin.setPluginName("");
    EXPECT_STREQ(plugin.getPluginName(), "");
    plugin.setPluginName(nullptr);
    EXPECT_EQ(plugin.getPluginName(), nullptr);
}

TEST(Plugin, InstanceWithoutDescriptorHasNoParameters)
{
    FloatTexture plugin;
    EXPECT_EQ(plugin.getPluginDesc(), nullptr);
    EXPECT_EQ(plugin.paramList, nullptr);
    EXPECT_EQ(plugin.setParameter(nullptr), 0);
    EXPECT_EQ(plugin.getParameter("anything"), nullptr);
}

TEST(Plugin, AnswersItsOwnInterfacesThenTheAddedOnes)
{
    FloatTexture plugin;
    Added added(kFirstId, &plugin), shadowed(EXT_TEXTURE_FLOAT, &plugin);
    plugin.addInterface(&added, 0);
    plugin.addInterface(&shadowed, 0);
    EXPECT_EQ(plugin.getInterface(EXT_TEXTURE_FLOAT), static_cast<TextureFloatInterface*>(&plugin));
    EXPECT_EQ(plugin.getInterface(EXT_OMBRIX_PLUGIN), static_cast<OmbrixPluginInterface*>(&plugin));
    EXPECT_EQ(plugin.getInterface(kFirstId), &added);
    EXPECT_EQ(plugin.getInterface(EXT_TEXTURE), nullptr);
}

TEST(Plugin, MaterialAnswersBothOfItsInterfaces)
{
    Material plugin;
    EXPECT_EQ(plugin.getInterface(EXT_MATERIAL), static_cast<MaterialInterface*>(&plugin));
    EXPECT_EQ(plugin.getInterface(EXT_BSDF), static_cast<BSDFInterface*>(&plugin));
    EXPECT_EQ(plugin.getInterface(EXT_MATERIAL)->getPlugin(), &plugin);
    EXPECT_STREQ(plugin.getInterface(EXT_MATERIAL)->getInterfaceName(), "EXT_MATERIAL");
    EXPECT_STREQ(plugin.getInterface(EXT_BSDF)->getInterfaceName(), "EXT_BSDF");
    EXPECT_STREQ(plugin.getInterface(EXT_OMBRIX_PLUGIN)->getInterfaceName(), "EXT_OMBRIX_PLUGIN");
}

} // namespace
