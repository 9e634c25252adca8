// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "kernels/noises/simplex_noise_avx2.h"

#include "kernels/noises/simplex_lanes.h"

namespace nezaiva {

float simplexNoiseAvx2(float x, float y)
{
    return simplexOne(x, y);
}

__m128 simplexNoiseFourAvx2(__m128 x, __m128 y)
{
    return simplexFour(x, y);
}

float simplexCellularAvx2(float x, float y, float frequency)
{
    return cellularOne(x, y, frequency);
}

} // namespace nezaiva
