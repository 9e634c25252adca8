#include "kernels/noises/volume/volume_lanes_base.h"

#include "kernels/noises/volume/volume_perlin_body.h"

namespace nezaiva {

float perlin3dBase(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float z,
                   float time)
{
    return perlin3d(tables, noise, x, y, z, time);
}

float perlin2dBase(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time)
{
    return perlin2d(tables, noise, x, y, time);
}

} // namespace nezaiva
