// Compiled for AVX2, so it includes nothing that emits a shared inline function.

#include "kernels/noises/volume/volume_lanes_avx2.h"

#include "kernels/noises/volume/volume_billow_body.h"

namespace nezaiva {

float billow3dAvx2(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z,
                   float time)
{
    return billow<true>(tables, noise, x, y, z, time);
}

float billow2dAvx2(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float time)
{
    return billow<false>(tables, noise, x, y, 0.0f, time);
}

} // namespace nezaiva
