// GPU text from expressions, for a texture that writes its source.
#pragma once

#include "plugin_frame/source_text.h"
#include "textures/expr/gpu_source_helper.h"

namespace nezaiva {

// Writes into the text that it is given, and lives no longer than that.
class SourceExpressions : public GPUSourceHelper {
public:
    explicit SourceExpressions(SourceText& text)
        : GPUSourceHelper(text.name, text.tag, text.descriptor, text.source, text.data)
    {
    }
};

} // namespace nezaiva
