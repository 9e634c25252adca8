// The gradient noise of each instruction set; called through perlin_noise.h only.
#pragma once

#include <xmmintrin.h>

namespace OUtils {

// The point's coordinates are the first three lanes; the fourth is without effect.
double gradientNoise3Baseline(__m128 point);
double gradientNoise3Avx2(__m128 point);

} // namespace OUtils
