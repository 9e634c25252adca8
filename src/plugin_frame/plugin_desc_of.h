// DescOf: the descriptor of a plugin kind. A node derives its <Plugin>Desc from it and makes one static
// object, which declares the parameters and links itself into the library's list while it is loaded.
#pragma once

#include "plugin_frame/descriptor_list.h"

#include <ombrix/plugin.h>

#include <cstddef>
#include <new>

namespace nezaiva {

// What a plugin kind says of itself. The texts are literals.
struct PluginIdentity {
    static constexpr int kMaxInterfaces = 4;

    PluginId id;
    const char* name;
    const char* description;
    // The declared interfaces, EXT_OMBRIX_PLUGIN first, ended by a 0. They need not be those that an
    // instance answers to.
    InterfaceId interfaces[kMaxInterfaces + 1];
};

// PluginClass is constructed with its OmbrixPluginDesc; ParamsClass is an OmbrixParameterListDesc whose
// constructor declares the parameters.
template <class PluginClass, class ParamsClass>
class DescOf : public OmbrixPluginDesc {
public:
    // The parameters are declared before anybody can find the descriptor.
    explicit DescOf(const PluginIdentity& what) : identity(what)
    {
        parameterDesc = &params;
        linkDescriptor(this);
    }

    PluginId getPluginID() override { return identity.id; }
    const char* getName() override { return identity.name; }
    const char* getDescription() override { return identity.description; }

    PluginBase* newPlugin(OmbrixPluginHost* /*host*/) override
    {
        static_assert(alignof(PluginClass) <= alignof(std::max_align_t));
        void* block = omalloc(sizeof(PluginClass));
        if (!block) return nullptr;
        try {
            return new (block) PluginClass(this);
        } catch (...) {
            ofree(block);
            throw;
        }
    }

    // The deleting destructor gives the block back through the library's operator delete.
    void deletePlugin(PluginBase* plugin) override { delete plugin; }

    int supportsInterface(InterfaceId id) override
    {
        for (const InterfaceId* declared = identity.interfaces; *declared; ++declared)
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
    PluginIdentity identity;
    ParamsClass params;
};

} // namespace nezaiva
