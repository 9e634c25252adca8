// Between red, green, blue and hue, saturation, value, on plain values: A. R. Smith's hexcone (Color gamut
// transform pairs, SIGGRAPH 1978) with the hue in degrees.
#pragma once

#include "kernels/color/channels.h"
#include "numeric/cell_index.h"

#include <algorithm>
#include <cmath>

namespace nezaiva {

struct Hsv {
    float h; // degrees
    float s, v;
};

// h lies in 0 to 360. A grey has h and s 0. Nothing is clamped: with a negative channel s exceeds 1, and
// without a positive one it is negative or infinite.
inline Hsv rgbToHsv(const Color& c)
{
    const float largest = std::max(std::max(c.r, c.g), c.b);
    const float smallest = std::min(std::min(c.r, c.g), c.b);
    const float d = largest - smallest;
    if (d <= 0.0f) return {0.0f, 0.0f, largest};
    float h;
    if (c.r == largest)
        h = (c.g - c.b) / d;
    else if (c.g == largest)
        h = (c.b - c.r) / d + 2.0f;
    else
        h = (c.r - c.g) / d + 4.0f;
    h *= 60.0f;
    if (h < 0.0f) h += 360.0f;
    return {h, d / largest, largest};
}

// The colour of a hue that is taken as it is: one below 0 or from 360 up, and one that is not a number,
// falls into the first sixth of the circle.
inline Color hsvSextant(const Hsv& c)
{
    if (c.s == 0.0f) return {c.v, c.v, c.v};
    const float h = c.h / 60.0f;
    const float whole = std::floor(h);
    const float f = h - whole;
    const float p = (1.0f - c.s) * c.v;
    const float q = (1.0f - c.s * f) * c.v;
    const float t = (1.0f - c.s * (1.0f - f)) * c.v;
    switch (cellIndex(whole)) {
    case 1:
        return {q, c.v, p};
    case 2:
        return {p, c.v, t};
    case 3:
        return {p, q, c.v};
    case 4:
        return {t, p, c.v};
    case 5:
        return {c.v, p, q};
    default:
        return {c.v, t, p};
    }
}

// Kept as is: a hue above 360 comes back into the circle, a negative one does not.
inline Color hsvToRgb(Hsv c)
{
    constexpr float kManyTurns = 36000.0f;
    if (c.h > kManyTurns) c.h = std::fmod(c.h, 360.0f);
    while (c.h > 360.0f)
        c.h -= 360.0f;
    return hsvSextant(c);
}

// Kept as is: the other form of the same conversion, black at a hue above 360 and with s limited to 1.
inline Color hsvToRgbWithinCircle(Hsv c)
{
    if (c.h > 360.0f) return {};
    c.s = std::min(c.s, 1.0f);
    return hsvSextant(c);
}

} // namespace nezaiva
