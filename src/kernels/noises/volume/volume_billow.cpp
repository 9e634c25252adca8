#include "kernels/noises/volume/volume_lanes_base.h"

#include "kernels/noises/volume/volume_billow_body.h"

namespace nezaiva {

float billow3dBase(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z,
                   float time)
{
    return billow<true>(tables, noise, x, y, z, time);
}

float billow2dBase(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float time)
{
    return billow<false>(tables, noise, x, y, 0.0f, time);
}

} // namespace nezaiva
