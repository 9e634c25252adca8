#include "host/plugins/builtin_desc.h"
#include "host/plugins/registry.h"

#include "host/errors/errors.h"
#include "host/memory/allocator.h"
#include "host/plugins/elf_symbols.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <fstream>

namespace {

using namespace ombrix;
namespace fs = std::filesystem;

// The folder of the libraries that the build made for these tests.
const fs::path kFixtures = PLUGIN_FIXTURES;
fs::path fixture(const char* name)
{
    return kFixtures / (std::string("lib") + name + ".so");
}

std::string errorOf(PluginRegistry& registry, const fs::path& file)
{
    try {
        registry.loadLibrary(file);
    } catch (const LibraryError& error) {
        return error.what();
    }
    return "";
}

bool isOpen(const fs::path& file)
{
    void* handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) ::dlclose(handle);
    return handle != nullptr;
}

std::vector<std::string> namesOf(const PluginRegistry& registry)
{
    std::vector<std::string> names;
    for (const RegisteredPlugin* plugin : registry.all())
        if (!plugin->builtin) names.emplace_back(plugin->desc->getName());
    return names;
}

TEST(Registry, LoadsTheKindsOfALibrary)
{
    PluginRegistry registry;
    registry.loadLibrary(fixture("two_kinds"));
    EXPECT_EQ(namesOf(registry), (std::vector<std::string>{"SampleA", "SampleB"}));
    const RegisteredPlugin* kind = registry.find("SampleB");
    ASSERT_NE(kind, nullptr);
    EXPECT_EQ(kind->desc->getPluginID(), 1002u);
    EXPECT_FALSE(kind->builtin);
    EXPECT_EQ(kind->library, fixture("two_kinds").string());
    ASSERT_NE(kind->parameters, nullptr);
    OUtils::PluginBase* plugin = kind->desc->newPlugin(&registry);
    ASSERT_NE(plugin, nullptr);
    kind->desc->deletePlugin(plugin);
    EXPECT_EQ(registry.find("SampleC"), nullptr);
    EXPECT_EQ(registry.find(""), nullptr);
}

TEST(Registry, LoadingAndUnloadingAgainLeavesNothingBehind)
{
    PluginRegistry registry;
    const auto builtins = registry.all().size();
    const auto before = allocationCounters().liveBlocks;
    for (int round = 0; round < 3; ++round) {
        registry.loadLibrary(fixture("two_kinds"));
        EXPECT_EQ(registry.all().size(), builtins + 2);
        EXPECT_TRUE(isOpen(fixture("two_kinds")));
        OUtils::PluginDesc* desc = registry.find("SampleA")->desc;
        const auto loaded = allocationCounters().liveBlocks;
        OUtils::PluginBase* plugin = desc->newPlugin(&registry);
        EXPECT_GT(allocationCounters().liveBlocks, loaded);
        desc->deletePlugin(plugin);
        registry.unloadLibraries();
        EXPECT_EQ(registry.all().size(), builtins);
        EXPECT_EQ(registry.find("SampleA"), nullptr);
        EXPECT_FALSE(isOpen(fixture("two_kinds")));
    }
    EXPECT_EQ(allocationCounters().liveBlocks, before);
}

TEST(Registry, EndingClosesTheLibraries)
{
    {
        PluginRegistry registry;
        registry.loadLibrary(fixture("two_kinds"));
    }
    EXPECT_FALSE(isOpen(fixture("two_kinds")));
}

TEST(Registry, ALibraryThatIsLoadedAlreadyIsLeftAsItIs)
{
    PluginRegistry registry;
    registry.loadLibrary(fixture("two_kinds"));
    EXPECT_EQ(errorOf(registry, fixture("two_kinds")), "");
    EXPECT_EQ(namesOf(registry).size(), 2u);
    registry.unloadLibraries();
    EXPECT_FALSE(isOpen(fixture("two_kinds")));
}

TEST(Registry, AMissingFileIsNamed)
{
    PluginRegistry registry;
    EXPECT_EQ(errorOf(registry, "/no/such/libthing.so"),
              "cannot load plug-in library /no/such/libthing.so: no such file");
    EXPECT_EQ(errorOf(registry, kFixtures),
              "cannot load plug-in library " + kFixtures.string() + ": it is a folder");
}

