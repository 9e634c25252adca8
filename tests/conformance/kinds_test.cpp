// Every descriptor, every instance and every declaration of the built library against the expected files,
// and what belongs to a node beside its source.

#include "expected_kinds.h"
#include "loaded_library.h"

#include "host/params/host_parameters.h"
#include "support/host_doubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace {

using namespace conformance;
using namespace OUtils;

constexpr InterfaceId kUnknownId = 0x12345678;

// How a failure names an expected file.
std::string pathOf(const std::filesystem::path& file)
{
    return "tests/" + file.string();
}

bool contains(const std::vector<InterfaceId>& ids, InterfaceId id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

const char* interfaceName(InterfaceId id)
{
    for (const InterfaceName& known : kInterfaceNames)
        if (known.id == id) return known.name;
    return nullptr;
}

// Keeps the declarations that a registration hands over.
struct DeclarationHost final : AcceptingHost {
    int addParameters(PluginDesc* desc, OmbrixParameterListDesc* parameters) override
    {
        received[desc->getName()] = parameters;
        return 1;
    }
    std::map<std::string, OmbrixParameterListDesc*> received;
};

struct Kinds : testing::Test {
    // Calls check(expected, descriptor) for every kind that is both expected and there.
    template <class Check>
    void forEach(Check check)
    {
        int checked = 0;
        for (const ExpectedKind& expected : expectedKinds()) {
            PluginDesc* desc = support::findDescriptor(library.desc(), expected.name.c_str());
            if (!desc) continue;
            SCOPED_TRACE(expected.name + ", " + pathOf(expected.file));
            check(expected, desc);
            ++checked;
        }
        EXPECT_GT(checked, 0);
    }
    // The same with an instance of the kind.
    template <class Check>
    void forEachInstance(Check check)
    {
        forEach([&](const ExpectedKind& expected, PluginDesc* desc) {
            PluginBase* plugin = desc->newPlugin(nullptr);
            ASSERT_NE(plugin, nullptr);
            check(expected, desc, plugin);
            desc->deletePlugin(plugin);
        });
    }

    LoadedLibrary library;
};

TEST_F(Kinds, LibraryNamesItself)
{
    EXPECT_STREQ(library.desc().getName(), "Nezaiva");
    EXPECT_STREQ(library.desc().getDescription(), "Maya-specific shaders");
}

TEST_F(Kinds, LibraryCountsThemForANullCallback)
{
    EXPECT_EQ(library.desc().enumPlugins(nullptr), static_cast<int>(expectedKinds().size()));
}

TEST_F(Kinds, LibraryCountsTheDescriptorThatStopsTheWalk)
{
    struct Stopper final : EnumPluginsCallback {
        int processPlugin(PluginDesc*) override { return 0; }
    } stopper;
    EXPECT_EQ(library.desc().enumPlugins(&stopper), 1);
}

TEST_F(Kinds, EachHasOneExpectedFile)
{
    std::map<std::string, std::filesystem::path> files;
    for (const ExpectedKind& expected : expectedKinds()) {
        const auto [known, isNew] = files.emplace(expected.name, expected.file);
        EXPECT_TRUE(isNew) << pathOf(expected.file) << " tells " << expected.name << ", which "
                           << pathOf(known->second) << " tells already: remove one of them";
        EXPECT_NE(support::findDescriptor(library.desc(), expected.name.c_str()), nullptr)
            << pathOf(expected.file) << " expects " << expected.name
            << ", which the library does not hold: add the node's source to src/CMakeLists.txt";
    }
    for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
        EXPECT_TRUE(files.contains(desc->getName()))
            << desc->getName() << " has no expected file: add one as tests/conformance/README.md tells, "
            << "beside the node's test below tests/textures_private";
    }
}

TEST_F(Kinds, IdsAreUnique)
{
    std::set<PluginId> ids;
    for (PluginDesc* desc : support::descriptorsOf(library.desc()))
        EXPECT_TRUE(ids.insert(desc->getPluginID()).second) << desc->getName();
}

TEST_F(Kinds, DescriptorsTellTheirIdAndDescription)
{
    forEach([](const ExpectedKind& expected, PluginDesc* desc) {
        EXPECT_EQ(desc->getPluginID(), expected.id);
        EXPECT_EQ(desc->getDescription(), expected.description);
        EXPECT_EQ(desc->reservedOperation8(), 0);
        EXPECT_EQ(desc->reservedOperation10(), 0);
        EXPECT_EQ(desc->reservedOperation11(), 0);
    });
}

