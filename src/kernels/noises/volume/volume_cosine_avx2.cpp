// Compiled for AVX2, so it includes nothing that emits a shared inline function.

#include "kernels/noises/volume/volume_lanes_avx2.h"

#include "kernels/noises/volume/volume_cosine_few.h"

namespace nezaiva {

float cosine3dAvx2(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& point,
                   float time)
{
    return cosine3d(tables, noise, point, time);
}

float cosine2dAvx2(const VolumeTables& tables, const CosineVolume& noise, float x, float y, float time)
{
    return cosine2d(tables, noise, x, y, time);
}

} // namespace nezaiva
