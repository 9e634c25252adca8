// The arithmetic of Maya's stencil on plain values: how much of the stencil shows at a point.
#pragma once

#include "kernels/color/hsv.h"

#include <cmath>

namespace nezaiva {

// A blend or a mask below this has no effect, and a weight below it shows nothing of the stencil.
inline constexpr float kStencilNothing = 1e-6f;
// A weight from here on shows nothing but the stencil.
inline constexpr float kStencilAll = 0.999999f;

// The distance of a coordinate to the nearer edge of its tile, 0 to 0.5. Kept as is: the tile of a negative
// coordinate mirrors that of its positive twin with the sign left on, so that distance is negative.
inline float stencilEdgeDistance(float coordinate)
{
    const float f = std::fmod(coordinate, 1.0f);
    return f <= 0.5f ? f : 1.0f - f;
}

// The weight of the stencil from its soft edge alone: 1 inside, falling to 0 over half of edgeBlend (a
// fraction of the tile) towards the edges of the unit square, with rounded corners. Negative and above 1 for
// coordinates below 0. A coordinate that is not a number gives 0 or a weight that is none.
inline float stencilEdge(float u, float v, float edgeBlend)
{
    if (edgeBlend <= kStencilNothing) return 1.0f;
    const float half = edgeBlend * 0.5f;
    const float du = stencilEdgeDistance(u);
    const float dv = stencilEdgeDistance(v);
    const float nearest = dv < du ? dv : du;
    const float core = half * 0.1f;
    const float slope = half - core;
    const float radius = slope + core;
    if (radius <= du || radius <= dv) return slope <= nearest ? 1.0f : nearest / slope;

    const float squared = (du - radius) * (du - radius) + (dv - radius) * (dv - radius);
    if (squared <= core * core) return 1.0f;
    const float distance = std::sqrt(squared);
    return distance <= radius ? (radius - distance) / slope : 0.0f;
}

// How far a colour may be from the key: the hue as a fraction of the circle, saturation and value as they
// are.
struct KeyRanges {
    float hue, saturation, value;
};

// Whether the colour differs from the key by more than the ranges. A difference that is not a number does
// not. Kept as is: hues are compared as numbers, so 359 and 1 degrees are nearly a whole circle apart.
inline bool isOutsideKey(const Color& image, const Color& key, const KeyRanges& ranges)
{
    const Hsv i = rgbToHsv(image);
    const Hsv k = rgbToHsv(key);
    return ranges.hue < std::fabs((k.h - i.h) / 360.0f) || ranges.saturation < std::fabs(k.s - i.s) ||
           ranges.value < std::fabs(k.v - i.v);
}

// image by the weight, background by what is left, alpha too.
inline AColor stencilBlend(const AColor& image, const AColor& background, float weight)
{
    const auto blend = [weight](float over, float under) { return over * weight + under * (1.0f - weight); };
    return {blend(image.r, background.r), blend(image.g, background.g), blend(image.b, background.b),
            blend(image.a, background.a)};
}

} // namespace nezaiva
