#include "textures_private/texmaya_private/tex_Maya/logic_source.h"

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/slot_text.h"

namespace nezaiva {

namespace {
constexpr int kLogicOperator = -947; // consumes the two inputs; its first operand is the operation
}

int writeLogicSource(PluginInterface* a, PluginInterface* b, int operation, const char* name, const char* tag,
                     const char* descriptor, ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    SlotText slots(name, tag, descriptor, source, data);
    // Kept as is: an unset input leaves its slot empty, the declared default does not reach the GPU.
    slots.input(a);
    slots.input(b);
    slots.builtin(kLogicOperator);
    source.printf("uvw_transform %f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n", static_cast<double>(operation), 0.0,
                  0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
    return 1;
}

} // namespace nezaiva
