// The arithmetic of the mask textures, on plain values.
#pragma once

#include "kernels/color/channels.h"

namespace nezaiva {

// A mask up to here changes nothing.
inline constexpr float kNoMask = 1e-10f;

// c at a mask strength of 0, the mask's own value at 1; strengths beyond extrapolate.
inline float masked(float c, float mask, float strength)
{
    return c * (1.0f - strength) + mask * strength;
}

} // namespace nezaiva
