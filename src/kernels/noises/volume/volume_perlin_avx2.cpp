// Compiled for AVX2, so it includes nothing that emits a shared inline function.

#include "kernels/noises/volume/volume_lanes_avx2.h"

#include "kernels/noises/volume/volume_perlin_body.h"

namespace nezaiva {

float perlin3dAvx2(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float z,
                   float time)
{
    return perlin3d(tables, noise, x, y, z, time);
}

float perlin2dAvx2(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time)
{
    return perlin2d(tables, noise, x, y, time);
}

} // namespace nezaiva
