// The steps of the correct textures, on plain values.
#pragma once

#include "kernels/color/hsv.h"

#include <algorithm>
#include <cmath>

namespace nezaiva {

// c to the power 1 / gamma. A gamma of 0 and a power that is no finite number leave c as it is; so does a
// gamma of 1, without the cost of a power.
inline float gammaStep(float c, float gamma)
{
    if (gamma == 0.0f || gamma == 1.0f) return c;
    const float power = std::pow(c, 1.0f / gamma);
    return std::isfinite(power) ? power : c;
}

// The upper end wins where the two ends cross; NaN stays.
inline float clampStep(float c, float lower, float upper)
{
    return std::min(std::max(c, lower), upper);
}

inline Color hsvStep(const Color& c, float hueShift, float saturationGain, float valueGain)
{
    Hsv hsv = rgbToHsv(c);
    hsv.h += hueShift;
    hsv.s *= saturationGain;
    hsv.v *= valueGain;
    return hsvToRgb(hsv);
}

// The bounds of one channel through gain, offset and gamma. Both bounds also hold what the channel is
// without its offset and without its gamma, so that no step narrows them.
inline float lowerGain(float lower, float gain, float offset)
{
    const float x = lower * gain;
    return std::min(x, x + offset);
}

inline float upperGain(float upper, float gain, float offset)
{
    const float y = upper * gain;
    return std::max(y, y + offset);
}

inline float lowerGamma(float x, float oneGamma, float otherGamma)
{
    return std::min(std::min(x, gammaStep(x, oneGamma)), gammaStep(x, otherGamma));
}

inline float upperGamma(float y, float oneGamma, float otherGamma)
{
    return std::max(std::max(y, gammaStep(y, oneGamma)), gammaStep(y, otherGamma));
}

} // namespace nezaiva
