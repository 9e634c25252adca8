// The GPU form that the logic textures share.
#pragma once

#include <ombrix/gpu_source.h>

namespace nezaiva {

// The body of getSource. a and b may be null.
int writeLogicSource(OUtils::PluginInterface* a, OUtils::PluginInterface* b, int operation, const char* name,
                     const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                     OUtils::OCLData& data);

} // namespace nezaiva
