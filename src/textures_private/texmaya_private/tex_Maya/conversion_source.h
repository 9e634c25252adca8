// The GPU form that the two hue conversions share: a built-in operator over one input.
#pragma once

#include "plugin_frame/slot_text.h"

namespace nezaiva {

// The body of getSource. input may be null.
inline int writeConversionSource(PluginInterface* input, int operation, const char* name, const char* tag,
                                 const char* descriptor, ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    SlotText slots(name, tag, descriptor, source, data);
    if (!input) source.append("color 0.0 0.0 0.0 0.0\n");
    slots.input(input);
    slots.builtin(operation);
    return 1;
}

} // namespace nezaiva
