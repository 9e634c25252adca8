// The GPU form that the logic textures share.
#pragma once

#include "plugin_frame/source_text.h"

namespace nezaiva {

// Kept as is: an unset input leaves its slot empty, the declared default does not reach the GPU.
inline int writeLogicSource(SourceText& text, PluginInterface* a, PluginInterface* b, int operation)
{
    text.slot(a);
    text.slot(b);
    text.op(GpuOperator::Compare);
    text.operands({static_cast<float>(operation)});
    return 1;
}

} // namespace nezaiva
