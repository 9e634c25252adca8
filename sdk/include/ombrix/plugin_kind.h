// How a library describes a plugin kind: a class with an identity and a table of parameters, and one
// static descriptor of it.
#pragma once

#include <ombrix/parameter_table.h>
#include <ombrix/plugin.h>

#include <cstddef>
#include <new>

namespace OUtils {

// What a kind says of itself. The texts are literals.
struct Identity {
    static constexpr int kMostInterfaces = 4;

    PluginId id;
    const char* name;
    const char* description; // a sentence, ending in a blank and a "[gpuSupport=(...)]" tag
    // The declared interfaces beside EXT_OMBRIX_PLUGIN, which every kind has; ended by a 0. They need not
    // be those that an instance answers to.
    InterfaceId interfaces[kMostInterfaces + 1];
};

// A plugin class over Base that also answers to the interfaces Extra. They are looked for before those of
// Base.
template <class Base, class... Extra>
class Offers : public Base, public Extra... {
public:
    using Base::Base;

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        PluginInterface* found = nullptr;
        (void)((id == Extra::kId && (found = static_cast<Extra*>(this))) || ...);
        return found ? found : Base::getInterface(id);
    }
};

// The descriptor of a kind. Kind has kIdentity and parameters() as parameter_table.h tells, and is
// constructed with its OmbrixPluginDesc. A library makes one static object of it, or of a class over it
// that links it into the library's list.
template <class Kind, class Params = KindParams<Kind>>
class PluginKindDesc : public OmbrixPluginDesc {
public:
    PluginKindDesc() { parameterDesc = &params; }

    PluginId getPluginID() override { return Kind::kIdentity.id; }
    const char* getName() override { return Kind::kIdentity.name; }
    const char* getDescription() override { return Kind::kIdentity.description; }

    PluginBase* newPlugin(OmbrixPluginHost* /*host*/) override
    {
        Kind* plugin = new (std::nothrow_t{}) Kind(this);
        if (!plugin) return nullptr;
        try {
            bindParameters(*plugin);
        } catch (...) {
            delete plugin;
            throw;
        }
        return plugin;
    }

    void deletePlugin(PluginBase* plugin) override { delete plugin; }

    int supportsInterface(InterfaceId id) override
    {
        if (id == EXT_OMBRIX_PLUGIN) return 1;
        for (const InterfaceId* declared = Kind::kIdentity.interfaces; *declared; ++declared)
            if (*declared == id) return 1;
        return 0;
    }

    void registerPlugin(OmbrixPluginHost* host) override
    {
        if (!host) return;
        host->addPlugin(this);
        if (parameterDesc) parameterDesc->registerParameters(host, this);
    }

    void unregisterPlugin(OmbrixPluginHost* host) override
    {
        if (host) host->removePlugin(this);
    }

private:
    Params params;
};

} // namespace OUtils