TEST(Registry, AFileThatIsNoSharedLibraryIsNamedWithTheReason)
{
    const fs::path file = fs::path(testing::TempDir()) / "text_file.so";
    std::ofstream(file) << "not a library";
    PluginRegistry registry;
    const std::string message = errorOf(registry, file);
    EXPECT_NE(message.find(file.string()), std::string::npos) << message;
    EXPECT_GT(message.size(), ("cannot load plug-in library " + file.string() + ": ").size());
    fs::remove(file);
}

TEST(Registry, ALibraryWithoutTheEntryPointIsRefusedAndClosed)
{
    PluginRegistry registry;
    EXPECT_EQ(errorOf(registry, fixture("no_entry")),
              "cannot load plug-in library " + fixture("no_entry").string() +
                  ": it has no getLibDesc, so it is not a plug-in library");
    EXPECT_FALSE(isOpen(fixture("no_entry")));
    EXPECT_NE(errorOf(registry, fixture("null_entry")).find("its getLibDesc gives nothing"),
              std::string::npos);
}

TEST(Registry, AnExceptionOfALibraryIsItsReason)
{
    PluginRegistry registry;
    EXPECT_NE(errorOf(registry, fixture("throwing")).find(": the licence is missing"), std::string::npos);
    EXPECT_FALSE(isOpen(fixture("throwing")));
}

TEST(Registry, ATakenNameOrIdRefusesTheWholeLibrary)
{
    PluginRegistry registry;
    registry.loadLibrary(fixture("two_kinds"));
    const std::string first = fixture("two_kinds").string();
    EXPECT_EQ(errorOf(registry, fixture("same_name")),
              "cannot load plug-in library " + fixture("same_name").string() +
                  ": the plug-in name \"SampleB\" is already taken by " + first);
    EXPECT_EQ(errorOf(registry, fixture("same_id")),
              "cannot load plug-in library " + fixture("same_id").string() +
                  ": the plug-in id 1002 of \"Other\" is already taken by \"SampleB\" of " + first);
    EXPECT_EQ(namesOf(registry), (std::vector<std::string>{"SampleA", "SampleB"}));
    EXPECT_EQ(registry.find("Free"), nullptr); // it stood before the clash
    EXPECT_FALSE(isOpen(fixture("same_name")));
}

// A folder of links to fixtures.
class Folder {
public:
    explicit Folder(const char* name) : path(fs::path(testing::TempDir()) / name)
    {
        fs::remove_all(path);
        fs::create_directories(path);
    }
    ~Folder() { fs::remove_all(path); }
    void add(const char* fixtureName, const char* as) const
    {
        fs::copy_file(fixture(fixtureName), path / as);
    }

    const fs::path path;
};

class DefaultLibraries : public ::testing::Test {
protected:
    void SetUp() override
    {
        ::unsetenv("OMBRIX_PLUGIN_PATH");
        ::unsetenv("NO_ENTRY_WAS_OPENED");
    }
    void TearDown() override { ::unsetenv("OMBRIX_PLUGIN_PATH"); }

    PluginRegistry registry;
};

TEST_F(DefaultLibraries, StandBesideTheProgramAndOthersAreNotOpened)
{
    const Folder folder("registry_beside");
    folder.add("two_kinds", "libsamples.so");
    folder.add("no_entry", "libruntime.so");
    fs::create_directory(folder.path / "folder.so");
    std::ofstream(folder.path / "readme.txt") << "getLibDesc";
    registry.loadDefaultLibraries(folder.path);
    EXPECT_EQ(namesOf(registry).size(), 2u);
    EXPECT_EQ(std::getenv("NO_ENTRY_WAS_OPENED"), nullptr);
    registry.loadLibrary(folder.path / "libsamples.so"); // known by its file
    EXPECT_THROW(registry.loadLibrary(folder.path / "libruntime.so"), LibraryError);
    EXPECT_NE(std::getenv("NO_ENTRY_WAS_OPENED"), nullptr); // the mark does work
}

