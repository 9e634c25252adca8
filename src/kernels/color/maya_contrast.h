// The arithmetic of TexMayaContrast, on plain values.
#pragma once

#include <algorithm>
#include <cmath>

namespace nezaiva {

// A curve from 0 over 0.5 at the bias to 1, steeper there with more contrast. A bias of 0 or 1 divides by
// zero; the limits to 0 make a number of what follows.
inline float contrasted(float x, float contrast, float bias)
{
    if (x > bias) {
        const float t = (x - bias) / (1.0f - bias);
        const float p = std::max(0.0f, std::pow(std::max(0.0f, 1.0f - t), 0.5f / bias));
        return 0.5f + (1.0f - std::pow(p, contrast)) * 0.5f;
    }
    const float t = (bias - x) / bias;
    const float p = std::max(0.0f, std::pow(std::max(0.0f, 1.0f - t), 0.5f / (1.0f - bias)));
    return 0.5f - (1.0f - std::pow(p, contrast)) * 0.5f;
}

// The curve at the ends of its inputs that give the least, and the greatest, result. More contrast lowers
// what lies below the bias and raises what lies above.
inline float leastContrasted(float lowerX, float lowerContrast, float upperContrast, float upperBias)
{
    return contrasted(lowerX, lowerX > upperBias ? lowerContrast : upperContrast, upperBias);
}

inline float greatestContrasted(float upperX, float lowerContrast, float upperContrast, float lowerBias)
{
    return contrasted(upperX, upperX > lowerBias ? upperContrast : lowerContrast, lowerBias);
}

} // namespace nezaiva
