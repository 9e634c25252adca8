#include "plugin_frame/kind_desc.h"

#include "host/memory/allocator.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace nezaiva;

int instancesAlive = 0;
bool constructorThrows = false;
// What stood in the list and the counter while the parameters were declared.
DescriptorEntry* headWhileDeclaring = nullptr;
std::uint32_t countWhileDeclaring = 0;

class Sample : public OmbrixTextureFloat {
public:
    static constexpr Identity kIdentity{
        77001122334455, "Sample", "A sample", {EXT_TEXTURE, EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        if constexpr (std::is_same_v<Table, ParameterDeclarer<Sample>>) {
            headWhileDeclaring = descriptorListHead;
            countWhileDeclaring = descriptorCount;
        }
        p("number", &Sample::number, 3);
    }

    explicit Sample(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        if (constructorThrows) throw OUtils::ExceptionMsg("refused");
        ++instancesAlive;
    }
    ~Sample() override { --instancesAlive; }

    float evalFloat(const OmbrixContext&) override { return static_cast<float>(number); }
    void evalFloatBounds(float*, float*) override {}

private:
    int number = 0;
};

using SampleDesc = KindDesc<Sample>;

// A static as every descriptor is: it stays in the list.
SampleDesc sampleDesc;

// Writes down what it is called with.
class RecordingHost final : public OmbrixPluginHost {
public:
    int addPlugin(PluginDesc* desc) override
    {
        calls.push_back(std::string("add ") + desc->getName());
        return 1;
    }
    int removePlugin(PluginDesc* desc) override
    {
        calls.push_back(std::string("remove ") + desc->getName());
        return 1;
    }
    int addParameters(PluginDesc* desc, OmbrixParameterListDesc* parameters) override
    {
        calls.push_back(std::string("parameters ") + desc->getName());
        given = parameters;
        return 1;
    }

    std::vector<std::string> calls;
    OmbrixParameterListDesc* given = nullptr;
};

std::int64_t liveBlocks()
{
    return ombrix::allocationCounters().liveBlocks;
}

TEST(KindDesc, TellsItsIdentity)
{
    EXPECT_EQ(sampleDesc.getPluginID(), 77001122334455u);
    EXPECT_STREQ(sampleDesc.getName(), "Sample");
    EXPECT_STREQ(sampleDesc.getDescription(), "A sample");
    EXPECT_EQ(sampleDesc.reservedOperation8(), 0);
    EXPECT_EQ(sampleDesc.reservedOperation10(), 0);
    EXPECT_EQ(sampleDesc.reservedOperation11(), 0);
    EXPECT_NE(sampleDesc.parameterDesc, nullptr);
}

TEST(KindDesc, LinksItselfAfterItsParametersAreDeclared)
{
    DescriptorEntry* const head = descriptorListHead;
    const std::uint32_t count = descriptorCount;
    {
        const SampleDesc another;
        EXPECT_EQ(headWhileDeclaring, head);
        EXPECT_EQ(countWhileDeclaring, count);
        EXPECT_EQ(descriptorCount, count + 1);
        ASSERT_NE(descriptorListHead, head);
        EXPECT_EQ(descriptorListHead->desc, &another);
        EXPECT_EQ(descriptorListHead->next, head);
    }
    // A descriptor does not unlink itself.
    ASSERT_NE(descriptorListHead, head);
    delete descriptorListHead;
    descriptorListHead = head;
    descriptorCount = count;
}

TEST(KindDesc, SupportsWhatItDeclares)
{
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_OMBRIX_PLUGIN), 1);
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_TEXTURE), 1); // declared, though no instance has it
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_TEXTURE_FLOAT), 1);
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_RTTEX), 0);
    EXPECT_EQ(sampleDesc.supportsInterface(0), 0);
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_TEXTURE | (InterfaceId{1} << 32)), 0);
}

TEST(KindDesc, DescriptorHasNoInterfacesOfItsOwn)
{
    EXPECT_EQ(sampleDesc.getInterface(EXT_OMBRIX_PLUGIN), nullptr);
}

TEST(KindDesc, MakesAndDeletesInstances)
{
    const std::int64_t before = liveBlocks();
    PluginBase* plugin = sampleDesc.newPlugin(nullptr);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(instancesAlive, 1);
    EXPECT_GT(liveBlocks(), before);
    auto* texture = find<TextureFloatInterface>(plugin);
    EXPECT_EQ(static_cast<Plugin*>(texture->getPlugin())->getPluginDesc(), &sampleDesc);
    sampleDesc.deletePlugin(plugin);
    EXPECT_EQ(instancesAlive, 0);
    EXPECT_EQ(liveBlocks(), before);
}

TEST(KindDesc, DeletesNullWithoutEffect)
{
    sampleDesc.deletePlugin(nullptr);
    EXPECT_EQ(instancesAlive, 0);
}

TEST(KindDesc, HasNoInstanceWithoutMemory)
{
    support::ExhaustedHeap exhausted(sizeof(Sample));
    EXPECT_EQ(sampleDesc.newPlugin(nullptr), nullptr);
}

TEST(KindDesc, FreesTheInstanceWhoseConstructorThrows)
{
    const std::int64_t before = liveBlocks();
    constructorThrows = true;
    EXPECT_THROW(sampleDesc.newPlugin(nullptr), OUtils::ExceptionMsg);
    constructorThrows = false;
    EXPECT_EQ(liveBlocks(), before);
}

TEST(KindDesc, RegistersItselfBeforeItsParameters)
{
    RecordingHost host;
    sampleDesc.registerPlugin(&host);
    EXPECT_EQ(host.calls, (std::vector<std::string>{"add Sample", "parameters Sample"}));
    EXPECT_EQ(host.given, sampleDesc.parameterDesc);
}

TEST(KindDesc, UnregistersWithoutParameterWork)
{
    RecordingHost host;
    sampleDesc.unregisterPlugin(&host);
    EXPECT_EQ(host.calls, (std::vector<std::string>{"remove Sample"}));
}

TEST(KindDesc, RegistersWithoutParameterDescription)
{
    RecordingHost host;
    OmbrixParameterListDesc* const kept = sampleDesc.parameterDesc;
    sampleDesc.parameterDesc = nullptr;
    sampleDesc.registerPlugin(&host);
    sampleDesc.parameterDesc = kept;
    EXPECT_EQ(host.calls, (std::vector<std::string>{"add Sample"}));
}

} // namespace
