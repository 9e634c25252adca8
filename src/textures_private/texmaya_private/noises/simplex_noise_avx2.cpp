// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "simplex_noise_avx2.h"

#include "simplex_lanes.h"

namespace nezaiva {

float simplexNoiseAvx2(float x, float y)
{
    return simplexOne(x, y);
}

void simplexNoiseFourAvx2(const float* x, const float* y, float* noise)
{
    _mm_store_ps(noise, simplexFour(_mm_load_ps(x), _mm_load_ps(y)));
}

float simplexCellularAvx2(float x, float y, float frequency)
{
    return cellularOne(x, y, frequency);
}

} // namespace nezaiva
