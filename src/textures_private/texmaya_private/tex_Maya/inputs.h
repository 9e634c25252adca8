// Reading the inputs of the utility nodes. As everywhere, an unset input is null, contributes the caller's
// fallback and is not called.
#pragma once

#include "kernels/color/channels.h"
#include "plugin_frame/fallbacks.h"

namespace nezaiva {

// The input's colour without the alpha that it carries.
inline Color rgbOr(TextureInterface* input, const Color& unset, const OmbrixContext& context)
{
    return rgbOf(colorOr(input, withAlpha(unset, 0.0f), context));
}

// A float texture as a flag: on at everything but 0, NaN included. Unset is off.
inline bool isOn(TextureFloatInterface* flag, const OmbrixContext& context)
{
    return flag && flag->evalFloat(context) != 0.0f;
}

struct FloatRange {
    float lower, upper;
};
struct ColorRange {
    AColor lower, upper;
};

// The input's bounds. What an input leaves unwritten is 0 below and 1 above.
inline FloatRange rangeOr(TextureFloatInterface* input, const FloatRange& unset)
{
    if (!input) return unset;
    FloatRange range{0.0f, 1.0f};
    input->evalFloatBounds(&range.lower, &range.upper);
    return range;
}

inline ColorRange rangeOr(TextureInterface* input, const ColorRange& unset)
{
    if (!input) return unset;
    ColorRange range{{0.0f, 0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};
    input->evalColorBounds(&range.lower, &range.upper);
    return range;
}

} // namespace nezaiva
