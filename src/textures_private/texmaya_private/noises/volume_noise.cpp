// Placement, and the choice between the kernels of the two instruction sets.

#include "volume_noise.h"

#include "lattice_noise.h"
#include "simd_dispatch.h"
#include "volume_kernels.h"

#include <cmath>

namespace nezaiva {

namespace {

constexpr float kSmallestImplode = 1e-6f;
constexpr float kZeroScale = 1e-6f; // what a zero component of the scale counts as

float divisor(float scale)
{
    return scale == 0.0f ? kZeroScale : scale;
}

// Made at the first evaluation, because static initialisers could come before the choice of the
// random table.
const VolumeTables& volumeTables()
{
    static const VolumeTables& tables = makeVolumeTables();
    return tables;
}

double wide(float value)
{
    return static_cast<double>(value);
}

} // namespace

bool usesImplodeCenter(float implode)
{
    return std::fabs(implode) > kSmallestImplode;
}

VolumePoint placeVolumePoint3d(const VolumePlacement& placement, VolumePoint point)
{
    if (usesImplodeCenter(placement.implode) && placement.hasImplodeCenter) {
        const VolumePoint& c = placement.implodeCenter;
        const VolumePoint d{point.x - c.x, point.y - c.y, point.z - c.z};
        const float k = std::pow(std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z), -placement.implode);
        point = {d.x * k + c.x, d.y * k + c.y, d.z * k + c.z};
    }
    const float f = placement.frequencyFactor;
    point = {point.x * f, point.y * f, point.z * f};
    if (placement.hasScale) {
        const VolumePoint& s = placement.scale;
        point = {point.x / divisor(s.x), point.y / divisor(s.y), point.z / divisor(s.z)};
    }
    if (placement.hasOrigin) {
        const VolumePoint& o = placement.origin;
        point = {point.x + o.x, point.y + o.y, point.z + o.z};
    }
    return point;
}

VolumePoint placeVolumePoint2d(const VolumePlacement& placement, VolumePoint point)
{
    if (usesImplodeCenter(placement.implode) && placement.hasImplodeCenter) {
        const VolumePoint& c = placement.implodeCenter;
        const float dx = point.x - c.x;
        const float dy = point.y - c.y;
        const float k = std::pow(std::sqrt(dx * dx + dy * dy), -placement.implode);
        point.x = dx * k + c.x;
        point.y = dy * k + c.y;
    }
    point.x *= placement.frequencyFactor;
    point.y *= placement.frequencyFactor;
    if (placement.hasScale) {
        point.x /= divisor(placement.scale.x);
        point.y /= divisor(placement.scale.y);
    }
    if (placement.hasOrigin) {
        point.x += placement.origin.x;
        point.y += placement.origin.y;
    }
    return point;
}

float evalPerlin3d(const PerlinVolume& noise, const VolumePoint& point, float time)
{
    return (hasAvx2() ? perlin3dAvx2 : perlin3dBase)(volumeTables(), noise, point.x, point.y, point.z, time);
}

float evalPerlin2d(const PerlinVolume& noise, float x, float y, float time)
{
    return (hasAvx2() ? perlin2dAvx2 : perlin2dBase)(volumeTables(), noise, x, y, time);
}

float evalBillow3d(const BillowVolume& noise, const VolumePoint& point, float time)
{
    return (hasAvx2() ? billow3dAvx2 : billow3dBase)(volumeTables(), noise, point.x, point.y, point.z, time);
}

float evalBillow2d(const BillowVolume& noise, float x, float y, float time)
{
    return (hasAvx2() ? billow2dAvx2 : billow2dBase)(volumeTables(), noise, x, y, time);
}

float evalCosine3d(const CosineVolume& noise, const VolumePoint& point, float time)
{
    return (hasAvx2() ? cosine3dAvx2 : cosine3dBase)(volumeTables(), noise, point.x, point.y, point.z, time);
}

float evalCosine2d(const CosineVolume& noise, float x, float y, float time)
{
    return (hasAvx2() ? cosine2dAvx2 : cosine2dBase)(volumeTables(), noise, x, y, time);
}

float perlinLevel3d(const PerlinVolume& noise, VolumePoint point, float time, int level)
{
    if (noise.spaceTime || noise.timeNoise) {
        const float w = noise.spaceTime ? time * 0.1f : time;
        return latticeNoise4(wide(point.x), wide(point.y), wide(point.z), wide(w), noise.timePeriod);
    }
    float direction[4];
    volumeDirection3d(activeNoiseTables(), level, direction);
    const float s = 0.0625f * time + static_cast<float>(level) * 0.5f;
    return latticeNoise3(wide(point.x + direction[0] * s), wide(point.y + direction[1] * s),
                         wide(point.z + s * direction[2]));
}

// Kept as is: timeNoise has no branch here; in two dimensions only the wispy form knows it.
float perlinLevel2d(const PerlinVolume& noise, float x, float y, float time, int level)
{
    if (noise.spaceTime) return latticeNoise3(wide(x), wide(y), wide(time * 0.1f));
    float direction[4];
    volumeDirection2d(activeNoiseTables(), level, direction);
    const float s = time * 0.0625f + static_cast<float>(level) * 0.5f;
    return latticeNoise2(wide(x + direction[0] * s), wide(y + direction[1] * s));
}

} // namespace nezaiva
