#include "plugin_frame/lib_desc.h"

namespace nezaiva {

LibDesc::~LibDesc()
{
    while (descriptorListHead) {
        DescriptorEntry* entry = descriptorListHead;
        descriptorListHead = entry->next;
        delete entry;
    }
}

int LibDesc::enumPlugins(EnumPluginsCallback* callback)
{
    if (!callback) return static_cast<int>(descriptorCount);
    int handedOut = 0;
    for (const DescriptorEntry* entry = descriptorListHead; entry; entry = entry->next) {
        ++handedOut;
        if (!callback->processPlugin(entry->desc)) break;
    }
    return handedOut;
}

namespace {
LibDesc libDesc;
}

} // namespace nezaiva

extern "C" OUtils::PluginLibDesc* getLibDesc()
{
    return &nezaiva::libDesc;
}
