#include "plugin_frame/descriptor_list.h"

namespace nezaiva {

constinit DescriptorEntry* descriptorListHead = nullptr;
constinit std::uint32_t descriptorCount = 0;

void linkDescriptor(PluginDesc* desc)
{
    ++descriptorCount;
    descriptorListHead = new DescriptorEntry{desc, descriptorListHead};
}

} // namespace nezaiva
