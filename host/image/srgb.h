// The transfer curve of sRGB (IEC 61966-2-1). Below 0 both continue as straight lines; above 1 the power
// goes on. A NaN stays a NaN. Computed in double: the same bits whatever the processor.
#pragma once

#include <cmath>

namespace ombrix {

// Linear light to the stored value.
inline float srgbEncode(float linear)
{
    const double v = static_cast<double>(linear);
    return static_cast<float>(v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055);
}

// The stored value to linear light.
inline float srgbDecode(float stored)
{
    const double v = static_cast<double>(stored);
    return static_cast<float>(v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4));
}

} // namespace ombrix
