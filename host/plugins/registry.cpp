#include "host/plugins/registry.h"

#include "host/errors/errors.h"
#include "host/image/image_formats.h"
#include "host/log/log.h"
#include "host/plugins/builtin_desc.h"
#include "host/plugins/elf_symbols.h"

#include <exception>
#include <ombrix/exception_msg.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <set>

namespace ombrix {

using OUtils::PluginDesc;

namespace {

constexpr const char* kPluginPathVariable = "OMBRIX_PLUGIN_PATH";

// Hands a library's descriptors to the registry; stops at the first one that is refused.
class Registration final : public OUtils::EnumPluginsCallback {
public:
    Registration(PluginRegistry& to, const std::string& from) : registry(to), refusal(from) {}
    int processPlugin(PluginDesc* desc) override
    {
        if (!desc) return 1;
        desc->registerPlugin(&registry);
        return refusal.empty() ? 1 : 0;
    }

private:
    PluginRegistry& registry;
    const std::string& refusal; // why the registry refused the last kind
};

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& reason)
{
    throw LibraryError{"cannot load plug-in library " + file.string() + ": " + reason};
}

std::vector<std::filesystem::path> foldersOf(const std::string& list)
{
    std::vector<std::filesystem::path> folders;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(':', start), list.size());
        if (end > start) folders.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    return folders;
}

// All *.so of a folder but folders of that name; links that lead nowhere are among them. A folder that the
// variable names and that cannot be looked into is a warning.
std::vector<std::filesystem::path> librariesIn(const std::filesystem::path& folder, bool named)
{
    std::vector<std::filesystem::path> found;
    std::error_code error, ignored;
    const auto warn = [&](const std::string& reason) {
        if (named)
            say(OUtils::LogLevel::Warning,
                std::string(kPluginPathVariable) + ": " + folder.string() + " " + reason);
    };
    if (!std::filesystem::is_directory(folder, ignored)) {
        warn("is not a folder");
        return found;
    }
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().extension() == ".so" && !entry->is_directory(ignored))
            found.push_back(entry->path());
    if (error) warn("cannot be read: " + error.message());
    std::sort(found.begin(), found.end());
    return found;
}

// Whether a file is the host's runtime, the library that this function stands in, or another copy of it, or
// the part of it that knows images: they are no plug-in libraries and may well stand among them.
bool isRuntime(const std::filesystem::path& file)
{
    if (file.filename() == kImageLibraryFile) return true;
    Dl_info own{};
    return ::dladdr(reinterpret_cast<void*>(&isRuntime), &own) != 0 && own.dli_fname &&
           file.filename() == std::filesystem::path(own.dli_fname).filename();
}

} // namespace

struct PluginRegistry::State {
    struct Library {
        std::string file;
        void* handle = nullptr;
        std::vector<PluginDesc*> kinds;
    };

    std::vector<std::unique_ptr<RegisteredPlugin>> plugins;
    std::vector<Library> libraries;
    Library* loading = nullptr; // the library whose kinds are being registered; null for built-in ones
    std::string refusal;

    RegisteredPlugin* findDesc(const PluginDesc* desc)
    {
        for (const auto& plugin : plugins)
            if (plugin->desc == desc) return plugin.get();
        return nullptr;
    }
    // Why a kind cannot be added; "" when it can.
    std::string reasonAgainst(PluginDesc* desc) const
    {
        const auto origin = [](const RegisteredPlugin& plugin) {
            return plugin.builtin ? std::string("the host") : plugin.library;
        };
        if (!desc->getName()) return "a plug-in kind has no name";
        for (const auto& plugin : plugins) {
            if (std::string_view(plugin->desc->getName()) == desc->getName())
                return std::string("the plug-in name \"") + desc->getName() + "\" is already taken by " +
                       origin(*plugin);
            if (plugin->desc->getPluginID() == desc->getPluginID())
                return std::string("the plug-in id ") + std::to_string(desc->getPluginID()) + " of \"" +
                       desc->getName() + "\" is already taken by \"" + plugin->desc->getName() + "\" of " +
                       origin(*plugin);
        }
        return "";
    }
    void close(Library& library, PluginRegistry& registry)
    {
        for (PluginDesc* desc : library.kinds) {
            desc->unregisterPlugin(&registry);
            std::erase_if(plugins, [=](const auto& plugin) { return plugin->desc == desc; });
        }
        // An exception that is under way may be the library's own, and so may be what destroys it.
        if (std::uncaught_exceptions() == 0) ::dlclose(library.handle);
    }
};

PluginRegistry::PluginRegistry() : state(std::make_unique<State>())
{
    for (PluginDesc* desc : BuiltinEntry::all())
        desc->registerPlugin(this);
    if (!state->refusal.empty()) throw LibraryError{"the host's own plug-ins: " + state->refusal};
}

