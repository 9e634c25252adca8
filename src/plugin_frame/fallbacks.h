// Reading an input that the scene may have left unset. An unset input is a null pointer: it contributes
// the caller's fallback and nothing is called.
#pragma once

#include <ombrix/texture_interfaces.h>

namespace nezaiva {

using namespace OUtils;

// The input's colour, alpha as the input gives it.
inline AColor colorOr(TextureInterface* input, const AColor& fallback, const OmbrixContext& context)
{
    if (!input) return fallback;
    AColor color;
    input->evalColor(&color, context);
    return color;
}

// The same, written straight into a result: for nodes that pass an input on.
inline void writeColorOr(AColor* result, TextureInterface* input, const AColor& fallback,
                         const OmbrixContext& context)
{
    if (input)
        input->evalColor(result, context);
    else
        *result = fallback;
}

inline float floatOr(TextureFloatInterface* input, float fallback, const OmbrixContext& context)
{
    return input ? input->evalFloat(context) : fallback;
}

} // namespace nezaiva
