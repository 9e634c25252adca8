// The plugin kinds that the host knows: its own and those of the loaded libraries.
#pragma once

#include <ombrix/plugin.h>
#include <ombrix/plugin_desc.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

struct RegisteredPlugin {
    OUtils::PluginDesc* desc = nullptr;
    OUtils::OmbrixParameterListDesc* parameters = nullptr; // null for a kind without parameters
    bool builtin = false;
    std::string library; // the file it came from; "" for a built-in kind
};

class PluginRegistry : public OUtils::OmbrixPluginHost {
public:
    // Registers the built-in kinds.
    PluginRegistry();
    // Unregisters everything and closes the libraries. All instances must be gone.
    ~PluginRegistry() override;
    PluginRegistry(const PluginRegistry&) = delete;
    PluginRegistry& operator=(const PluginRegistry&) = delete;

    // Opens a library, looks up getLibDesc, walks its descriptors and registers each. A library that is
    // loaded already is left as it is. Throws LibraryError, and nothing of the library stays: no such
    // file, not a shared library, no getLibDesc, a kind whose name or id another kind has.
    void loadLibrary(const std::filesystem::path& file);
    // Loads what a program loads when no library is named: every *.so of the folders of
    // OMBRIX_PLUGIN_PATH (colon-separated); without that variable, or with an empty one, those in
    // programFolder that export getLibDesc, because a program's folder holds other libraries too. Files are
    // taken in the order of the folders, then of their names; of two files of the same name the first one
    // counts, and the host's runtime is passed over. Throws LibraryError for the first file that
    // loadLibrary would refuse; in programFolder too when it is no whole shared library.
    void loadDefaultLibraries(const std::filesystem::path& programFolder);
    // Unregisters the kinds of all loaded libraries and closes them.
    void unloadLibraries();

    // Null when no kind has the name.
    const RegisteredPlugin* find(std::string_view name) const;
    // Sorted by name, built-in kinds last.
    std::vector<const RegisteredPlugin*> all() const;

    // Refuses a null descriptor and a name or an id that another kind has.
    int addPlugin(OUtils::PluginDesc* desc) override;
    int removePlugin(OUtils::PluginDesc* desc) override;
    int addParameters(OUtils::PluginDesc* desc, OUtils::OmbrixParameterListDesc* parameters) override;

private:
    struct State;
    std::unique_ptr<State> state;
};

// A built-in kind, in the way of a library's own: a static BuiltinDesc links itself into a list that
// every PluginRegistry reads.
class BuiltinDescBase : public OUtils::OmbrixPluginDesc {
public:
    BuiltinDescBase();
    ~BuiltinDescBase() override;
    static BuiltinDescBase* first();
    BuiltinDescBase* next = nullptr;
};

// What a built-in kind says of itself. interfaces: the declared ones, EXT_OMBRIX_PLUGIN left out.
struct BuiltinIdentity {
    OUtils::PluginId id;
    const char* name;
    const char* description;
    std::vector<OUtils::InterfaceId> interfaces;
};

// Instance is constructed with the descriptor; Params derives from OmbrixParameterListDesc.
template <class Instance, class Params>
class BuiltinDesc : public BuiltinDescBase {
public:
    explicit BuiltinDesc(BuiltinIdentity what) : identity(std::move(what)) { parameterDesc = &params; }

    OUtils::PluginId getPluginID() override { return identity.id; }
    OUtils::PluginBase* newPlugin(OUtils::OmbrixPluginHost* /*host*/) override { return new Instance(this); }
    void deletePlugin(OUtils::PluginBase* plugin) override { delete plugin; }
    int supportsInterface(OUtils::InterfaceId wanted) override
    {
        if (wanted == OUtils::EXT_OMBRIX_PLUGIN) return 1;
        for (OUtils::InterfaceId id : identity.interfaces)
            if (id == wanted) return 1;
        return 0;
    }
    const char* getName() override { return identity.name; }
    const char* getDescription() override { return identity.description; }
    void registerPlugin(OUtils::OmbrixPluginHost* host) override
    {
        if (!host) return;
        host->addPlugin(this);
        params.registerParameters(host, this);
    }
    void unregisterPlugin(OUtils::OmbrixPluginHost* host) override
    {
        if (host) host->removePlugin(this);
    }

private:
    BuiltinIdentity identity;
    Params params;
};

} // namespace ombrix
