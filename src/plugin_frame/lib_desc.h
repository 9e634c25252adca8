// The library's own descriptor, which getLibDesc hands to the host.
#pragma once

#include "plugin_frame/descriptor_list.h"

#include <ombrix/api.h>

namespace nezaiva {

// Holds no state of its own: it shows the list of descriptors, and frees the list's entries when the
// library is unloaded. The descriptors are statics that end by themselves.
class LibDesc : public PluginLibDesc {
public:
    // Frees every entry and leaves the list empty. The counter keeps its value.
    ~LibDesc() override;

    const char* getName() override { return "Nezaiva"; }
    const char* getDescription() override { return "Maya-specific shaders"; }
    int enumPlugins(EnumPluginsCallback* callback) override;
};

} // namespace nezaiva

// The library's one export.
extern "C" OMBRIX_API OUtils::PluginLibDesc* getLibDesc();
