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
    // Unregisters everything and closes the libraries, but while an exception is under way, which may be one
    // of theirs: then they stay open. All instances must be gone.
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

} // namespace ombrix