PluginRegistry::~PluginRegistry()
{
    unloadLibraries();
    while (!state->plugins.empty()) {
        PluginDesc* desc = state->plugins.back()->desc;
        desc->unregisterPlugin(this);
        std::erase_if(state->plugins, [=](const auto& plugin) { return plugin->desc == desc; });
    }
}

void PluginRegistry::loadLibrary(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(file, error);
    if (!std::filesystem::exists(absolute, error)) fail(file, "no such file");
    if (std::filesystem::is_directory(absolute, error)) fail(file, "it is a folder");
    if (const std::string problem = findLibraryProblem(absolute); !problem.empty()) fail(file, problem);
    void* handle = ::dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) fail(file, ::dlerror());
    for (const State::Library& library : state->libraries) {
        if (library.handle != handle) continue;
        ::dlclose(handle); // counted twice by the loader
        return;
    }
    State::Library library{file.string(), handle, {}};
    std::string problem;
    try {
        void* entry = ::dlsym(handle, OUtils::kGetLibDescName);
        OUtils::PluginLibDesc* desc = entry ? reinterpret_cast<OUtils::GetLibDescFunction>(entry)() : nullptr;
        if (!entry)
            problem = "it has no getLibDesc, so it is not a plug-in library";
        else if (!desc)
            problem = "its getLibDesc gives nothing";
        state->loading = &library;
        state->refusal.clear();
        Registration registration(*this, state->refusal);
        if (desc) desc->enumPlugins(&registration);
        if (problem.empty()) problem = state->refusal;
    } catch (const OUtils::ExceptionMsg& exception) {
        problem = exception.what();
    } catch (const std::exception& exception) {
        problem = exception.what();
    }
    state->loading = nullptr;
    if (!problem.empty()) {
        state->close(library, *this);
        fail(file, problem);
    }
    state->libraries.push_back(std::move(library));
}

void PluginRegistry::loadDefaultLibraries(const std::filesystem::path& programFolder)
{
    const char* variable = std::getenv(kPluginPathVariable);
    const bool named = variable && *variable;
    std::set<std::filesystem::path> seen;
    for (const auto& folder : named ? foldersOf(variable) : std::vector{programFolder}) {
        for (const auto& file : librariesIn(folder, named)) {
            // What is broken may be a plug-in library, and what a folder for plug-ins holds should be one.
            const bool broken = !findLibraryProblem(file).empty();
            const bool meant = broken || named || exportsSymbol(file, OUtils::kGetLibDescName);
            if (meant && !isRuntime(file) && seen.insert(file.filename()).second) loadLibrary(file);
        }
    }
}

void PluginRegistry::unloadLibraries()
{
    while (!state->libraries.empty()) {
        state->close(state->libraries.back(), *this);
        state->libraries.pop_back();
    }
}

const RegisteredPlugin* PluginRegistry::find(std::string_view name) const
{
    for (const auto& plugin : state->plugins)
        if (plugin->desc->getName() == name) return plugin.get();
    return nullptr;
}

std::vector<const RegisteredPlugin*> PluginRegistry::all() const
{
    std::vector<const RegisteredPlugin*> sorted;
    for (const auto& plugin : state->plugins)
        sorted.push_back(plugin.get());
    std::sort(sorted.begin(), sorted.end(), [](const RegisteredPlugin* a, const RegisteredPlugin* b) {
        if (a->builtin != b->builtin) return b->builtin;
        return std::string_view(a->desc->getName()) < b->desc->getName();
    });
    return sorted;
}

int PluginRegistry::addPlugin(PluginDesc* desc)
{
    if (!desc) return 0;
    if (std::string reason = state->reasonAgainst(desc); !reason.empty()) {
        if (state->refusal.empty()) state->refusal = std::move(reason);
        return 0;
    }
    auto plugin = std::make_unique<RegisteredPlugin>();
    plugin->desc = desc;
    plugin->builtin = state->loading == nullptr;
    if (state->loading) {
        plugin->library = state->loading->file;
        state->loading->kinds.push_back(desc);
    }
    state->plugins.push_back(std::move(plugin));
    return 1;
}

int PluginRegistry::removePlugin(PluginDesc* desc)
{
    return std::erase_if(state->plugins, [=](const auto& plugin) { return plugin->desc == desc; }) ? 1 : 0;
}

int PluginRegistry::addParameters(PluginDesc* desc, OUtils::OmbrixParameterListDesc* parameters)
{
    RegisteredPlugin* plugin = state->findDesc(desc);
    if (!plugin) return 0;
    plugin->parameters = parameters;
    return 1;
}

} // namespace ombrix
