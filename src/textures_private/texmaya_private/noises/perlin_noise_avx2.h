// Gradient noise for processors with AVX2; called through perlin_noise.h only.
#pragma once

namespace OUtils {

double gradientNoise3Avx2(float x, float y, float z);

} // namespace OUtils
