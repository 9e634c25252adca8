// Where a point lies in a volume noise, on plain values: the part that all noises share, before their
// octaves. Inline, because it is a handful of operations at every sample.
//
// Single precision, pure, any thread. Not for sources compiled for another instruction set.
#pragma once

#include "kernels/noises/volume/volume_noise.h"

#include <cmath>

namespace nezaiva {

// The factor of a class from the value of its frequency texture, and the factor without a texture,
// which is not the factor of any default value.
constexpr float perlinFrequencyFactor(float frequency)
{
    return frequency * 0.0625f;
}
constexpr float billowFrequencyFactor(float frequency)
{
    return frequency / 20.0f;
}
constexpr float cosineFrequencyFactor(float frequency)
{
    return frequency;
}
inline constexpr float kPerlinUnsetFrequencyFactor = 0.5f;
inline constexpr float kBillowUnsetFrequencyFactor = 0.4f;
inline constexpr float kCosineUnsetFrequencyFactor = 8.0f;

// Whether the centre of the warp is read at all. False for a NaN.
inline bool usesImplodeCenter(float implode)
{
    constexpr float kSmallestImplode = 1e-6f;
    return std::fabs(implode) > kSmallestImplode;
}

// What a component of the scale divides by.
inline float volumeScaleDivisor(float scale)
{
    constexpr float kZeroScale = 1e-6f;
    return scale == 0.0f ? kZeroScale : scale;
}

// Where a point lies in the noise: the concentric warp, then frequency, scale and origin. One source of
// the numbers, for placeVolumePoint3d and placeVolumePoint2d; the noise textures have another, which
// asks their inputs. A read of what is not set returns false.
struct VolumePlacement {
    float implode = 0.0f;
    bool hasImplodeCenter = false;
    bool hasScale = false;
    bool hasOrigin = false;
    VolumePoint implodeCenter{0.0f, 0.0f, 0.0f};
    float frequencyFactor = 0.5f;
    VolumePoint scale{1.0f, 1.0f, 1.0f};
    VolumePoint origin{0.0f, 0.0f, 0.0f};

    float readImplode() const { return implode; }
    float readFrequencyFactor() const { return frequencyFactor; }
    bool readImplodeCenter(VolumePoint& value) const { return take(hasImplodeCenter, implodeCenter, value); }
    bool readScale(VolumePoint& value) const { return take(hasScale, scale, value); }
    bool readOrigin(VolumePoint& value) const { return take(hasOrigin, origin, value); }

private:
    static bool take(bool has, const VolumePoint& own, VolumePoint& value)
    {
        value = own;
        return has;
    }
};

// The placed point. The inputs are read in the order of the lines.
template <class Inputs>
VolumePoint placeVolumePoint3d(const Inputs& inputs, VolumePoint point)
{
    const float implode = inputs.readImplode();
    VolumePoint c;
    if (usesImplodeCenter(implode) && inputs.readImplodeCenter(c)) {
        const VolumePoint d{point.x - c.x, point.y - c.y, point.z - c.z};
        const float k = std::pow(std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z), -implode);
        point = {d.x * k + c.x, d.y * k + c.y, d.z * k + c.z};
    }
    const float f = inputs.readFrequencyFactor();
    point = {point.x * f, point.y * f, point.z * f};
    VolumePoint scale;
    if (inputs.readScale(scale)) {
        point = {point.x / volumeScaleDivisor(scale.x), point.y / volumeScaleDivisor(scale.y),
                 point.z / volumeScaleDivisor(scale.z)};
    }
    VolumePoint origin;
    if (inputs.readOrigin(origin)) point = {point.x + origin.x, point.y + origin.y, point.z + origin.z};
    return point;
}

// The same in the plane: z is left alone, and the warp ignores it.
template <class Inputs>
VolumePoint placeVolumePoint2d(const Inputs& inputs, VolumePoint point)
{
    const float implode = inputs.readImplode();
    VolumePoint c;
    if (usesImplodeCenter(implode) && inputs.readImplodeCenter(c)) {
        const float dx = point.x - c.x;
        const float dy = point.y - c.y;
        const float k = std::pow(std::sqrt(dx * dx + dy * dy), -implode);
        point.x = dx * k + c.x;
        point.y = dy * k + c.y;
    }
    const float f = inputs.readFrequencyFactor();
    point.x *= f;
    point.y *= f;
    VolumePoint scale;
    if (inputs.readScale(scale)) {
        point.x /= volumeScaleDivisor(scale.x);
        point.y /= volumeScaleDivisor(scale.y);
    }
    VolumePoint origin;
    if (inputs.readOrigin(origin)) {
        point.x += origin.x;
        point.y += origin.y;
    }
    return point;
}

} // namespace nezaiva
