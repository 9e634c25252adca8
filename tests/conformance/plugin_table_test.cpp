// Every descriptor and every instance of the built library against the table.

#include "loaded_library.h"
#include "plugin_table.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using namespace conformance;
using namespace OUtils;

struct PluginTable : testing::Test {
    LoadedLibrary library;
};

bool contains(const std::vector<InterfaceId>& ids, InterfaceId id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

TEST_F(PluginTable, LibraryNamesItself)
{
    EXPECT_STREQ(library.desc().getName(), "Nezaiva");
    EXPECT_STREQ(library.desc().getDescription(), "Maya-specific shaders");
}

TEST_F(PluginTable, CountsItsPluginsForANullCallback)
{
    EXPECT_EQ(library.desc().enumPlugins(nullptr), static_cast<int>(pluginTable().size()));
}

TEST_F(PluginTable, CountsTheDescriptorThatStopsTheWalk)
{
    struct Stopper final : EnumPluginsCallback {
        int processPlugin(PluginDesc*) override { return 0; }
    } stopper;
    EXPECT_EQ(library.desc().enumPlugins(&stopper), 1);
}

TEST_F(PluginTable, HoldsEveryPluginOfTheLibrary)
{
    std::multiset<std::string> expected, found;
    for (const PluginRow& row : pluginTable())
        expected.insert(row.name);
    for (PluginDesc* desc : support::descriptorsOf(library.desc()))
        found.insert(desc->getName());
    EXPECT_EQ(found, expected);
}

TEST_F(PluginTable, IdsAreUnique)
{
    std::set<PluginId> ids;
    for (PluginDesc* desc : support::descriptorsOf(library.desc()))
        EXPECT_TRUE(ids.insert(desc->getPluginID()).second) << desc->getName();
}

TEST_F(PluginTable, DescriptorsTellTheirIdAndDescription)
{
    for (const PluginRow& row : pluginTable()) {
        PluginDesc* desc = support::findDescriptor(library.desc(), row.name);
        ASSERT_NE(desc, nullptr) << row.name;
        EXPECT_EQ(desc->getPluginID(), row.id) << row.name;
        EXPECT_STREQ(desc->getDescription(), row.description) << row.name;
        EXPECT_EQ(desc->reservedOperation8(), 0) << row.name;
        EXPECT_EQ(desc->reservedOperation10(), 0) << row.name;
        EXPECT_EQ(desc->reservedOperation11(), 0) << row.name;
    }
}

TEST_F(PluginTable, DescriptorsSupportExactlyWhatTheyDeclare)
{
    for (const PluginRow& row : pluginTable()) {
        PluginDesc* desc = support::findDescriptor(library.desc(), row.name);
        ASSERT_NE(desc, nullptr) << row.name;
        for (const InterfaceName& known : kInterfaceNames) {
            const bool declared = known.id == EXT_OMBRIX_PLUGIN || contains(row.declared, known.id);
            EXPECT_EQ(desc->supportsInterface(known.id), declared ? 1 : 0) << row.name << ", " << known.name;
        }
        EXPECT_EQ(desc->supportsInterface(0), 0) << row.name;
        EXPECT_EQ(desc->supportsInterface(0x12345678), 0) << row.name;
    }
}

TEST_F(PluginTable, InstancesAnswerExactlyTheirInterfaces)
{
    for (const PluginRow& row : pluginTable()) {
        PluginDesc* desc = support::findDescriptor(library.desc(), row.name);
        ASSERT_NE(desc, nullptr) << row.name;
        PluginBase* plugin = desc->newPlugin(nullptr);
        for (const InterfaceName& known : kInterfaceNames) {
            PluginInterface* found = plugin->getInterface(known.id);
            const bool expected = known.id == EXT_OMBRIX_PLUGIN || contains(row.onInstance, known.id);
            EXPECT_EQ(found != nullptr, expected) << row.name << ", " << known.name;
        }
        EXPECT_EQ(plugin->getInterface(0), nullptr) << row.name;
        EXPECT_EQ(plugin->getInterface(0x12345678), nullptr) << row.name;
        EXPECT_EQ(static_cast<Plugin*>(plugin)->getPluginDesc(), desc) << row.name;
        desc->deletePlugin(plugin);
    }
}

TEST_F(PluginTable, InterfacesTellTheirIdNameAndHolder)
{
    for (const PluginRow& row : pluginTable()) {
        PluginDesc* desc = support::findDescriptor(library.desc(), row.name);
        ASSERT_NE(desc, nullptr) << row.name;
        PluginBase* plugin = desc->newPlugin(nullptr);
        for (const InterfaceName& known : kInterfaceNames) {
            PluginInterface* found = plugin->getInterface(known.id);
            if (!found) continue;
            const InterfaceId reported = row.reportedAs ? row.reportedAs : known.id;
            const auto* name = std::find_if(std::begin(kInterfaceNames), std::end(kInterfaceNames),
                                            [&](const InterfaceName& entry) { return entry.id == reported; });
            EXPECT_EQ(found->getInterfaceID(), reported) << row.name << ", " << known.name;
            EXPECT_STREQ(found->getInterfaceName(), name->name) << row.name << ", " << known.name;
            EXPECT_EQ(found->getPlugin(), plugin) << row.name << ", " << known.name;
        }
        desc->deletePlugin(plugin);
    }
}

TEST_F(PluginTable, InstancesKeepTheirNames)
{
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        PluginBase* base = desc->newPlugin(nullptr);
        auto* plugin = static_cast<Plugin*>(base);
        EXPECT_EQ(plugin->getPluginName(), nullptr) << desc->getName();
        plugin->setPluginName("given");
        EXPECT_STREQ(plugin->getPluginName(), "given") << desc->getName();
        plugin->setPluginName(nullptr);
        EXPECT_EQ(plugin->getPluginName(), nullptr) << desc->getName();
        desc->deletePlugin(base);
        desc->deletePlugin(nullptr);
    }
}

std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// A node without a test of its own is not finished: its source, its test beside the others, and the test
// in the list of what is built.
TEST(NodeSources, EveryNodeHasATestOfItsOwn)
{
    const std::filesystem::path root(NEZAIVA_SOURCE_ROOT);
    for (const PluginRow& row : pluginTable()) {
        const std::filesystem::path source = root / "src" / (std::string(row.source) + ".cpp");
        const std::filesystem::path test = root / "tests" / (std::string(row.source) + "_test.cpp");
        EXPECT_TRUE(exists(source)) << row.name << ": no " << source;
        EXPECT_TRUE(exists(test)) << row.name << ": no " << test;
        EXPECT_NE(contentsOf(test).find("\"" + std::string(row.name) + "\""), std::string::npos)
            << test << " does not name " << row.name;
        EXPECT_NE(contentsOf(test.parent_path() / "CMakeLists.txt").find(test.filename().string()),
                  std::string::npos)
            << test << " is not built";
    }
}

} // namespace