TEST_F(DefaultLibraries, ComeFromTheFoldersOfTheVariable)
{
    const Folder first("registry_first"), second("registry_second"), beside("registry_unused");
    first.add("one_kind", "libone.so");
    second.add("two_kinds", "libtwo.so");
    second.add("same_id", "libone.so"); // hidden by the first folder's
    beside.add("same_name", "libclash.so");
    ::setenv("OMBRIX_PLUGIN_PATH", (first.path.string() + "::" + second.path.string()).c_str(), 1);
    registry.loadDefaultLibraries(beside.path);
    EXPECT_EQ(namesOf(registry), (std::vector<std::string>{"Lonely", "SampleA", "SampleB"}));
}

// What loading from a folder is refused for.
std::string refusalOf(PluginRegistry& registry, const fs::path& programFolder)
{
    try {
        registry.loadDefaultLibraries(programFolder);
    } catch (const LibraryError& error) {
        return error.what();
    }
    return "";
}

TEST_F(DefaultLibraries, ABrokenOneIsAnErrorWhereverItStands)
{
    const Folder folder("registry_broken");
    folder.add("two_kinds", "libsamples.so");
    const fs::path broken = folder.path / "libbroken.so";
    std::ofstream(broken) << "ELF? no";
    const std::string expected =
        "cannot load plug-in library " + broken.string() + ": it is no shared library";
    EXPECT_EQ(refusalOf(registry, folder.path), expected);
    ::setenv("OMBRIX_PLUGIN_PATH", folder.path.c_str(), 1);
    EXPECT_EQ(refusalOf(registry, "."), expected);
    fs::remove(broken);
    fs::create_symlink("nowhere", broken);
    EXPECT_EQ(refusalOf(registry, "."), "cannot load plug-in library " + broken.string() + ": no such file");
}

TEST_F(DefaultLibraries, OneWithoutTheEntryIsAnErrorInTheFoldersOfTheVariable)
{
    const Folder folder("registry_no_entry");
    folder.add("no_entry", "libother.so");
    ::setenv("OMBRIX_PLUGIN_PATH", folder.path.c_str(), 1);
    EXPECT_EQ(refusalOf(registry, "."), "cannot load plug-in library " +
                                            (folder.path / "libother.so").string() +
                                            ": it has no getLibDesc, so it is not a plug-in library");
}

TEST_F(DefaultLibraries, TheHostsOwnRuntimeMayStandAmongThem)
{
    const Folder folder("registry_runtime");
    folder.add("one_kind", "libone.so");
    Dl_info runtime{};
    ASSERT_NE(::dladdr(reinterpret_cast<void*>(&exportsSymbol), &runtime), 0);
    fs::create_symlink(fs::absolute(runtime.dli_fname), folder.path / "libombrix.so");
    fs::create_symlink(fs::absolute(runtime.dli_fname).parent_path() / "libombrix_image.so",
                       folder.path / "libombrix_image.so");
    ::setenv("OMBRIX_PLUGIN_PATH", folder.path.c_str(), 1);
    EXPECT_EQ(refusalOf(registry, "."), "");
    EXPECT_EQ(namesOf(registry), std::vector<std::string>{"Lonely"});
}

TEST_F(DefaultLibraries, AMissingFolderOfTheVariableIsAWarning)
{
    ::setenv("OMBRIX_PLUGIN_PATH", "/no/such/folder", 1);
    testing::internal::CaptureStderr();
    registry.loadDefaultLibraries(kFixtures);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning: OMBRIX_PLUGIN_PATH: /no/such/folder is not a folder\n");
    EXPECT_TRUE(namesOf(registry).empty());
}

TEST(ElfSymbols, TellsWhatALibraryDefines)
{
    EXPECT_TRUE(exportsSymbol(fixture("two_kinds"), "getLibDesc"));
    EXPECT_FALSE(exportsSymbol(fixture("two_kinds"), "getLib"));
    EXPECT_TRUE(exportsSymbol(fixture("no_entry"), "getLib"));
    EXPECT_FALSE(exportsSymbol(fixture("no_entry"), "setenv")); // used, not defined
    EXPECT_FALSE(exportsSymbol("/no/such/file.so", "getLibDesc"));
    EXPECT_FALSE(exportsSymbol(kFixtures, "getLibDesc"));
}