TEST_F(Kinds, DescriptorsSupportExactlyWhatTheyDeclare)
{
    forEach([](const ExpectedKind& expected, PluginDesc* desc) {
        for (const InterfaceName& known : kInterfaceNames) {
            const bool declared = known.id == EXT_OMBRIX_PLUGIN || contains(expected.declared, known.id);
            EXPECT_EQ(desc->supportsInterface(known.id), declared ? 1 : 0) << known.name;
        }
        EXPECT_EQ(desc->supportsInterface(0), 0);
        EXPECT_EQ(desc->supportsInterface(kUnknownId), 0);
    });
}

TEST_F(Kinds, InstancesOfferExactlyTheirInterfaces)
{
    forEachInstance([](const ExpectedKind& expected, PluginDesc* desc, PluginBase* plugin) {
        for (const InterfaceName& known : kInterfaceNames) {
            const bool offered = known.id == EXT_OMBRIX_PLUGIN || contains(expected.offered, known.id);
            EXPECT_EQ(plugin->getInterface(known.id) != nullptr, offered) << known.name;
        }
        EXPECT_EQ(plugin->getInterface(0), nullptr);
        EXPECT_EQ(plugin->getInterface(kUnknownId), nullptr);
        EXPECT_EQ(static_cast<Plugin*>(plugin)->getPluginDesc(), desc);
    });
}

TEST_F(Kinds, InterfacesTellTheirIdNameAndHolder)
{
    forEachInstance([](const ExpectedKind& expected, PluginDesc*, PluginBase* plugin) {
        for (const InterfaceName& known : kInterfaceNames) {
            PluginInterface* found = plugin->getInterface(known.id);
            if (!found) continue;
            const InterfaceId reported = expected.allReportAs ? expected.allReportAs : known.id;
            EXPECT_EQ(found->getInterfaceID(), reported) << known.name;
            EXPECT_STREQ(found->getInterfaceName(), interfaceName(reported)) << known.name;
            EXPECT_EQ(found->getPlugin(), plugin) << known.name;
        }
    });
}

TEST_F(Kinds, InstancesKeepTheirNames)
{
    forEachInstance([](const ExpectedKind&, PluginDesc* desc, PluginBase* base) {
        auto* plugin = static_cast<Plugin*>(base);
        EXPECT_EQ(plugin->getPluginName(), nullptr);
        plugin->setPluginName("given");
        EXPECT_STREQ(plugin->getPluginName(), "given");
        plugin->setPluginName(nullptr);
        EXPECT_EQ(plugin->getPluginName(), nullptr);
        desc->deletePlugin(nullptr);
    });
}

TEST_F(Kinds, ParametersAreDeclaredAsExpected)
{
    DeclarationHost host;
    for (PluginDesc* desc : support::descriptorsOf(library.desc()))
        desc->registerPlugin(&host);
    const auto lines = [](const auto& declarations) {
        std::string text;
        for (const ombrix::ParameterDeclaration& declaration : declarations)
            text += lineOf(declaration) + "\n";
        return text;
    };
    forEach([&](const ExpectedKind& expected, PluginDesc*) {
        OmbrixParameterListDesc* parameters = host.received[expected.name];
        ASSERT_NE(parameters, nullptr);
        EXPECT_EQ(lines(parameters->declarations().all), lines(expected.parameters));
    });
}

std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// A test's text, with that of the fixtures beside it that it includes.
std::string testText(const std::filesystem::path& file)
{
    std::string text = contentsOf(file);
    for (const auto& beside : std::filesystem::directory_iterator(file.parent_path()))
        if (beside.path().extension() == ".h" &&
            contains(text, "#include \"" + beside.path().filename().string() + "\""))
            text += contentsOf(beside.path());
    return text;
}

// A node without a test of its own is not finished: the test stands beside the expected file, drives the
// node by its name, and is in the list of what is built.
TEST(NodeTests, EveryNodeHasOneOfItsOwn)
{
    for (const ExpectedKind& expected : expectedKinds()) {
        std::filesystem::path test = expected.file;
        test.replace_filename(expected.file.stem().string() + "_test.cpp");
        const std::filesystem::path list = test.parent_path() / "CMakeLists.txt";
        if (!exists(testsFolder() / test)) {
            ADD_FAILURE() << expected.name << " has no test of its own: add " << pathOf(test);
            continue;
        }
        EXPECT_TRUE(contains(testText(testsFolder() / test), "\"" + expected.name + "\""))
            << pathOf(test) << " does not name \"" << expected.name << "\": make the node by its name there";
        EXPECT_TRUE(contains(contentsOf(testsFolder() / list), test.filename().string()))
            << pathOf(test) << " is not built: add it to " << pathOf(list);
    }
}

} // namespace
