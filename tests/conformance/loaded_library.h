// The built library, opened as a host does.
#pragma once

#include <ombrix/plugin.h>

#include <dlfcn.h>
#include <fstream>
#include <stdexcept>
#include <string>

namespace conformance {

// Whether the library's file is mapped into this process.
inline bool isMapped()
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(NEZAIVA_MODULE) != std::string::npos) return true;
    return false;
}

// Throws std::runtime_error when the library cannot be opened.
class LoadedLibrary {
public:
    LoadedLibrary() : handle(dlopen(NEZAIVA_MODULE, RTLD_NOW | RTLD_LOCAL))
    {
        if (!handle) throw std::runtime_error(dlerror());
        const auto entry =
            reinterpret_cast<OUtils::GetLibDescFunction>(dlsym(handle, OUtils::kGetLibDescName));
        if (!entry) throw std::runtime_error(dlerror());
        library = entry();
    }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary() { dlclose(handle); }

    OUtils::PluginLibDesc& desc() { return *library; }

private:
    void* handle;
    OUtils::PluginLibDesc* library = nullptr;
};

// A host that takes everything and keeps nothing.
class AcceptingHost : public OUtils::OmbrixPluginHost {
public:
    int addPlugin(OUtils::PluginDesc*) override { return 1; }
    int removePlugin(OUtils::PluginDesc*) override { return 1; }
    int addParameters(OUtils::PluginDesc*, OUtils::OmbrixParameterListDesc*) override { return 1; }
};

} // namespace conformance
