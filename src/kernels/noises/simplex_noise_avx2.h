// Simplex noise for processors with AVX2; called through simplex_noise.h only.
#pragma once

#include <xmmintrin.h>

namespace nezaiva {

float simplexNoiseAvx2(float x, float y);
__m128 simplexNoiseFourAvx2(__m128 x, __m128 y);              // of four points
float simplexCellularAvx2(float x, float y, float frequency); // without the amplitude

} // namespace nezaiva
