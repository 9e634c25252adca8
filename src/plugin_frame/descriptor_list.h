// The library's one list of descriptors. Each descriptor links itself in while the library is loaded;
// the order carries no meaning.
#pragma once

#include <ombrix/plugin_desc.h>

#include <cstdint>

namespace nezaiva {

using namespace OUtils;

struct DescriptorEntry {
    PluginDesc* desc;
    DescriptorEntry* next;
};

// Zero before any initialiser runs.
extern DescriptorEntry* descriptorListHead;
extern std::uint32_t descriptorCount;

// Counts the descriptor and prepends it to the list.
void linkDescriptor(PluginDesc* desc);

} // namespace nezaiva
