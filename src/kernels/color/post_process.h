// What follows a texture's raw colour, on plain values: inversion, gain and offset, and where alpha comes
// from.
//
//     inverted   max(0, 1 - x) of red, green and blue, of alpha too when asked for
//     gains      rgb * mult + offset, alpha * alphaMult + alphaOffset
//     alpha      as it is, the colour's brightness, or 1
//
// Textures of Maya invert and take their alpha before gain and offset, those of 3ds Max after them. All
// arithmetic is single precision; nothing is clamped but what is inverted.
#pragma once

#include "kernels/color/brightness.h"

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// The scene's numbers: whose order a texture follows. Other numbers follow neither, and neither invert nor
// take alpha from the colour.
enum CompatibilityWith : int {
    kCompatibleWithMax = 0,
    kCompatibleWithMaya = 1,
};

// The scene's numbers. Other numbers leave alpha as it is.
enum AlphaFromIntensity : int {
    kAlphaFromBitmap = 0,
    kAlphaFromIntensity = 1,
    kAlphaOpaque = 2,
};

struct PostProcess {
    int compatibility_with = kCompatibleWithMax;
    int alpha_from_intensity = kAlphaFromBitmap;
    bool invert = false;
    bool invert_alpha = false;
};

// A gain that is null has no effect: not even that of a multiplication by 1 or of adding 0.
struct ColorGains {
    const AColor* mult = nullptr;
    const AColor* offset = nullptr;
    const float* alphaMult = nullptr;
    const float* alphaOffset = nullptr;
};

// A NaN becomes 0.
inline float inverted(float channel)
{
    const float value = 1.0f - channel;
    return value > 0.0f ? value : 0.0f;
}

inline AColor inverted(const AColor& color, bool alphaToo)
{
    return {inverted(color.r), inverted(color.g), inverted(color.b), alphaToo ? inverted(color.a) : color.a};
}

// Alpha of mult and offset takes no part.
inline AColor withGains(AColor color, const ColorGains& gains)
{
    if (gains.mult) {
        color.r *= gains.mult->r;
        color.g *= gains.mult->g;
        color.b *= gains.mult->b;
    }
    if (gains.offset) {
        color.r += gains.offset->r;
        color.g += gains.offset->g;
        color.b += gains.offset->b;
    }
    if (gains.alphaMult) color.a *= *gains.alphaMult;
    if (gains.alphaOffset) color.a += *gains.alphaOffset;
    return color;
}

inline AColor postProcessed(AColor color, const PostProcess& process, const ColorGains& gains)
{
    const auto invertAndTakeAlpha = [&](auto brightness) {
        if (process.invert) color = inverted(color, process.invert_alpha);
        if (process.alpha_from_intensity == kAlphaFromIntensity) color.a = brightness(color);
        if (process.alpha_from_intensity == kAlphaOpaque) color.a = 1.0f;
    };
    if (process.compatibility_with == kCompatibleWithMaya)
        invertAndTakeAlpha([](const AColor& c) { return luminance(c); });
    color = withGains(color, gains);
    if (process.compatibility_with == kCompatibleWithMax)
        invertAndTakeAlpha([](const AColor& c) { return intensity(c); });
    return color;
}

} // namespace nezaiva
