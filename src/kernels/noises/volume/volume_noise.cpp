// The choice between the kernels of the two instruction sets.

#include "kernels/noises/volume/volume_noise.h"

#include "kernels/noises/lattice_noise.h"
#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_kernels.h"
#include "numeric/simd_dispatch.h"

#include <atomic>

namespace nezaiva {

namespace {

std::atomic<const VolumeTables*> readyTables{nullptr};

// Kept out of the evaluations, which would save and restore registers for it at every sample.
[[gnu::noinline, gnu::cold]] const VolumeTables& makeTablesOnce()
{
    static const VolumeTables& tables = makeVolumeTables();
    readyTables.store(&tables, std::memory_order_release);
    return tables;
}

// Not made by a static initialiser, which could come before the choice of the random table.
inline const VolumeTables& volumeTables()
{
    const VolumeTables* tables = readyTables.load(std::memory_order_acquire);
    return tables ? *tables : makeTablesOnce();
}

double wide(float value)
{
    return static_cast<double>(value);
}

} // namespace

void prepareVolumeNoise()
{
    volumeTables();
}

float evalPerlin3d(const PerlinVolume& noise, const VolumePoint& point, float time)
{
    return chosen(perlinVolumeBase, perlinVolumeAvx2).in3d(volumeTables(), noise, point, time);
}

float evalPerlin2d(const PerlinVolume& noise, float x, float y, float time)
{
    return chosen(perlinVolumeBase, perlinVolumeAvx2).in2d(volumeTables(), noise, x, y, time);
}

float evalBillow3d(const BillowVolume& noise, const VolumePoint& point, float time)
{
    return chosen(billowVolumeBase, billowVolumeAvx2).in3d(volumeTables(), noise, point, time);
}

float evalBillow2d(const BillowVolume& noise, float x, float y, float time)
{
    return chosen(billowVolumeBase, billowVolumeAvx2).in2d(volumeTables(), noise, x, y, time);
}

float evalCosine3d(const CosineVolume& noise, const VolumePoint& point, float time)
{
    return chosen(cosineVolumeBase, cosineVolumeAvx2).in3d(volumeTables(), noise, point, time);
}

float evalCosine2d(const CosineVolume& noise, float x, float y, float time)
{
    return chosen(cosineVolumeBase, cosineVolumeAvx2).in2d(volumeTables(), noise, x, y, time);
}

float perlinLevel3d(const PerlinVolume& noise, VolumePoint point, float time, int level)
{
    if (noise.spaceTime || noise.timeNoise) {
        const float w = noise.spaceTime ? time * kSpaceTimeRate : time;
        return latticeNoise4(wide(point.x), wide(point.y), wide(point.z), wide(w), noise.timePeriod);
    }
    float direction[4];
    volumeDirection3d(activeNoiseTables(), level, direction);
    const float s = kDriftRate * time + static_cast<float>(level) * kDriftOfLevel;
    return latticeNoise3(wide(point.x + direction[0] * s), wide(point.y + direction[1] * s),
                         wide(point.z + s * direction[2]));
}

// Kept as is: timeNoise has no branch here; in two dimensions only the wispy form knows it.
float perlinLevel2d(const PerlinVolume& noise, float x, float y, float time, int level)
{
    if (noise.spaceTime) return latticeNoise3(wide(x), wide(y), wide(time * kSpaceTimeRate));
    float direction[4];
    volumeDirection2d(activeNoiseTables(), level, direction);
    const float s = time * kDriftRate + static_cast<float>(level) * kDriftOfLevel;
    return latticeNoise2(wide(x + direction[0] * s), wide(y + direction[1] * s));
}

} // namespace nezaiva