TEST(ElfSymbols, DamagedFilesDefineNothing)
{
    std::ifstream in(fixture("two_kinds"), std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    const fs::path file = fs::path(testing::TempDir()) / "damaged.so";
    for (std::size_t kept : {std::size_t{0}, std::size_t{10}, std::size_t{64}, whole.size() / 2}) {
        std::ofstream(file, std::ios::binary) << whole.substr(0, kept);
        EXPECT_FALSE(exportsSymbol(file, "getLibDesc")) << kept;
    }
    fs::remove(file);
}

TEST(ElfSymbols, LibrariesThatAreCutShortAreToldBeforeTheyAreOpened)
{
    std::ifstream in(fixture("two_kinds"), std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    const fs::path file = fs::path(testing::TempDir()) / "cut_short.so";
    const auto problemOf = [&](const std::string& bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
        return findLibraryProblem(file);
    };
    EXPECT_EQ(problemOf(whole), "");
    for (std::size_t kept :
         {std::size_t{4}, std::size_t{10}, std::size_t{64}, std::size_t{1000}, whole.size() / 4}) {
        EXPECT_EQ(problemOf(whole.substr(0, kept)), "it is cut short") << kept;
        PluginRegistry registry;
        EXPECT_EQ(errorOf(registry, file),
                  "cannot load plug-in library " + file.string() + ": it is cut short");
    }
    EXPECT_EQ(problemOf(""), "it is no shared library");
    EXPECT_EQ(problemOf("\x7f"
                        "ELG and more"),
              "it is no shared library");
    std::string narrow = whole;
    narrow[4] = 1; // a 32-bit file
    EXPECT_EQ(problemOf(narrow), "it is no shared library");
    fs::remove(file);
    EXPECT_EQ(findLibraryProblem(file), "No such file or directory");
    EXPECT_EQ(findLibraryProblem("/dev/null"), "it is no shared library");
}

class SampleBuiltin : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", OUtils::unbound<int>, 3);
    }
};
class FirstByName final : public SampleBuiltin {
public:
    using SampleBuiltin::SampleBuiltin;
    static constexpr OUtils::Identity kIdentity{9001, "AaaBuiltin", "Of the host", {OUtils::EXT_TEXTURE}};
};
class NameOfALibrarys final : public SampleBuiltin {
public:
    using SampleBuiltin::SampleBuiltin;
    static constexpr OUtils::Identity kIdentity{9001, "SampleA", "Of the host", {}};
};
class Ending final : public SampleBuiltin {
public:
    using SampleBuiltin::SampleBuiltin;
    static constexpr OUtils::Identity kIdentity{9002, "Gone", "Of the host", {}};
};

TEST(Builtins, EveryRegistryKnowsThem)
{
    BuiltinDesc<FirstByName> builtin;
    PluginRegistry first, second;
    first.loadLibrary(fixture("two_kinds"));
    const RegisteredPlugin* kind = second.find("AaaBuiltin");
    ASSERT_NE(kind, nullptr);
    EXPECT_TRUE(kind->builtin);
    EXPECT_EQ(kind->library, "");
    EXPECT_EQ(kind->parameters, builtin.parameterDesc);
    EXPECT_EQ(kind->desc->supportsInterface(OUtils::EXT_TEXTURE), 1);
    EXPECT_EQ(kind->desc->supportsInterface(OUtils::EXT_OMBRIX_PLUGIN), 1);
    EXPECT_EQ(kind->desc->supportsInterface(OUtils::EXT_UVWGEN), 0);
    // Built-in kinds stand last whatever their name.
    EXPECT_STREQ(first.all()[0]->desc->getName(), "SampleA");
    EXPECT_TRUE(first.all().back()->builtin);
}

TEST(Builtins, ALibraryCannotTakeTheirNames)
{
    const BuiltinDesc<NameOfALibrarys> builtin;
    PluginRegistry registry;
    EXPECT_NE(errorOf(registry, fixture("two_kinds"))
                  .find("the plug-in name \"SampleA\" is already taken by the host"),
              std::string::npos);
}

TEST(Builtins, AnEndedDescriptorIsForgotten)
{
    {
        const BuiltinDesc<Ending> builtin;
        EXPECT_NE(PluginRegistry().find("Gone"), nullptr);
    }
    EXPECT_EQ(PluginRegistry().find("Gone"), nullptr);
}

} // namespace
