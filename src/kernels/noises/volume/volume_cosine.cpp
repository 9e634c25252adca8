#include "kernels/noises/volume/volume_lanes_base.h"

#include "kernels/noises/volume/volume_cosine_few.h"

namespace nezaiva {

float cosine3dBase(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& point,
                   float time)
{
    return cosine3d(tables, noise, point, time);
}

float cosine2dBase(const VolumeTables& tables, const CosineVolume& noise, float x, float y, float time)
{
    return cosine2d(tables, noise, x, y, time);
}

} // namespace nezaiva
