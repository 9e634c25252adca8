// The arithmetic of MayaGamma, on plain values.
#pragma once

#include <cmath>

namespace nezaiva {

// x to the power 1 / gamma. A gamma below this, negative ones too, gives 0 instead of a pole.
inline constexpr float kSmallestGamma = 1e-6f;

inline float gammaPower(float x, float gamma)
{
    return gamma < kSmallestGamma ? 0.0f : std::pow(x, 1.0f / gamma);
}

} // namespace nezaiva
