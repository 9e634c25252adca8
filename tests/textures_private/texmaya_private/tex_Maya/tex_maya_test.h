// What the tests of the utility nodes share.
#pragma once

#include "plugin_frame/lib_desc.h"
#include "support/test_node.h"
#include "support/text_sink.h"
#include "support/tolerances.h"

namespace support {

// A new instance of a plugin of the library that is linked into the test.
inline OUtils::PluginDesc* descriptor(const char* pluginName)
{
    return findDescriptor(*getLibDesc(), pluginName);
}

} // namespace support
